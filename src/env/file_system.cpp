#include "env/file_system.h"

#include <fcntl.h>
#include <unistd.h>

#include <climits>

namespace vorna {

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

int PosixFileSystem::ReadLink(const std::string& path, std::string& target) {
    std::string buffer(PATH_MAX, '\0');
    const ssize_t length = readlink(path.c_str(), &buffer[0], buffer.size());
    if (length < 0) return -1;
    target.assign(buffer, 0, static_cast<size_t>(length));
    return 0;
}

int PosixFileSystem::Stat(const std::string& path, struct stat& info) { return stat(path.c_str(), &info); }

int PosixFileSystem::ChangeMode(FILE* file, mode_t mode) { return fchmod(fileno(file), mode); }

}  // namespace vorna
