#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "support/FileService.h"

namespace brindlet {

/// Modes of what only the user may see: the plan, its copies and backups, and their folders.
inline constexpr mode_t kPrivateFolderMode = 0700;
inline constexpr mode_t kPrivateFileMode = 0600;

/// Owns an open file descriptor and closes it once.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int fd) : fd_(fd) {}
  FileDescriptor(FileDescriptor&& other) noexcept : fd_(other.release()) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept;
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor();

  [[nodiscard]] int get() const { return fd_; }
  [[nodiscard]] bool isOpen() const { return fd_ >= 0; }
  /// Closes now and reports the error number of a failed close, or 0.
  int close();
  int release();

 private:
  int fd_ = -1;
};

/// Which version of a file this is. Writers replace files by renaming a new one over them, so
/// an unchanged identity means unchanged content.
struct FileIdentity {
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = 0;
  std::int64_t modifiedSeconds = 0;
  std::int64_t modifiedNanoseconds = 0;
  friend bool operator==(const FileIdentity&, const FileIdentity&) = default;
};

/// A file's bytes and the identity of the version they were read from.
struct FileContents {
  std::string bytes;
  FileIdentity identity;
};

/// The text used in messages for a path.
[[nodiscard]] std::string quotedPath(const std::filesystem::path& path);

[[nodiscard]] bool fileExists(const std::filesystem::path& path);
/// The identity of the file at `path`, absent when there is none; fails with SystemError.
[[nodiscard]] std::optional<FileIdentity> fileIdentity(const std::filesystem::path& path);

/// A file opened for reading, with the identity of the version it holds open.
struct OpenedFile {
  FileDescriptor file;
  FileIdentity identity;
};

/// Opens the file for reading, absent when no file exists at `path`; fails with SystemError,
/// also when `path` is a folder.
[[nodiscard]] std::optional<OpenedFile> openFileIfExists(
    const std::filesystem::path& path, const FileService& files = *FileService::system());
/// The rest of an opened file, with the same padding as readWholeFile; fails with SystemError.
[[nodiscard]] FileContents readOpenedFile(OpenedFile opened, const std::filesystem::path& path,
                                          const FileService& files = *FileService::system());

/// The whole file; fails with SystemError, also when it doesn't exist. The string's capacity
/// leaves zeroed room behind the bytes so that a JSON parser can read them in place.
[[nodiscard]] FileContents readWholeFile(const std::filesystem::path& path,
                                         const FileService& files = *FileService::system());
/// Like readWholeFile, but absent when no file exists at `path`.
[[nodiscard]] std::optional<FileContents> readFileIfExists(
    const std::filesystem::path& path, const FileService& files = *FileService::system());

/// Makes the folder and any missing folders above it, each with `mode`; an existing folder is
/// fine and keeps its mode.
void createDirectories(const std::filesystem::path& folder, mode_t mode = 0755,
                       const FileService& files = *FileService::system());

/// Replaces `path` with `bytes` so that a reader or a crash sees the old file or the new one,
/// never a mix: a temporary file in the same folder is written, flushed to disk, renamed over
/// the target, and the folder is flushed. Fails with SystemError; the old file then stands.
void writeFileAtomically(const std::filesystem::path& path, std::string_view bytes,
                         mode_t mode = 0644, const FileService& files = *FileService::system());

/// Keeps the version `from` holds now under the name `to`, durably; false when there is no file
/// at `from`. A hard link where the file system has them: writers here replace files and never
/// change one in place, so the linked version stays as it is, and a large file costs nothing to
/// keep. Elsewhere the bytes are copied with writeFileAtomically. Fails with SystemError.
bool preserveVersion(const std::filesystem::path& from, const std::filesystem::path& to,
                     mode_t mode = 0644, const FileService& files = *FileService::system());

/// Copies a file whole, with the same guarantee as writeFileAtomically at the destination.
void copyFileAtomically(const std::filesystem::path& from, const std::filesystem::path& to,
                        mode_t mode = 0644, const FileService& files = *FileService::system());

}  // namespace brindlet
