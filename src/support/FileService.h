#pragma once

#include <sys/types.h>

#include <memory>

namespace brindlet {

/// The operating system's file calls that saving and reading go through, one function per step,
/// each answering as the system call does (-1 and errno on failure). Tests put a version in its
/// place that fails any single step, to show that no failure can cost the user data.
class FileService {
 public:
  virtual ~FileService() = default;

  /// The machine's own file system.
  [[nodiscard]] static const std::shared_ptr<const FileService>& system();

  virtual int makeFolder(const char* path, mode_t mode) const;
  virtual int open(const char* path, int flags, mode_t mode) const;
  virtual ssize_t read(int fd, void* buffer, size_t size) const;
  virtual ssize_t write(int fd, const void* bytes, size_t size) const;
  virtual int sync(int fd) const;
  virtual int rename(const char* from, const char* to) const;
  /// Gives a file a second name; the cheap way to keep a version that is about to be replaced.
  virtual int link(const char* from, const char* to) const;
};

}  // namespace brindlet
