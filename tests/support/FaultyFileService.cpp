#include "FaultyFileService.h"

#include <cerrno>

namespace brindlet::testing {

std::string nameOf(FileStep step) {
  switch (step) {
    case FileStep::createFolder:
      return "createFolder";
    case FileStep::open:
      return "open";
    case FileStep::write:
      return "write";
    case FileStep::fsync:
      return "fsync";
    case FileStep::rename:
      return "rename";
    case FileStep::copy:
      return "copy";
    case FileStep::read:
      return "read";
  }
  return "?";
}

void FaultyFileService::failAt(FileStep step, std::size_t occurrence, int errorNumber) {
  fault_ = Fault{step, occurrence, errorNumber};
  faultHappened_ = false;
}

bool FaultyFileService::failsNow(FileStep step) const {
  const std::size_t count = ++counts_[static_cast<std::size_t>(step)];
  if (!fault_ || fault_->step != step || fault_->occurrence != count) return false;
  faultHappened_ = true;
  errno = fault_->errorNumber;
  return true;
}

int FaultyFileService::makeFolder(const char* path, mode_t mode) const {
  return failsNow(FileStep::createFolder) ? -1 : FileService::makeFolder(path, mode);
}

int FaultyFileService::open(const char* path, int flags, mode_t mode) const {
  return failsNow(FileStep::open) ? -1 : FileService::open(path, flags, mode);
}

ssize_t FaultyFileService::read(int fd, void* buffer, size_t size) const {
  return failsNow(FileStep::read) ? -1 : FileService::read(fd, buffer, size);
}

ssize_t FaultyFileService::write(int fd, const void* bytes, size_t size) const {
  return failsNow(FileStep::write) ? -1 : FileService::write(fd, bytes, size);
}

int FaultyFileService::sync(int fd) const {
  if (failsNow(FileStep::fsync)) return -1;
  return durable_ ? FileService::sync(fd) : 0;
}

int FaultyFileService::rename(const char* from, const char* to) const {
  return failsNow(FileStep::rename) ? -1 : FileService::rename(from, to);
}

int FaultyFileService::link(const char* from, const char* to) const {
  return failsNow(FileStep::copy) ? -1 : FileService::link(from, to);
}

}  // namespace brindlet::testing
