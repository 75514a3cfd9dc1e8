#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>

#include "support/Calendar.h"
#include "support/Instant.h"
#include "support/JsonReader.h"
#include "support/JsonWriter.h"

namespace brindlet {

/// A calendar date with no time zone. No range is checked: month 13 stays month 13 until a
/// calendar turns it into an instant.
struct LocalDay {
  std::int64_t year = 0;
  std::int64_t month = 0;
  std::int64_t day = 0;

  constexpr LocalDay() = default;
  constexpr LocalDay(std::int64_t y, std::int64_t m, std::int64_t d) : year(y), month(m), day(d) {}
  /// The day the instant falls on in the calendar's time zone.
  LocalDay(Instant date, const Calendar& calendar);

  /// The instant the day begins in that calendar; absent when it can't form the date.
  [[nodiscard]] std::optional<Instant> date(const Calendar& calendar) const;

  friend constexpr auto operator<=>(const LocalDay&, const LocalDay&) = default;
};

void toJson(JsonWriter& out, const LocalDay& day);
[[nodiscard]] LocalDay localDayFromJson(const JsonNode& node);

}  // namespace brindlet

template <>
struct std::hash<brindlet::LocalDay> {
  std::size_t operator()(const brindlet::LocalDay& day) const noexcept {
    const auto mix = [](std::size_t seed, std::int64_t value) {
      return seed ^
             (std::hash<std::int64_t>{}(value) + 0x9E3779B97F4A7C15ULL + (seed << 6) + (seed >> 2));
    };
    return mix(mix(mix(0, day.year), day.month), day.day);
  }
};
