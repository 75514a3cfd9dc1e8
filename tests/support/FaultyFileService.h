#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>

#include "support/FileService.h"

namespace brindlet::testing {

/// The steps of file work that can fail on their own.
enum class FileStep { createFolder, open, write, fsync, rename, copy, read };

inline constexpr std::array<FileStep, 7> kAllFileSteps = {
    FileStep::createFolder, FileStep::open, FileStep::write, FileStep::fsync,
    FileStep::rename,       FileStep::copy, FileStep::read};

[[nodiscard]] std::string nameOf(FileStep step);

/// The real file system, except that the n-th call of one chosen step fails with a chosen error
/// number. It counts the calls of every step, so a clean run tells how many places can fail.
class FaultyFileService : public FileService {
 public:
  /// Fails the `occurrence`-th call (counting from 1) of `step` with `errorNumber`.
  void failAt(FileStep step, std::size_t occurrence, int errorNumber);
  void clearFault() { fault_.reset(); }
  void resetCounts() { counts_.fill(0); }
  [[nodiscard]] std::size_t calls(FileStep step) const {
    return counts_[static_cast<std::size_t>(step)];
  }
  [[nodiscard]] bool faultHappened() const { return faultHappened_; }
  /// Whether `sync` reaches the disk. Sweeps that run thousands of saves and never cut the
  /// power turn it off: the call is still counted and can still fail.
  void setDurable(bool durable) { durable_ = durable; }

  int makeFolder(const char* path, mode_t mode) const override;
  int open(const char* path, int flags, mode_t mode) const override;
  ssize_t read(int fd, void* buffer, size_t size) const override;
  ssize_t write(int fd, const void* bytes, size_t size) const override;
  int sync(int fd) const override;
  int rename(const char* from, const char* to) const override;
  int link(const char* from, const char* to) const override;

 private:
  struct Fault {
    FileStep step;
    std::size_t occurrence;
    int errorNumber;
  };

  // True when this call is the one to fail; errno is then set.
  bool failsNow(FileStep step) const;

  std::optional<Fault> fault_;
  mutable std::array<std::size_t, kAllFileSteps.size()> counts_{};
  mutable bool faultHappened_ = false;
  bool durable_ = true;
};

}  // namespace brindlet::testing
