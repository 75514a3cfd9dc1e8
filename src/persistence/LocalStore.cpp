#include "persistence/LocalStore.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>

#include "support/JsonReader.h"
#include "support/Uuid.h"

namespace brindlet {
namespace {

namespace fs = std::filesystem;

std::int64_t probeSchemaVersion(const JsonDocument& document) {
  return document.root().object().required("schemaVersion").integer();
}

// Steps of a load that may fail with anything: a LocalStoreError passes as it is, any other
// failure becomes `unreadable` with its own text.
template <typename Step>
auto unreadableOnFailure(Step&& step) -> decltype(step()) {
  try {
    return step();
  } catch (const LocalStoreError&) {
    throw;
  } catch (...) {
    throw LocalStoreError::unreadable(currentErrorText());
  }
}

void validateTasks(const PersistedState& state) {
  for (const FocusTask& task : state.tasks) task.validate();
}

}  // namespace

LocalStoreError LocalStoreError::unsupportedSchema(std::int64_t version) {
  return {Case::unsupportedSchema, version, {}};
}

LocalStoreError LocalStoreError::unreadable(std::string reason) {
  return {Case::unreadable, 0, std::move(reason)};
}

LocalStoreError LocalStoreError::lockFailed(std::string reason) {
  return {Case::lockFailed, 0, std::move(reason)};
}

std::string LocalStoreError::description() const {
  switch (case_) {
    case Case::unsupportedSchema:
      return "This data was created by unsupported schema version " + std::to_string(version_) +
             ".";
    case Case::unreadable:
      return "Brindlet data could not be read: " + reason_;
    case Case::lockFailed:
      return "Brindlet data could not be locked: " + reason_;
  }
  return {};
}

StateFileLock::StateFileLock(const fs::path& lockPath, const FileService& files)
    : file_(files.open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, kPrivateFileMode)) {
  if (!file_.isOpen()) throw LocalStoreError::lockFailed(systemErrorText(errno));
  int result = 0;
  do {
    result = ::flock(file_.get(), LOCK_EX);
  } while (result != 0 && errno == EINTR);
  if (result != 0) throw LocalStoreError::lockFailed(systemErrorText(errno));
}

StateFileLock::~StateFileLock() {
  // Unlock before closing, so the lock is released even if another descriptor shares the file.
  ::flock(file_.get(), LOCK_UN);
  file_.close();
}

LocalStore::LocalStore(fs::path url, std::shared_ptr<const FileService> files)
    : url_(std::move(url)), files_(std::move(files)) {}

fs::path LocalStore::folder() const {
  return url_.has_parent_path() ? url_.parent_path() : fs::path(".");
}

fs::path LocalStore::lockPath() const {
  fs::path path = url_;
  path += ".lock";
  return path;
}

fs::path LocalStore::recoveryFolder() const { return folder() / "State Backups"; }

PersistedState LocalStore::load() const { return loadWithIdentity().state; }

LoadedState LocalStore::loadWithIdentity() const {
  std::optional<FileContents> contents =
      unreadableOnFailure([&] { return readFileIfExists(url_, *files_); });
  if (!contents) return {PersistedState::initial(), std::nullopt};
  PersistedState state = unreadableOnFailure([&] {
    const JsonDocument document(contents->bytes);
    const std::int64_t version = probeSchemaVersion(document);
    if (version > PersistedState::currentSchemaVersion) {
      throw LocalStoreError::unsupportedSchema(version);
    }
    PersistedState decoded = persistedStateFromJson(document.root());
    validateTasks(decoded);
    return decoded;
  });
  return {std::move(state), contents->identity};
}

void LocalStore::save(const PersistedState& state) const {
  if (state.schemaVersion != PersistedState::currentSchemaVersion) {
    throw LocalStoreError::unsupportedSchema(state.schemaVersion);
  }
  validateTasks(state);
  createDirectories(folder(), kPrivateFolderMode, *files_);
  // The version about to be replaced is made safe first; if that fails, nothing is written.
  if (fileExists(url_)) {
    createDirectories(recoveryFolder(), kPrivateFolderMode, *files_);
    const fs::path copy = recoveryFolder() / ("state-" + Uuid::random().uppercaseText() + ".json");
    preserveVersion(url_, copy, kPrivateFileMode, *files_);
  }
  const std::string bytes = encodeState(state);
  writeFileAtomically(url_, bytes, kPrivateFileMode, *files_);
}

void LocalStore::migrateToCurrentSchema() const {
  const std::optional<FileContents> contents = readFileIfExists(url_, *files_);
  if (!contents) return;
  const JsonDocument document(contents->bytes);
  if (probeSchemaVersion(document) >= PersistedState::currentSchemaVersion) return;
  save(load());
}

}  // namespace brindlet
