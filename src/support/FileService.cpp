#include "support/FileService.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

namespace brindlet {

const std::shared_ptr<const FileService>& FileService::system() {
  static const std::shared_ptr<const FileService> service = std::make_shared<FileService>();
  return service;
}

int FileService::makeFolder(const char* path, mode_t mode) const { return ::mkdir(path, mode); }

int FileService::open(const char* path, int flags, mode_t mode) const {
  return ::open(path, flags, mode);
}

ssize_t FileService::read(int fd, void* buffer, size_t size) const {
  return ::read(fd, buffer, size);
}

ssize_t FileService::write(int fd, const void* bytes, size_t size) const {
  return ::write(fd, bytes, size);
}

int FileService::sync(int fd) const { return ::fsync(fd); }

int FileService::rename(const char* from, const char* to) const { return ::rename(from, to); }

int FileService::link(const char* from, const char* to) const {
  // A state file that is a symbolic link is followed: the second name goes to the bytes.
  return ::linkat(AT_FDCWD, from, AT_FDCWD, to, AT_SYMLINK_FOLLOW);
}

}  // namespace brindlet
