# VORNA: `make check` builds and runs the whole test suite (plain, then under
# AddressSanitizer+UBSan, then the concurrency tests under ThreadSanitizer);
# `make demo` drives cameras on virtual lines with the reference host.
JOBS ?= $(shell nproc)
CMAKE_FLAGS ?=
# Sanitizer builds compile at -O1 with line tables only: less than half the
# compile time of -O2 -g, and still readable reports.
SANITIZER_BUILD = -DCMAKE_BUILD_TYPE=Debug "-DCMAKE_CXX_FLAGS_DEBUG=-O1 -g1" "-DCMAKE_C_FLAGS_DEBUG=-O1 -g1"

.PHONY: all deps build check check-plain check-asan check-tsan check-fuzz fuzz fuzz-build demo bench install package clean

all: build

deps:
	@bash scripts/install-deps

build: deps
	cmake -S . -B build $(CMAKE_FLAGS) >/dev/null
	cmake --build build -j $(JOBS)

check-plain: build
	cd build && ctest --output-on-failure -j $(JOBS)

check-asan: deps
	cmake -S . -B build-asan -DVORNA_SANITIZE=address,undefined $(SANITIZER_BUILD) $(CMAKE_FLAGS) >/dev/null
	cmake --build build-asan -j $(JOBS)
	cd build-asan && ASAN_OPTIONS=halt_on_error=1:detect_leaks=1 UBSAN_OPTIONS=halt_on_error=1:print_stacktrace=1 \
		ctest --output-on-failure -j $(JOBS)

check-tsan: deps
	cmake -S . -B build-tsan -DVORNA_SANITIZE=thread $(SANITIZER_BUILD) $(CMAKE_FLAGS) >/dev/null
	cmake --build build-tsan -j $(JOBS) --target vorna_concurrency_tests
	cd build-tsan && TSAN_OPTIONS=halt_on_error=1 ctest --output-on-failure -j $(JOBS) -R 'Concurrency'

# Fuzz targets (fuzz/): clang with libFuzzer, AddressSanitizer and UBSan.
# `make fuzz` runs each for FUZZ_SECONDS; check runs a short smoke of each.
FUZZ_SECONDS ?= 60
FUZZ_TARGETS := event alarm_event config_update config_file parse_depth
fuzz-build: deps
	CC=clang-14 CXX=clang++-14 cmake -S . -B build-fuzz -DVORNA_BUILD_FUZZ=ON -DVORNA_SANITIZE=address,undefined \
		-DVORNA_BUILD_TESTS=OFF $(CMAKE_FLAGS) >/dev/null
	cmake --build build-fuzz -j $(JOBS) --target $(FUZZ_TARGETS:%=%_fuzzer)

fuzz: fuzz-build
	bash scripts/fuzz $(FUZZ_SECONDS)

check-fuzz: fuzz-build
	bash scripts/fuzz 4

check: check-plain check-asan check-tsan check-fuzz

# The demo starts from the sample camera table every time: the module rewrites
# VORNA.xml in its working directory.
demo: deps
	cmake -S . -B build $(CMAKE_FLAGS) >/dev/null
	cmake --build build -j $(JOBS) --target vorna-host
	mkdir -p build/demo
	cp examples/VORNA.xml build/demo/VORNA.xml
	build/tools/vorna-host --module build/libvorna.so --workdir build/demo \
		--line COM1=Pelco-D --line COM2=Panasonic --script examples/demo.script

bench: deps
	cmake -S . -B build-bench -DCMAKE_BUILD_TYPE=Release -DVORNA_BUILD_BENCH=ON -DVORNA_BUILD_TESTS=OFF >/dev/null
	cmake --build build-bench -j $(JOBS)
	build-bench/bench/vorna_bench --benchmark_out=$(CURDIR)/build-bench/bench.json --benchmark_out_format=json

# DESTDIR=DIR stages the installation under DIR (as packaging does).
install: build
	cmake --install build

# The Debian package, built from a configuration of its own (prefix /usr,
# Debian's build flags, no tests) and left in build/ beside the test build.
BUILDFLAGS = DEB_BUILD_MAINT_OPTIONS=hardening=+all dpkg-buildflags --get
package: deps
	CFLAGS="$$($(BUILDFLAGS) CFLAGS) $$($(BUILDFLAGS) CPPFLAGS)" \
	CXXFLAGS="$$($(BUILDFLAGS) CXXFLAGS) $$($(BUILDFLAGS) CPPFLAGS)" \
	LDFLAGS="$$($(BUILDFLAGS) LDFLAGS)" \
		cmake -S . -B build-package -DCMAKE_BUILD_TYPE=None -DCMAKE_INSTALL_PREFIX=/usr -DVORNA_BUILD_TESTS=OFF >/dev/null
	cmake --build build-package -j $(JOBS) --target package
	mkdir -p build
	cp build-package/vorna_*.deb build/

clean:
	rm -rf build build-asan build-tsan build-fuzz build-bench build-package
