#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace brindlet::testing {

/// A fresh folder under the system's temporary folder, removed with everything in it when the
/// object goes away.
class TempDir {
 public:
  TempDir();
  /// A fresh folder inside `parent`.
  explicit TempDir(const std::filesystem::path& parent);
  ~TempDir();
  TempDir(const TempDir&) = delete;
  TempDir& operator=(const TempDir&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  [[nodiscard]] std::filesystem::path operator/(std::string_view name) const {
    return path_ / name;
  }

 private:
  std::filesystem::path path_;
};

/// A folder for temporary files kept in memory ("/dev/shm") where the system has one, else the
/// ordinary temporary folder. For tests that replace files thousands of times and would
/// otherwise wait on the disk's journal.
[[nodiscard]] std::filesystem::path inMemoryTemporaryFolder();

/// The file's bytes; fails the test when it can't be read.
[[nodiscard]] std::string readBytes(const std::filesystem::path& path);
/// Writes the bytes, making the folder when needed.
void writeBytes(const std::filesystem::path& path, std::string_view bytes);
/// The regular files in a folder, sorted by name; empty when the folder doesn't exist.
[[nodiscard]] std::vector<std::filesystem::path> filesIn(const std::filesystem::path& folder);
/// The folder with the project's test data ("tests/data").
[[nodiscard]] std::filesystem::path testDataFolder();

}  // namespace brindlet::testing
