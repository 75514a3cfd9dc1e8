#pragma once

#include <cstdint>

#include "support/JsonReader.h"
#include "support/JsonWriter.h"

namespace brindlet {

/// The user's one planning preference.
struct ProductivityPreferences {
  static constexpr std::int64_t kDefaultDailyCapacityMinutes = 480;

  /// How much work, in minutes, fits into a day.
  std::int64_t dailyCapacityMinutes = kDefaultDailyCapacityMinutes;

  friend bool operator==(const ProductivityPreferences&, const ProductivityPreferences&) = default;
};

void toJson(JsonWriter& out, const ProductivityPreferences& preferences);
[[nodiscard]] ProductivityPreferences productivityPreferencesFromJson(const JsonNode& node);

}  // namespace brindlet
