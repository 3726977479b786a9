// The file calls of the safe save, behind one interface so that a test can
// make any one of them fail on demand.
#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <cstdio>
#include <string>

namespace vorna {

// Each call returns what its C library counterpart returns and leaves errno
// as it does.
class FileSystem {
public:
    virtual ~FileSystem() = default;
    virtual FILE* Open(const std::string& path, const char* mode) = 0;       // fopen
    virtual size_t Write(const void* data, size_t size, FILE* file) = 0;     // fwrite of `size` bytes
    virtual int Flush(FILE* file) = 0;                                       // fflush
    virtual int Sync(FILE* file) = 0;                                        // fsync of the stream's descriptor
    virtual int Close(FILE* file) = 0;                                       // fclose
    virtual int Rename(const std::string& from, const std::string& to) = 0;  // rename
    virtual int Unlink(const std::string& path) = 0;                         // unlink
    virtual int SyncDirectory(const std::string& path) = 0;                  // open, fsync, close of a directory
    virtual int ReadLink(const std::string& path, std::string& target) = 0;  // readlink, 0 on success
    virtual int Stat(const std::string& path, struct stat& info) = 0;        // stat
    virtual int ChangeMode(FILE* file, mode_t mode) = 0;                     // fchmod of the stream's descriptor
};

class PosixFileSystem : public FileSystem {
public:
    FILE* Open(const std::string& path, const char* mode) override;
    size_t Write(const void* data, size_t size, FILE* file) override;
    int Flush(FILE* file) override;
    int Sync(FILE* file) override;
    int Close(FILE* file) override;
    int Rename(const std::string& from, const std::string& to) override;
    int Unlink(const std::string& path) override;
    int SyncDirectory(const std::string& path) override;
    int ReadLink(const std::string& path, std::string& target) override;
    int Stat(const std::string& path, struct stat& info) override;
    int ChangeMode(FILE* file, mode_t mode) override;
};

}  // namespace vorna
