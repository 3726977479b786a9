// A file system for tests that fails one chosen call of the safe save with a
// chosen errno and passes every other call to the real one; installed for the
// lifetime of the object.
//
// A failing write fails the disk under the side file rather than the fwrite
// call, so the stream's own buffering decides who sees it, as on a full disk:
// fflush for a document smaller than the buffer, fwrite for a larger one.
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <map>

#include "config/file_system.h"

namespace vorna_test {

class FailingFileSystem : public vorna::PosixFileSystem {
public:
    enum class Call { kNothing, kOpen, kWrite, kFlush, kSync, kClose, kRename, kDirectorySync };

    FailingFileSystem(Call call, int error) : call_(call), error_(error) { vorna::SetFileSystem(this); }
    ~FailingFileSystem() override { vorna::SetFileSystem(nullptr); }

    FILE* Open(const std::string& path, const char* mode) override {
        if (call_ == Call::kOpen) return Fail<FILE*>(nullptr);
        const int fd = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
        if (fd < 0) return nullptr;
        auto* disk = new Disk{fd, call_ == Call::kWrite ? error_ : 0};
        FILE* file = fopencookie(disk, mode, {nullptr, &Disk::Write, nullptr, &Disk::Close});
        descriptors_[file] = fd;
        return file;
    }
    int Flush(FILE* file) override { return call_ == Call::kFlush ? Fail(EOF) : PosixFileSystem::Flush(file); }
    int Sync(FILE* file) override { return call_ == Call::kSync ? Fail(-1) : fsync(descriptors_[file]); }
    int Close(FILE* file) override {
        descriptors_.erase(file);
        const int result = PosixFileSystem::Close(file);
        return call_ == Call::kClose ? Fail(EOF) : result;
    }
    int Rename(const std::string& from, const std::string& to) override {
        return call_ == Call::kRename ? Fail(-1) : PosixFileSystem::Rename(from, to);
    }
    int SyncDirectory(const std::string& path) override {
        return call_ == Call::kDirectorySync ? Fail(-1) : PosixFileSystem::SyncDirectory(path);
    }

private:
    // The side file's descriptor, refusing every write with `error` if set.
    struct Disk {
        int fd;
        int error;

        static ssize_t Write(void* cookie, const char* data, size_t size) {
            auto* disk = static_cast<Disk*>(cookie);
            if (disk->error == 0) return write(disk->fd, data, size);
            errno = disk->error;
            return -1;
        }
        static int Close(void* cookie) {
            auto* disk = static_cast<Disk*>(cookie);
            const int result = close(disk->fd);
            delete disk;
            return result;
        }
    };

    template <typename Result>
    Result Fail(Result result) {
        errno = error_;
        return result;
    }

    Call call_;
    int error_;
    std::map<FILE*, int> descriptors_;
};

}  // namespace vorna_test
