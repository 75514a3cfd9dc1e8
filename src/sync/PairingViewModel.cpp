#include "sync/PairingViewModel.h"

#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <cmath>
#include <memory>

namespace brindlet {
namespace {

constexpr double kStaleAfterSeconds = 300;
constexpr const char* kNotPairedDetail =
    "Open Tolvane on your iPhone using the same iCloud account.";

// The time of day in the locale's short style, without the date.
std::string shortTimeText(Instant instant, const Calendar& calendar) {
  std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createTimeInstance(
      icu::DateFormat::kShort, icu::Locale(calendar.localeId().c_str())));
  if (!format) return {};
  format->adoptTimeZone(
      icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(calendar.timeZoneId())));
  icu::UnicodeString text;
  format->format(instant.unixSeconds() * 1000.0, text);
  std::string result;
  text.toUTF8String(result);
  return result;
}

std::string lastSeenText(double age) {
  if (age < 60) return "Seen just now";
  if (age < 3600) return "Seen " + std::to_string(static_cast<long long>(age / 60)) + "m ago";
  return "Seen " + std::to_string(static_cast<long long>(age / 3600)) + "h ago";
}

// Lower is worse: trouble first, then waiting, then unknown, then protected, then over.
int priority(const DeviceProtectionStatus& status) {
  using Case = DeviceProtectionStatus::Case;
  switch (status.which) {
    case Case::failed:
    case Case::authorizationRequired:
    case Case::profileMissing:
    case Case::entitlementMissing:
      return 0;
    case Case::waitingForIPhone:
      return 1;
    case Case::notPaired:
      return 2;
    case Case::protectedUntil:
      return 3;
    case Case::expired:
      return 4;
  }
  return 4;
}

std::string statusText(const DeviceProtectionStatus& status, const Calendar& calendar) {
  using Case = DeviceProtectionStatus::Case;
  switch (status.which) {
    case Case::failed:
      return "Protection needs attention";
    case Case::authorizationRequired:
      return "Authorization required";
    case Case::profileMissing:
      return "Choose apps to protect";
    case Case::entitlementMissing:
      return "Protection unavailable";
    case Case::waitingForIPhone:
      return "Waiting for iPhone";
    case Case::notPaired:
      return "Not paired";
    case Case::protectedUntil:
      return "Protected until " + shortTimeText(status.until.value_or(Instant()), calendar);
    case Case::expired:
      return "Ready";
  }
  return "Ready";
}

std::string statusDetail(const DeviceProtectionStatus& status) {
  using Case = DeviceProtectionStatus::Case;
  switch (status.which) {
    case Case::failed:
      return status.code ? "iPhone reported: " + *status.code : "Open Tolvane on iPhone and retry.";
    case Case::authorizationRequired:
      return "Open Tolvane on iPhone and allow Screen Time again.";
    case Case::profileMissing:
      return "Open Tolvane on iPhone and choose apps to protect.";
    case Case::entitlementMissing:
      return "This build is missing Apple Family Controls approval.";
    case Case::waitingForIPhone:
      return "The session is active on Mac and awaiting iPhone confirmation.";
    case Case::notPaired:
      return kNotPairedDetail;
    case Case::protectedUntil:
      return "The iPhone confirmed that the selected apps are protected.";
    case Case::expired:
      return "The previous focus session has ended.";
  }
  return {};
}

std::optional<std::string> modeMessage(const std::optional<SyncedSessionMode>& mode) {
  if (!mode) return std::nullopt;
  switch (*mode) {
    case SyncedSessionMode::strict:
      return "Strict: apps stay blocked until the session ends.";
    case SyncedSessionMode::flexible:
      return "Flexible: you can deliberately open an app from its shield.";
  }
  return std::nullopt;
}

}  // namespace

PairingViewModel::PairingViewModel(const PairingViewInputs& inputs, const Calendar& calendar)
    : modeMessage(brindlet::modeMessage(inputs.sessionMode)) {
  const DeviceProtectionStatus* worst = nullptr;
  bool hasPhone = false;
  for (const PairedDevice& device : inputs.devices) {
    if (device.platform != FocusDevicePlatform::iOS) continue;
    hasPhone = true;
    // A clock ahead of this one makes a device seen in the future; that reads as just now.
    const double age = std::max(0.0, inputs.now.since(device.lastSeenAt));
    const auto status = inputs.protectionStatuses.find(device.id);
    const bool hasStatus = status != inputs.protectionStatuses.end();
    if (hasStatus && (worst == nullptr || priority(status->second) < priority(*worst))) {
      worst = &status->second;
    }
    devices.push_back({.id = device.id,
                       .name = device.name,
                       .lastSeenText = lastSeenText(age),
                       .isStale = age >= kStaleAfterSeconds,
                       .statusText = hasStatus ? statusText(status->second, calendar) : "Ready"});
  }

  if (!inputs.authorizationGranted) {
    headline = "Authorization required";
    detail = "Allow Screen Time on this iPhone to protect selected apps.";
  } else if (!inputs.profileSelected) {
    headline = "Choose apps to protect";
    detail = "Your app choices stay private on this iPhone.";
  } else if (inputs.pairingState == PairingState::waitingForICloud) {
    headline = "Waiting for iCloud";
    detail = "Sign in to the same iCloud account on both devices.";
  } else if (inputs.pairingState == PairingState::offline) {
    headline = "Offline—will apply when connected";
    detail = "Tolvane will retry without changing the Mac session.";
  } else if (!hasPhone) {
    // schemaUnsupported and permissionDenied have no line of their own and read as below.
    headline = "Not paired";
    detail = kNotPairedDetail;
  } else if (worst != nullptr) {
    headline = statusText(*worst, calendar);
    detail = statusDetail(*worst);
  } else {
    headline = "Paired";
    detail = "This iPhone is ready for your next focus session.";
  }
}

}  // namespace brindlet
