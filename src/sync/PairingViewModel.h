#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "support/Calendar.h"
#include "support/Instant.h"
#include "sync/DeviceProtectionStatus.h"
#include "sync/PairedDevice.h"
#include "sync/SyncSchema.h"

namespace brindlet {

/// One row of the Devices screen: a paired iPhone.
struct PairingDevicePresentation {
  /// The device's id, and the row's identity.
  std::string id;
  std::string name;
  /// "Seen just now", "Seen {m}m ago" or "Seen {h}h ago".
  std::string lastSeenText;
  /// Last seen five minutes ago or longer. It marks the row only; the texts don't change.
  bool isStale = false;
  /// The device's own status line.
  std::string statusText;

  friend bool operator==(const PairingDevicePresentation&,
                         const PairingDevicePresentation&) = default;
};

/// What the Devices screen is made from.
struct PairingViewInputs {
  PairingState pairingState = PairingState::waitingForICloud;
  std::vector<PairedDevice> devices;
  /// By device id; a device without an entry has nothing to report.
  std::map<std::string, DeviceProtectionStatus> protectionStatuses;
  bool profileSelected = true;
  bool authorizationGranted = true;
  /// The running session's mode; absent when no session runs.
  std::optional<SyncedSessionMode> sessionMode;
  Instant now{};
};

/// The texts of the Devices screen, following from its inputs alone. Only iPhones are shown
/// and counted: a Mac doesn't show itself nor any other Mac.
struct PairingViewModel {
  /// The screen's main line.
  std::string headline;
  /// The line under it.
  std::string detail;
  /// What the session's mode means; absent when there's no session.
  std::optional<std::string> modeMessage;
  /// One row per iPhone, in the given order.
  std::vector<PairingDevicePresentation> devices;

  PairingViewModel() = default;
  /// The texts for these inputs; `calendar` gives the time zone and locale of the times shown.
  PairingViewModel(const PairingViewInputs& inputs, const Calendar& calendar);

  friend bool operator==(const PairingViewModel&, const PairingViewModel&) = default;
};

}  // namespace brindlet
