#include "support/Files.h"

#include <fcntl.h>
#include <simdjson.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "support/BrindletError.h"
#include "support/Uuid.h"

namespace brindlet {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void failWith(int errorNumber, const std::string& action) {
  throw SystemError(errorNumber, action);
}

FileIdentity identityOf(const struct stat& info) {
  return {static_cast<std::uint64_t>(info.st_dev), static_cast<std::uint64_t>(info.st_ino),
          static_cast<std::int64_t>(info.st_size), static_cast<std::int64_t>(info.st_mtim.tv_sec),
          static_cast<std::int64_t>(info.st_mtim.tv_nsec)};
}

FileContents readOpenFile(const FileDescriptor& file, const fs::path& path) {
  struct stat info {};
  if (::fstat(file.get(), &info) != 0) failWith(errno, "read " + quotedPath(path));
  if (S_ISDIR(info.st_mode)) failWith(EISDIR, "read " + quotedPath(path));
  FileContents contents{std::string(), identityOf(info)};
  std::string& bytes = contents.bytes;
  std::size_t size = 0;
  std::size_t capacity = static_cast<std::size_t>(info.st_size) + 1;
  for (;;) {
    bytes.resize(capacity + simdjson::SIMDJSON_PADDING);
    const ssize_t count = ::read(file.get(), bytes.data() + size, capacity - size);
    if (count < 0) {
      if (errno == EINTR) continue;
      failWith(errno, "read " + quotedPath(path));
    }
    if (count == 0) break;
    size += static_cast<std::size_t>(count);
    if (size == capacity) capacity *= 2;
  }
  // Zeroed padding stays in the capacity behind the bytes, where the parser may look.
  std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(size), bytes.end(), '\0');
  bytes.resize(size);
  return contents;
}

void writeAll(int fd, std::string_view bytes, const fs::path& path) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(fd, bytes.data(), bytes.size());
    if (count < 0) {
      if (errno == EINTR) continue;
      failWith(errno, "write " + quotedPath(path));
    }
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void syncFolder(const fs::path& folder) {
  FileDescriptor directory(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (!directory.isOpen()) failWith(errno, "open the folder " + quotedPath(folder));
  if (::fsync(directory.get()) != 0) failWith(errno, "flush the folder " + quotedPath(folder));
}

fs::path folderOf(const fs::path& path) {
  return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

// Removes the temporary file unless the rename took it over.
class TemporaryFile {
 public:
  explicit TemporaryFile(fs::path path) : path_(std::move(path)) {}
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;
  ~TemporaryFile() {
    if (!path_.empty()) ::unlink(path_.c_str());
  }
  [[nodiscard]] const fs::path& path() const { return path_; }
  void keep() { path_.clear(); }

 private:
  fs::path path_;
};

}  // namespace

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
  if (this != &other) {
    close();
    fd_ = other.release();
  }
  return *this;
}

FileDescriptor::~FileDescriptor() { close(); }

int FileDescriptor::close() {
  if (fd_ < 0) return 0;
  const int result = ::close(fd_);
  fd_ = -1;
  return result == 0 ? 0 : errno;
}

int FileDescriptor::release() {
  const int fd = fd_;
  fd_ = -1;
  return fd;
}

std::string quotedPath(const fs::path& path) { return "“" + path.string() + "”"; }

bool fileExists(const fs::path& path) {
  struct stat info {};
  return ::stat(path.c_str(), &info) == 0;
}

std::optional<FileIdentity> fileIdentity(const fs::path& path) {
  struct stat info {};
  if (::stat(path.c_str(), &info) == 0) return identityOf(info);
  if (errno == ENOENT) return std::nullopt;
  failWith(errno, "look at " + quotedPath(path));
}

FileContents readWholeFile(const fs::path& path) {
  FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file.isOpen()) failWith(errno, "read " + quotedPath(path));
  return readOpenFile(file, path);
}

std::optional<FileContents> readFileIfExists(const fs::path& path) {
  FileDescriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (!file.isOpen()) {
    if (errno == ENOENT) return std::nullopt;
    failWith(errno, "read " + quotedPath(path));
  }
  return readOpenFile(file, path);
}

void createDirectories(const fs::path& folder) {
  std::error_code error;
  fs::create_directories(folder, error);
  if (error) failWith(error.value(), "create the folder " + quotedPath(folder));
}

void writeFileAtomically(const fs::path& path, std::string_view bytes, mode_t mode) {
  const fs::path folder = folderOf(path);
  TemporaryFile temporary(folder /
                          ("." + path.filename().string() + "." + Uuid::random().lowercaseText()));
  FileDescriptor file(
      ::open(temporary.path().c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
  if (!file.isOpen()) failWith(errno, "write " + quotedPath(path));
  writeAll(file.get(), bytes, path);
  if (::fsync(file.get()) != 0) failWith(errno, "write " + quotedPath(path));
  if (const int error = file.close(); error != 0) failWith(error, "write " + quotedPath(path));
  if (::rename(temporary.path().c_str(), path.c_str()) != 0) {
    failWith(errno, "replace " + quotedPath(path));
  }
  temporary.keep();
  syncFolder(folder);
}

bool preserveVersion(const fs::path& from, const fs::path& to, mode_t mode) {
  // A state file that is a symbolic link is followed: the second name goes to the bytes.
  if (::linkat(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), AT_SYMLINK_FOLLOW) == 0) {
    syncFolder(folderOf(to));
    return true;
  }
  const int error = errno;
  const bool noHardLinksHere = error == EPERM || error == EXDEV || error == ENOTSUP ||
                               error == EOPNOTSUPP || error == EMLINK || error == ENOSYS;
  if (error == ENOENT && !fileExists(from)) return false;
  if (!noHardLinksHere) failWith(error, "keep a copy of " + quotedPath(from));
  const std::optional<FileContents> contents = readFileIfExists(from);
  if (!contents) return false;
  writeFileAtomically(to, contents->bytes, mode);
  return true;
}

void copyFileAtomically(const fs::path& from, const fs::path& to, mode_t mode) {
  writeFileAtomically(to, readWholeFile(from).bytes, mode);
}

}  // namespace brindlet
