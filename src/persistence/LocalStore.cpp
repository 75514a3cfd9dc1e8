#include "persistence/LocalStore.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <map>
#include <mutex>

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

// The document of a file, with the schema version the file was written in.
struct DecodedFile {
  PersistedState state;
  std::int64_t schemaVersion = 0;
};

DecodedFile decodeDocument(const JsonDocument& document, std::int64_t version) {
  if (version > PersistedState::currentSchemaVersion) {
    throw LocalStoreError::unsupportedSchema(version);
  }
  DecodedFile decoded{persistedStateFromJson(document.root()), version};
  validateTasks(decoded.state);
  return decoded;
}

DecodedFile decode(const FileContents& contents) {
  const JsonDocument document(contents.bytes);
  return decodeDocument(document, probeSchemaVersion(document));
}

// The last document decoded from each state file, kept only as long as someone else holds it.
class DecodedDocuments {
 public:
  std::optional<SharedLoadedState> find(const fs::path& url, const FileIdentity& identity) {
    const std::scoped_lock lock(mutex_);
    const auto found = documents_.find(url);
    if (found == documents_.end() || found->second.identity != identity) return std::nullopt;
    std::shared_ptr<const PersistedState> state = found->second.state.lock();
    if (!state) return std::nullopt;
    return SharedLoadedState{std::move(state), identity, found->second.schemaVersion};
  }

  SharedLoadedState keep(const fs::path& url, const FileIdentity& identity, DecodedFile decoded) {
    // Not made with make_shared: a weak reference left in the table would keep its memory.
    std::shared_ptr<const PersistedState> state(new PersistedState(std::move(decoded.state)));
    const std::scoped_lock lock(mutex_);
    documents_.insert_or_assign(url, Entry{identity, state, decoded.schemaVersion});
    return {std::move(state), identity, decoded.schemaVersion};
  }

 private:
  struct Entry {
    FileIdentity identity;
    std::weak_ptr<const PersistedState> state;
    std::int64_t schemaVersion = 0;
  };

  std::mutex mutex_;
  std::map<fs::path, Entry> documents_;
};

DecodedDocuments& decodedDocuments() {
  static DecodedDocuments documents;
  return documents;
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

PersistedState LocalStore::load() const { return *loadShared().state; }

LoadedState LocalStore::loadWithIdentity() const {
  SharedLoadedState loaded = loadShared();
  return {*loaded.state, loaded.identity};
}

SharedLoadedState LocalStore::loadShared() const {
  std::optional<OpenedFile> opened =
      unreadableOnFailure([&] { return openFileIfExists(url_, *files_); });
  if (!opened) return {std::make_shared<const PersistedState>(PersistedState::initial()), {}};
  const FileIdentity identity = opened->identity;
  if (std::optional<SharedLoadedState> known = decodedDocuments().find(url_, identity)) {
    return std::move(*known);
  }
  const FileContents contents =
      unreadableOnFailure([&] { return readOpenedFile(std::move(*opened), url_, *files_); });
  return decodedDocuments().keep(url_, identity,
                                 unreadableOnFailure([&] { return decode(contents); }));
}

std::optional<SharedLoadedState> LocalStore::heldDocument() const {
  try {
    const std::optional<FileIdentity> identity = fileIdentity(url_);
    if (!identity) return std::nullopt;
    return decodedDocuments().find(url_, *identity);
  } catch (...) {
    // The ordinary read reports what is wrong with the file.
    return std::nullopt;
  }
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

SharedLoadedState LocalStore::migrateToCurrentSchema() const {
  std::optional<OpenedFile> opened = openFileIfExists(url_, *files_);
  if (!opened) return {};
  const FileIdentity identity = opened->identity;
  const FileContents contents = readOpenedFile(std::move(*opened), url_, *files_);
  const JsonDocument document(contents.bytes);
  const std::int64_t version = probeSchemaVersion(document);
  if (version < PersistedState::currentSchemaVersion) {
    save(load());
    return {};
  }
  // A newer file is refused by the first load, not here.
  if (version > PersistedState::currentSchemaVersion) return {};
  // The file stays as it is. Its document is decoded from this one parse and shared, so that the
  // first load reads nothing; what fails here fails that load again, which reports it.
  try {
    return decodedDocuments().keep(url_, identity, decodeDocument(document, version));
  } catch (...) {
    return {};
  }
}

}  // namespace brindlet
