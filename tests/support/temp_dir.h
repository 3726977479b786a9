// A fresh directory under /tmp for the lifetime of the object, removed with
// everything in it afterwards; with helpers to read and write whole files.
#pragma once

#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace vorna_test {

class TempDir {
public:
    TempDir() {
        char pattern[] = "/tmp/vorna-unit-XXXXXX";
        if (mkdtemp(pattern) == nullptr) throw std::runtime_error("mkdtemp");
        path = pattern;
    }
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }

    std::string File(const std::string& name) const { return path + "/" + name; }

    void Write(const std::string& name, const std::string& content) const {
        std::ofstream(File(name), std::ios::binary) << content;
    }

    // The file's bytes, or "(missing)".
    std::string Read(const std::string& name) const {
        std::ifstream in(File(name), std::ios::binary);
        return in ? std::string(std::istreambuf_iterator<char>(in), {}) : "(missing)";
    }

    bool Exists(const std::string& name) const { return access(File(name).c_str(), F_OK) == 0; }

    std::string path;
};

}  // namespace vorna_test
