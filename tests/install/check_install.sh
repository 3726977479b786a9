#!/bin/sh
# Installs the build tree into a scratch DESTDIR, compiles a C host against
# the installed header with pkg-config and loads the installed module by the
# path pkg-config names.
# Usage: check_install.sh CMAKE BUILD_DIR C_COMPILER HOST_SOURCE VERSION
set -eu
cmake=$1 build=$2 cc=$3 host_source=$4 version=$5
root=$(cd "$build" && pwd)/install-test
stage=$root/stage
rm -rf "$root"
mkdir -p "$root/work"
DESTDIR=$stage "$cmake" --install "$build" >/dev/null

pcdir=$(dirname "$(find "$stage" -name vorna.pc)")
# Only the staged vorna.pc, never one a package installed on this machine.
export PKG_CONFIG_LIBDIR="$pcdir" PKG_CONFIG_PATH="" PKG_CONFIG_SYSROOT_DIR="$stage" PKG_CONFIG_ALLOW_SYSTEM_CFLAGS=1
# shellcheck disable=SC2046
"$cc" -std=c11 -Wall -Wextra -Werror -pedantic $(pkg-config --cflags vorna) -o "$root/install_host" "$host_source" -ldl
module=$(pkg-config --variable=module vorna)
case $module in "$stage"/*) ;; *) module=$stage$module ;; esac
test -f "$module"
cd "$root/work"
"$root/install_host" "$module" "$version"

# The capability table of the installed configuration reference is what the
# module wrote into VORNA.xml.
awk -F' *[|] *' '/^[|] Name [|] Presets/ { table = 1; next }
  table && /^[|]---/ { next }
  table && !/^[|]/ { exit }
  table { printf "<Protocol Name=\"%s\" Presets=\"%s\" MinAddress=\"%s\" MaxAddress=\"%s\" AutoFocus=\"%s\" AutoIris=\"%s\" ArbCmd=\"%s\" Menu=\"%s\" Flip=\"%s\" ApplePeel=\"%s\" Delay=\"%s\" Pattern=\"%s\" />\n", $2, $3, $4, $5, $6, $7, $8, $9, $10, $11, $12, $13 }' \
  "$(find "$stage" -name configuration.md)" >"$root/documented"
sed -n 's/^ *<Protocol /<Protocol /p' VORNA.xml >"$root/written"
diff "$root/documented" "$root/written"
