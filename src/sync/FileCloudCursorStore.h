#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "sync/CloudCursorStoring.h"

namespace brindlet {

/// Keeps the cloud change cursor in a small key-value file, "defaults.json" in the given folder
/// (the data folder in the application): one JSON object of keys and base64 values, replaced
/// atomically at each save. Other keys in the file are kept as they are.
class FileCloudCursorStore final : public CloudCursorStoring {
 public:
  static constexpr std::string_view kFileName = "defaults.json";
  static constexpr std::string_view kDefaultKey = "cloudkit-change-token.v1";

  explicit FileCloudCursorStore(std::filesystem::path folder,
                                std::string key = std::string(kDefaultKey));

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  [[nodiscard]] const std::string& key() const { return key_; }

  /// The cursor under the key; absent when there is none, or when the file can't be read.
  [[nodiscard]] std::optional<std::string> load() override;
  /// Writes the cursor under the key, or removes the key for absent. A failed write leaves the
  /// file as it was.
  void save(const std::optional<std::string>& cursor) override;

 private:
  std::filesystem::path folder_;
  std::filesystem::path path_;
  std::string key_;
};

}  // namespace brindlet
