#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace brindlet {

/// Where Brindlet keeps its files for the current user.
struct PlatformFolders {
  /// Looks up an environment variable; absent when it isn't set.
  using Environment = std::function<std::optional<std::string>(std::string_view)>;

  /// Per-user application data: `$XDG_DATA_HOME`, else `~/.local/share` (on macOS
  /// `~/Library/Application Support`).
  std::filesystem::path applicationSupport;
  /// The user's documents: `XDG_DOCUMENTS_DIR` of `user-dirs.dirs`, else `~/Documents`.
  std::filesystem::path documents;

  /// The folders of the user running the program.
  [[nodiscard]] static PlatformFolders current();
  /// The folders an environment names, with the files below its home folder.
  [[nodiscard]] static PlatformFolders fromEnvironment(const Environment& environment);

  /// "Brindlet" in the application data folder.
  [[nodiscard]] std::filesystem::path dataFolder() const { return applicationSupport / "Brindlet"; }
  [[nodiscard]] std::filesystem::path stateFile() const { return dataFolder() / "state.json"; }
  /// Copies of the hosts file from before each change.
  [[nodiscard]] std::filesystem::path hostsBackupFolder() const { return dataFolder() / "Backups"; }
  /// "Brindlet Backups" in the documents folder, one backup per day.
  [[nodiscard]] std::filesystem::path dailyBackupFolder() const {
    return documents / "Brindlet Backups";
  }
};

}  // namespace brindlet
