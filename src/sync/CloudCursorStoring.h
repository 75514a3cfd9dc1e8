#pragma once

#include <optional>
#include <string>

namespace brindlet {

/// Where the change cursor of the cloud record database is kept between launches. Neither
/// operation fails: a cursor that can't be kept only means that a later fetch starts earlier,
/// and taking records in again is harmless.
class CloudCursorStoring {
 public:
  virtual ~CloudCursorStoring() = default;

  /// The cursor saved last, or absent.
  [[nodiscard]] virtual std::optional<std::string> load() = 0;
  /// Keeps the cursor; absent removes the saved one.
  virtual void save(const std::optional<std::string>& cursor) = 0;
};

}  // namespace brindlet
