#include "persistence/DataBackupManager.h"

#include <array>
#include <cstdio>

#include "records/LocalDay.h"
#include "support/Files.h"
#include "support/JsonReader.h"

namespace brindlet {
namespace {

namespace fs = std::filesystem;

std::string dailyBackupName(const LocalDay& day) {
  std::array<char, 64> name{};
  std::snprintf(name.data(), name.size(), "Brindlet-%04lld-%02lld-%02lld.json",
                static_cast<long long>(day.year), static_cast<long long>(day.month),
                static_cast<long long>(day.day));
  return name.data();
}

// A newer file is refused with the same words as an older one: neither can be trusted to carry
// the task history this version keeps.
void requireCurrentSchema(std::int64_t version) {
  if (version != PersistedState::currentSchemaVersion) {
    throw DataBackupError::legacySchema(version);
  }
}

}  // namespace

DataBackupError DataBackupError::legacySchema(std::int64_t version) {
  return {Case::legacySchema, version};
}

std::string DataBackupError::description() const {
  switch (case_) {
    case Case::legacySchema:
      return "This backup uses legacy schema " + std::to_string(version_) +
             " and cannot safely restore task history.";
  }
  return {};
}

DataBackupManager::DataBackupManager(LocalStore store, fs::path dailyBackupDirectory)
    : store_(std::move(store)), dailyBackupDirectory_(std::move(dailyBackupDirectory)) {}

std::shared_ptr<const PersistedState> DataBackupManager::validatedCurrentState(
    const fs::path& url) const {
  const LocalStore store(url, store_.sharedFiles());
  // A document someone holds was decoded from this very file version: its schema is known and
  // nothing needs reading.
  if (std::optional<SharedLoadedState> held = store.heldDocument()) {
    requireCurrentSchema(held->fileSchemaVersion);
    return std::move(held->state);
  }
  // A missing file fails the read itself; there is no separate test for it.
  const FileContents contents = readWholeFile(url, store_.files());
  const JsonDocument document(contents.bytes);
  requireCurrentSchema(document.root().object().required("schemaVersion").integer());
  return store.loadShared().state;
}

fs::path DataBackupManager::createDailyBackup(Instant now, const Calendar& calendar) const {
  // Only a pass counts; a damaged file must not join yesterday's good backup.
  (void)validatedCurrentState(store_.url());
  // Backups hold the whole plan, which is as private as the state file itself.
  createDirectories(dailyBackupDirectory_, kPrivateFolderMode, store_.files());
  const fs::path backup = dailyBackupDirectory_ / dailyBackupName(LocalDay(now, calendar));
  if (!fileExists(backup)) {
    copyFileAtomically(store_.url(), backup, kPrivateFileMode, store_.files());
  }
  return backup;
}

void DataBackupManager::exportBackup(const fs::path& destination) const {
  (void)validatedCurrentState(store_.url());
  if (destination.has_parent_path()) {
    createDirectories(destination.parent_path(), kPrivateFolderMode, store_.files());
  }
  copyFileAtomically(store_.url(), destination, kPrivateFileMode, store_.files());
}

void DataBackupManager::restoreBackup(const fs::path& source) const {
  // The ordinary save copies the file it replaces to the recovery copies first, damaged or
  // not, so the current data survives the restore.
  store_.save(*validatedCurrentState(source));
}

}  // namespace brindlet
