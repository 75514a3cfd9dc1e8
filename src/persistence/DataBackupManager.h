#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>

#include "persistence/LocalStore.h"
#include "persistence/PersistedState.h"
#include "support/BrindletError.h"
#include "support/Calendar.h"
#include "support/Instant.h"

namespace brindlet {

/// A backup that isn't of the schema this version keeps, older or newer.
class DataBackupError : public BrindletError {
 public:
  enum class Case { legacySchema };

  [[nodiscard]] static DataBackupError legacySchema(std::int64_t version);

  [[nodiscard]] Case which() const { return case_; }
  [[nodiscard]] std::int64_t version() const { return version_; }
  [[nodiscard]] std::string description() const override;

 private:
  DataBackupError(Case which, std::int64_t version) : case_(which), version_(version) {}

  Case case_;
  std::int64_t version_;
};

/// Copies the state file out of the data folder, one backup per calendar day or a portable
/// file, and brings such a copy back. Every path first checks that the file is a current,
/// readable document, so a bad file never replaces a good one.
class DataBackupManager {
 public:
  /// Touches no file.
  DataBackupManager(LocalStore store, std::filesystem::path dailyBackupDirectory);

  [[nodiscard]] const LocalStore& store() const { return store_; }
  [[nodiscard]] const std::filesystem::path& dailyBackupDirectory() const {
    return dailyBackupDirectory_;
  }

  /// The location of the day's backup, "Brindlet-YYYY-MM-DD.json" for the day `now` falls on in
  /// `calendar`. The first backup of a day stands for the whole day.
  std::filesystem::path createDailyBackup(Instant now, const Calendar& calendar) const;
  /// Writes a copy of the state file to `destination`, replacing any file there.
  void exportBackup(const std::filesystem::path& destination) const;
  /// Replaces the state file by the document in `source`; the replaced file goes to the
  /// recovery copies first. The revision and audit trail become the backup's.
  void restoreBackup(const std::filesystem::path& source) const;

 private:
  [[nodiscard]] std::shared_ptr<const PersistedState> validatedCurrentState(
      const std::filesystem::path& url) const;

  LocalStore store_;
  std::filesystem::path dailyBackupDirectory_;
};

}  // namespace brindlet
