#include "blocking/HostsBlockingEngine.h"

#include <simdjson.h>
#include <unistd.h>

#include <optional>
#include <set>

#include "blocking/BlockingError.h"
#include "blocking/HostsDocument.h"
#include "support/BrindletError.h"
#include "support/Files.h"
#include "support/Uuid.h"

namespace brindlet {
namespace {

namespace fs = std::filesystem;

// The hosts file is read as UTF-8 text; bytes that aren't are a failure to read it.
std::string readHostsText(const fs::path& path, const FileService& files) {
  std::string bytes;
  try {
    bytes = readWholeFile(path, files).bytes;
  } catch (const SystemError& error) {
    throw BlockingError::readFailed(systemErrorText(error.errorNumber()));
  }
  if (!simdjson::validate_utf8(bytes.data(), bytes.size())) {
    throw BlockingError::readFailed("The file is not UTF-8 text.");
  }
  return bytes;
}

// The words of a failure that another failure passes on: a blocking error's own detail, so
// that its fixed words aren't repeated, and the full text of anything else.
std::string detailOfCurrentFailure() {
  try {
    throw;
  } catch (const BlockingError& error) {
    return error.detail().empty() ? error.description() : error.detail();
  } catch (...) {
    return currentErrorText();
  }
}

// Removes the replacement file when the attempt is over, however it ends. A replacement that
// can't be removed is harmless, so that failure is not reported.
class ReplacementFile {
 public:
  explicit ReplacementFile(fs::path path) : path_(std::move(path)) {}
  ReplacementFile(const ReplacementFile&) = delete;
  ReplacementFile& operator=(const ReplacementFile&) = delete;
  ~ReplacementFile() { ::unlink(path_.c_str()); }
  [[nodiscard]] const fs::path& path() const { return path_; }

 private:
  fs::path path_;
};

template <typename Step>
void writeFailedOnError(Step&& step) {
  try {
    step();
  } catch (const BlockingError&) {
    throw;
  } catch (...) {
    throw BlockingError::writeFailed(currentErrorText());
  }
}

}  // namespace

HostsBlockingEngine::HostsBlockingEngine(fs::path hostsURL, fs::path backupDirectory,
                                         std::shared_ptr<PrivilegedCommandRunning> runner,
                                         std::shared_ptr<const FileService> files)
    : hostsURL_(std::move(hostsURL)),
      backupDirectory_(std::move(backupDirectory)),
      runner_(std::move(runner)),
      files_(std::move(files)) {}

void HostsBlockingEngine::apply(const std::vector<std::string>& hosts) {
  const std::lock_guard lock(mutex_);
  runTransaction([&](const std::string& text) { return HostsDocument(text).applying(hosts); });
  // What was written stays even when it doesn't check out; the caller is told. A file that
  // can't be read back is reported in the system's words, which say more than "not verified".
  if (statusOf(readHostsText(hostsURL_, *files_), hosts) != BlockingStatus::active) {
    throw BlockingError::verificationFailed();
  }
}

void HostsBlockingEngine::remove() {
  const std::lock_guard lock(mutex_);
  runTransaction(
      [](const std::string& text) { return HostsDocument(text).removingManagedBlock(); });
}

BlockingStatus HostsBlockingEngine::status(const std::vector<std::string>& expectedHosts) {
  const std::lock_guard lock(mutex_);
  return statusLocked(expectedHosts);
}

BlockingStatus HostsBlockingEngine::statusLocked(
    const std::vector<std::string>& expectedHosts) const {
  try {
    return statusOf(readHostsText(hostsURL_, *files_), expectedHosts);
  } catch (...) {
    return BlockingStatus::unreadable;
  }
}

BlockingStatus HostsBlockingEngine::statusOf(const std::string& text,
                                             const std::vector<std::string>& expectedHosts) {
  std::set<std::string> managed;
  try {
    managed = HostsDocument(text).managedHosts();
  } catch (...) {
    return BlockingStatus::unreadable;
  }
  // An empty block counts as no block.
  if (managed.empty()) {
    return expectedHosts.empty() ? BlockingStatus::inactive : BlockingStatus::mismatch;
  }
  const std::set<std::string> expected(expectedHosts.begin(), expectedHosts.end());
  return managed == expected ? BlockingStatus::active : BlockingStatus::mismatch;
}

void HostsBlockingEngine::runTransaction(const Transform& transform) {
  const std::string oldText = readHostsText(hostsURL_, *files_);
  // Malformed markers pass through before anything is written.
  const std::string newText = transform(oldText);
  if (newText == oldText) return;

  const std::string name = "hosts-" + Uuid::random().uppercaseText();
  const fs::path backup = backupDirectory_ / (name + ".backup");
  writeFailedOnError([&] {
    // The hosts file's copies live with the plan's data and are as private.
    createDirectories(backupDirectory_, kPrivateFolderMode, *files_);
    writeFileAtomically(backup, oldText, kPrivateFileMode, *files_);
  });
  writeFailedOnError([&] {
    writeFileAtomically(backupDirectory_ / (name + ".replacement"), newText, kPrivateFileMode,
                        *files_);
  });
  const ReplacementFile replacement(backupDirectory_ / (name + ".replacement"));

  std::optional<std::string> swapFailure;
  try {
    runner_->replace(replacement.path(), hostsURL_);
  } catch (const BlockingError& error) {
    // A refusal leaves the file untouched, so there is nothing to roll back.
    if (error.which() == BlockingError::Case::authorizationCancelled) throw;
    swapFailure = detailOfCurrentFailure();
  } catch (...) {
    swapFailure = detailOfCurrentFailure();
  }
  if (swapFailure) {
    // The rollback takes the same privileged path, so it may ask for approval once more.
    try {
      runner_->replace(backup, hostsURL_);
    } catch (...) {
      throw BlockingError::rollbackFailed(detailOfCurrentFailure());
    }
    throw BlockingError::writeFailed(*swapFailure);
  }

  try {
    runner_->refreshDNS();
  } catch (...) {
    throw BlockingError::dnsRefreshFailed(detailOfCurrentFailure());
  }
}

}  // namespace brindlet
