#include <gtest/gtest.h>

#include "support/Instant.h"

namespace brindlet {
namespace {

TEST(InstantTest, ReferenceDateIsTheStartOf2001) {
  EXPECT_EQ(Instant(0).iso8601(), "2001-01-01T00:00:00Z");
  EXPECT_DOUBLE_EQ(Instant(0).unixSeconds(), 978307200.0);
}

TEST(InstantTest, UnixTimeRoundTrips) {
  const Instant instant = Instant::fromUnix(1795253400.5);
  EXPECT_DOUBLE_EQ(instant.unixSeconds(), 1795253400.5);
  EXPECT_DOUBLE_EQ(instant.secondsSinceReferenceDate(), 1795253400.5 - 978307200.0);
}

TEST(InstantTest, Iso8601TextHasWholeSecondsAndZ) {
  EXPECT_EQ(Instant::fromUnix(1795253400.75).iso8601(), "2026-11-21T09:30:00Z");
}

TEST(InstantTest, Iso8601BeforeTheReferenceDateAndTheUnixEpoch) {
  EXPECT_EQ(Instant::fromUnix(-1.5).iso8601(), "1969-12-31T23:59:58Z");
  EXPECT_EQ(Instant(-86400).iso8601(), "2000-12-31T00:00:00Z");
}

TEST(InstantTest, ReadsIso8601WithZOffsetsAndFractions) {
  EXPECT_EQ(Instant::fromIso8601("2026-11-21T09:30:00Z"), Instant::fromUnix(1795253400));
  EXPECT_EQ(Instant::fromIso8601("2026-11-21T10:30:00+01:00"), Instant::fromUnix(1795253400));
  EXPECT_EQ(Instant::fromIso8601("2026-11-21T04:00:00-05:30"), Instant::fromUnix(1795253400));
  EXPECT_EQ(Instant::fromIso8601("2026-11-21T09:30:00.5Z"), Instant::fromUnix(1795253400.5));
}

TEST(InstantTest, RefusesTextThatIsNotATime) {
  for (const char* text : {"", "2026-11-21", "2026-11-21T09:30:00", "2026-02-30T09:30:00Z",
                           "2026-11-21T24:00:00Z", "2026-11-21T09:30:00.Z", "x026-11-21T09:30:00Z",
                           "2026-11-21T09:30:00+1:00", "2026-11-21T09:30:00Zjunk"}) {
    EXPECT_FALSE(Instant::fromIso8601(text).has_value()) << text;
  }
}

TEST(InstantTest, IsoTextRoundTripsAtWholeSeconds) {
  for (double unix : {0.0, 978307200.0, 1795253400.0, 4102444799.0, -2208988800.0}) {
    const Instant instant = Instant::fromUnix(unix);
    EXPECT_EQ(Instant::fromIso8601(instant.iso8601()), instant) << unix;
  }
}

TEST(InstantTest, OrdersAndMeasuresIntervals) {
  const Instant earlier(10);
  const Instant later = earlier.advanced(90);
  EXPECT_LT(earlier, later);
  EXPECT_DOUBLE_EQ(later.since(earlier), 90);
}

}  // namespace
}  // namespace brindlet
