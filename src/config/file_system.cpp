#include "config/file_system.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>

namespace vorna {

namespace {

PosixFileSystem g_posixFileSystem;
std::atomic<FileSystem*> g_fileSystem{&g_posixFileSystem};

}  // namespace

FILE* PosixFileSystem::Open(const std::string& path, const char* mode) { return std::fopen(path.c_str(), mode); }

size_t PosixFileSystem::Write(const void* data, size_t size, FILE* file) { return std::fwrite(data, 1, size, file); }

int PosixFileSystem::Flush(FILE* file) { return std::fflush(file); }

int PosixFileSystem::Sync(FILE* file) { return fsync(fileno(file)); }

int PosixFileSystem::Close(FILE* file) { return std::fclose(file); }

int PosixFileSystem::Rename(const std::string& from, const std::string& to) {
    return std::rename(from.c_str(), to.c_str());
}

int PosixFileSystem::Unlink(const std::string& path) { return unlink(path.c_str()); }

int PosixFileSystem::SyncDirectory(const std::string& path) {
    const int fd = open(path.c_str(), O_RDONLY | O_DIRECTORY);
    if (fd < 0) return -1;
    const int result = fsync(fd);
    close(fd);
    return result;
}

FileSystem& CurrentFileSystem() { return *g_fileSystem.load(); }

void SetFileSystem(FileSystem* fileSystem) { g_fileSystem.store(fileSystem ? fileSystem : &g_posixFileSystem); }

}  // namespace vorna
