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

OpenedFile openedWithIdentity(FileDescriptor file, const fs::path& path) {
  struct stat info {};
  if (::fstat(file.get(), &info) != 0) failWith(errno, "read " + quotedPath(path));
  if (S_ISDIR(info.st_mode)) failWith(EISDIR, "read " + quotedPath(path));
  return {std::move(file), identityOf(info)};
}

}  // namespace

FileContents readOpenedFile(OpenedFile opened, const fs::path& path, const FileService& files) {
  const FileDescriptor& file = opened.file;
  FileContents contents{std::string(), opened.identity};
  std::string& bytes = contents.bytes;
  std::size_t size = 0;
  std::size_t capacity = static_cast<std::size_t>(opened.identity.size) + 1;
  for (;;) {
    bytes.resize(capacity + simdjson::SIMDJSON_PADDING);
    const ssize_t count = files.read(file.get(), bytes.data() + size, capacity - size);
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

namespace {

void writeAll(int fd, std::string_view bytes, const fs::path& path, const FileService& files) {
  while (!bytes.empty()) {
    const ssize_t count = files.write(fd, bytes.data(), bytes.size());
    if (count < 0) {
      if (errno == EINTR) continue;
      failWith(errno, "write " + quotedPath(path));
    }
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void syncFolder(const fs::path& folder, const FileService& files) {
  FileDescriptor directory(files.open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0));
  if (!directory.isOpen()) failWith(errno, "open the folder " + quotedPath(folder));
  if (files.sync(directory.get()) != 0) {
    failWith(errno, "flush the folder " + quotedPath(folder));
  }
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

std::optional<OpenedFile> openFileIfExists(const fs::path& path, const FileService& files) {
  FileDescriptor file(files.open(path.c_str(), O_RDONLY | O_CLOEXEC, 0));
  if (!file.isOpen()) {
    if (errno == ENOENT) return std::nullopt;
    failWith(errno, "read " + quotedPath(path));
  }
  return openedWithIdentity(std::move(file), path);
}

FileContents readWholeFile(const fs::path& path, const FileService& files) {
  std::optional<OpenedFile> opened = openFileIfExists(path, files);
  if (!opened) failWith(ENOENT, "read " + quotedPath(path));
  return readOpenedFile(std::move(*opened), path, files);
}

std::optional<FileContents> readFileIfExists(const fs::path& path, const FileService& files) {
  std::optional<OpenedFile> opened = openFileIfExists(path, files);
  if (!opened) return std::nullopt;
  return readOpenedFile(std::move(*opened), path, files);
}

void createDirectories(const fs::path& folder, mode_t mode, const FileService& files) {
  struct stat info {};
  if (::stat(folder.c_str(), &info) == 0) {
    if (S_ISDIR(info.st_mode)) return;
    failWith(ENOTDIR, "create the folder " + quotedPath(folder));
  }
  const fs::path parent = folder.parent_path();
  if (!parent.empty() && parent != folder) createDirectories(parent, mode, files);
  if (files.makeFolder(folder.c_str(), mode) != 0 && errno != EEXIST) {
    failWith(errno, "create the folder " + quotedPath(folder));
  }
}

void writeFileAtomically(const fs::path& path, std::string_view bytes, mode_t mode,
                         const FileService& files) {
  const fs::path folder = folderOf(path);
  const std::string unique = Uuid::random().lowercaseText();
  TemporaryFile temporary(folder / ("." + path.filename().string() + "." + unique));
  FileDescriptor file(
      files.open(temporary.path().c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode));
  if (!file.isOpen()) failWith(errno, "write " + quotedPath(path));
  writeAll(file.get(), bytes, path, files);
  if (files.sync(file.get()) != 0) failWith(errno, "write " + quotedPath(path));
  if (const int error = file.close(); error != 0) failWith(error, "write " + quotedPath(path));
  // A second name for the version being replaced lets a failure after the rename put it back,
  // so that a write reported as failed never leaves the new bytes in place.
  TemporaryFile previous(folder / ("." + path.filename().string() + ".previous." + unique));
  const bool hadPrevious = ::link(path.c_str(), previous.path().c_str()) == 0;
  if (files.rename(temporary.path().c_str(), path.c_str()) != 0) {
    failWith(errno, "replace " + quotedPath(path));
  }
  temporary.keep();
  try {
    syncFolder(folder, files);
  } catch (const SystemError&) {
    if (hadPrevious) {
      ::rename(previous.path().c_str(), path.c_str());
    } else {
      ::unlink(path.c_str());
    }
    throw;
  }
}

bool preserveVersion(const fs::path& from, const fs::path& to, mode_t mode,
                     const FileService& files) {
  if (files.link(from.c_str(), to.c_str()) == 0) {
    syncFolder(folderOf(to), files);
    return true;
  }
  const int error = errno;
  const bool noHardLinksHere = error == EPERM || error == EXDEV || error == ENOTSUP ||
                               error == EOPNOTSUPP || error == EMLINK || error == ENOSYS;
  if (error == ENOENT && !fileExists(from)) return false;
  if (!noHardLinksHere) failWith(error, "keep a copy of " + quotedPath(from));
  const std::optional<FileContents> contents = readFileIfExists(from, files);
  if (!contents) return false;
  writeFileAtomically(to, contents->bytes, mode, files);
  return true;
}

void copyFileAtomically(const fs::path& from, const fs::path& to, mode_t mode,
                        const FileService& files) {
  writeFileAtomically(to, readWholeFile(from, files).bytes, mode, files);
}

}  // namespace brindlet
