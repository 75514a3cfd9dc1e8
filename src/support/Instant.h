#pragma once

#include <compare>
#include <optional>
#include <string>
#include <string_view>

namespace brindlet {

/// A point in time: seconds since 2001-01-01T00:00:00Z, the form the state file stores.
class Instant {
 public:
  /// Seconds between the Unix epoch and 2001-01-01T00:00:00Z.
  static constexpr double kUnixOffset = 978307200.0;

  constexpr Instant() = default;
  constexpr explicit Instant(double secondsSinceReferenceDate)
      : seconds_(secondsSinceReferenceDate) {}

  [[nodiscard]] static constexpr Instant fromUnix(double unixSeconds) {
    return Instant(unixSeconds - kUnixOffset);
  }
  /// The instant of ISO 8601 text such as "2026-11-21T09:30:00Z" or with an offset
  /// "+01:00"; fractions of a second are read too. Absent when the text isn't such a time.
  [[nodiscard]] static std::optional<Instant> fromIso8601(std::string_view text);

  [[nodiscard]] constexpr double secondsSinceReferenceDate() const { return seconds_; }
  [[nodiscard]] constexpr double unixSeconds() const { return seconds_ + kUnixOffset; }
  /// UTC text with whole seconds, "2026-11-21T09:30:00Z"; fractions are dropped.
  [[nodiscard]] std::string iso8601() const;

  [[nodiscard]] constexpr Instant advanced(double seconds) const {
    return Instant(seconds_ + seconds);
  }
  /// Seconds from `earlier` to this instant.
  [[nodiscard]] constexpr double since(Instant earlier) const {
    return seconds_ - earlier.seconds_;
  }

  friend constexpr auto operator<=>(Instant, Instant) = default;

 private:
  double seconds_ = 0;
};

}  // namespace brindlet
