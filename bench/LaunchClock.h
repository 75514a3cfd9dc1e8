#pragma once

// What the start-up benches print about themselves: how long since they were launched, and how
// much memory they hold. Header-only, so that the bare yardstick links nothing of the app's.

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>

namespace brindlet::bench {

/// Milliseconds since the moment the launching shell recorded in BRINDLET_BENCH_LAUNCHED_AT
/// (seconds since the epoch, as bash's EPOCHREALTIME gives them); -1 without it.
inline double millisecondsSinceLaunch() {
  const char* launchedAt = std::getenv("BRINDLET_BENCH_LAUNCHED_AT");
  if (launchedAt == nullptr) return -1;
  // Read by hand: the shell writes the decimal point of its locale, a point or a comma.
  char* fraction = nullptr;
  const long long wholeSeconds = std::strtoll(launchedAt, &fraction, 10);
  double microseconds = 0;
  if (*fraction == '.' || *fraction == ',') microseconds = std::strtod(fraction + 1, nullptr);
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return static_cast<double>(now.tv_sec - wholeSeconds) * 1000.0 +
         static_cast<double>(now.tv_nsec) / 1e6 - microseconds / 1000.0;
}

inline long residentKilobytes() {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line)) {
    if (line.rfind("VmRSS:", 0) == 0) return std::stol(line.substr(6));
  }
  return -1;
}

}  // namespace brindlet::bench
