#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>

#include "persistence/PersistedState.h"
#include "support/BrindletError.h"
#include "support/Files.h"

namespace brindlet {

/// A state file that can't be read, locked, or understood by this version.
class LocalStoreError : public BrindletError {
 public:
  enum class Case { unsupportedSchema, unreadable, lockFailed };

  [[nodiscard]] static LocalStoreError unsupportedSchema(std::int64_t version);
  [[nodiscard]] static LocalStoreError unreadable(std::string reason);
  [[nodiscard]] static LocalStoreError lockFailed(std::string reason);

  [[nodiscard]] Case which() const { return case_; }
  [[nodiscard]] std::int64_t version() const { return version_; }
  [[nodiscard]] const std::string& reason() const { return reason_; }
  [[nodiscard]] std::string description() const override;

 private:
  LocalStoreError(Case which, std::int64_t version, std::string reason)
      : case_(which), version_(version), reason_(std::move(reason)) {}

  Case case_;
  std::int64_t version_;
  std::string reason_;
};

/// The exclusive advisory lock on the lock file beside the state file, held for the life of
/// the object. Taking it waits as long as another holder keeps it; it is not reentrant.
class StateFileLock {
 public:
  /// Fails with LocalStoreError::lockFailed.
  StateFileLock(const std::filesystem::path& lockPath, const FileService& files);
  ~StateFileLock();
  StateFileLock(const StateFileLock&) = delete;
  StateFileLock& operator=(const StateFileLock&) = delete;

 private:
  FileDescriptor file_;
};

/// A document and the version of the file it was read from; no identity when there was no file.
struct LoadedState {
  PersistedState state;
  std::optional<FileIdentity> identity;
};

/// A document shared by every load of the same file version in this process, with the schema
/// version that file was written in (the current one when there was no file).
struct SharedLoadedState {
  std::shared_ptr<const PersistedState> state;
  std::optional<FileIdentity> identity;
  std::int64_t fileSchemaVersion = PersistedState::currentSchemaVersion;
};

/// Knows the state file: reads it, replaces it safely, keeps a recovery copy of each version it
/// replaces, and takes the lock that orders writers across threads and processes. A value that
/// holds no open file. The last document decoded from a file is shared, for as long as anyone
/// holds it, with every later load of the same file version, which then reads nothing: writers
/// replace the file by renaming a new one over it, so the same version has the same content.
class LocalStore {
 public:
  explicit LocalStore(std::filesystem::path url,
                      std::shared_ptr<const FileService> files = FileService::system());

  [[nodiscard]] const std::filesystem::path& url() const { return url_; }
  /// The file calls every read and write of this store goes through.
  [[nodiscard]] const FileService& files() const { return *files_; }
  [[nodiscard]] const std::shared_ptr<const FileService>& sharedFiles() const { return files_; }
  /// "state.json.lock" beside the state file.
  [[nodiscard]] std::filesystem::path lockPath() const;
  /// "State Backups" beside the state file.
  [[nodiscard]] std::filesystem::path recoveryFolder() const;

  /// The current document; the initial one when there is no file. Fails with LocalStoreError.
  [[nodiscard]] PersistedState load() const;
  /// Like load, with the identity of the file version that was read.
  [[nodiscard]] LoadedState loadWithIdentity() const;
  /// Like loadWithIdentity, without copying a document already decoded from the same version.
  [[nodiscard]] SharedLoadedState loadShared() const;
  /// The document of the file's present version when someone in this process still holds it,
  /// found from the file's identity alone; empty otherwise, also when the file can't be looked
  /// at. Reads nothing.
  [[nodiscard]] std::optional<SharedLoadedState> heldDocument() const;
  /// Replaces the file, after copying the version it replaces into "State Backups".
  void save(const PersistedState& state) const;
  /// Rewrites a file of an older schema in the current one; runs once, before anything else.
  /// Gives back the document of a file already current, decoded from the same read, when it
  /// decodes: while it is held, the first load reads nothing. Otherwise gives back no document.
  SharedLoadedState migrateToCurrentSchema() const;

  /// Runs `body` while holding the lock, and gives back its result.
  template <typename Body>
  auto withExclusiveLock(Body&& body) const -> std::invoke_result_t<Body&> {
    createDirectories(folder(), kPrivateFolderMode, *files_);
    const StateFileLock lock(lockPath(), *files_);
    return body();
  }

  /// A locked read, change and write of the document; gives back the result of `change`, which
  /// receives the document to alter. Any failure leaves the file as it was.
  template <typename Change>
  auto updateAtomically(Change&& change) const -> std::invoke_result_t<Change&, PersistedState&> {
    return withExclusiveLock([&]() -> std::invoke_result_t<Change&, PersistedState&> {
      PersistedState state = load();
      if constexpr (std::is_void_v<std::invoke_result_t<Change&, PersistedState&>>) {
        change(state);
        save(state);
      } else {
        auto result = change(state);
        save(state);
        return result;
      }
    });
  }

 private:
  [[nodiscard]] std::filesystem::path folder() const;

  std::filesystem::path url_;
  std::shared_ptr<const FileService> files_;
};

}  // namespace brindlet
