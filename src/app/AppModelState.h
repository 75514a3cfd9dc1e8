#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "blocking/ProtectionStatus.h"
#include "persistence/TaskStoreSnapshot.h"
#include "records/BlockSession.h"
#include "records/DomainGroup.h"
#include "records/FocusTask.h"
#include "records/LocalDay.h"
#include "records/PlanningProposal.h"
#include "review/WeeklyReview.h"
#include "support/Calendar.h"
#include "support/Instant.h"
#include "support/Uuid.h"
#include "sync/DeviceProtectionStatus.h"
#include "sync/PairedDevice.h"
#include "sync/PairingViewModel.h"
#include "sync/SyncSchema.h"

namespace brindlet {

/// The preset lengths of a blocking session; the value is whole minutes.
enum class DurationChoice : std::int64_t {
  twentyFive = 25,
  oneHour = 60,
  fourHours = 240,
  custom = 0,
};

/// The choices in the order the screens list them.
inline constexpr DurationChoice kAllDurationChoices[] = {
    DurationChoice::twentyFive, DurationChoice::oneHour, DurationChoice::fourHours,
    DurationChoice::custom};

/// The label of a choice: "25 min", "1 hour", "4 hours", "Custom".
[[nodiscard]] std::string title(DurationChoice choice);

/// Everything the screens can see of the application at one moment: an immutable value that the
/// model publishes after each change. Copies are cheap: the task document is shared, not copied.
/// The reads below are computed from the fields on each call, on whichever thread holds the value.
struct AppModelState {
  // ---- planning ----
  /// The document as last read or written; replaced whole, never edited.
  TaskStoreSnapshot taskSnapshot;
  LocalDay selectedDay{};
  std::string quickTitle{};
  std::optional<FocusTask> selectedTask{};
  /// The one alert: the text of the last failure the user hasn't dismissed.
  std::optional<std::string> editorError{};
  /// Shown beside a saved task whose reminders couldn't be put in place.
  std::optional<std::string> reminderWarning{};
  /// Any instant in the week that the review shows.
  Instant reviewDate{};
  /// A command is waiting on the disk or the administrator; it doesn't block other commands.
  bool isWorking = false;
  /// The time of the last heartbeat; every running time on screen is measured against it.
  Instant now{};

  // ---- blocking controls ----
  DurationChoice durationChoice = DurationChoice::twentyFive;
  std::int64_t customMinutes = 90;
  SessionMode selectedMode = SessionMode::flexible;
  std::optional<Uuid> selectedGroupID{};
  std::string domainInput{};
  /// Kept for a confirmation before a flexible session ends; nothing sets it yet.
  bool showFlexibleEnd = false;
  /// Why website protection needs attention, from the last start-up pass or heartbeat.
  std::optional<std::string> protectionError{};
  /// One line about the backups; always holds text.
  std::string backupStatus = "Preparing backup…";

  // ---- the session engine, as of this value ----
  std::vector<DomainGroup> groups{};
  std::optional<BlockSession> activeSession{};
  ProtectionStatus protectionStatus = ProtectionStatus::off;

  // ---- paired devices ----
  /// Whether this model was given a way to other devices at all; the program's own composition
  /// has none.
  bool hasCrossDeviceCoordinator = false;
  /// How well each paired iPhone protects the running or last session, by device id.
  std::map<std::string, DeviceProtectionStatus> pairedDeviceProtection{};
  /// The iPhones that announced themselves, as last heard.
  std::vector<PairedDevice> pairedDevices{};
  /// How the connection to the other devices stood at the last refresh.
  PairingState pairingState = PairingState::waitingForICloud;

  // ---- the user's calendar ----
  /// Time zone and locale of the user; dates on screen are in it.
  Calendar calendar = Calendar::gregorianUtc();
  /// The user's calendar with weeks starting on Monday, whatever the region says, so that every
  /// week on screen agrees with the review.
  Calendar planningCalendar = Calendar::gregorianUtc();

  // ---- derived reads ----
  [[nodiscard]] const std::vector<FocusTask>& tasks() const { return taskSnapshot.state().tasks; }
  /// The task being worked on: the first active or paused one, on any day.
  [[nodiscard]] std::optional<FocusTask> activeTask() const;
  [[nodiscard]] std::vector<PlanningProposal> pendingProposals() const;
  /// The group the blocking screens show: the selected one, else the first, else the seeded one.
  [[nodiscard]] DomainGroup selectedGroup() const;
  /// The chosen session length in seconds.
  [[nodiscard]] double duration() const;
  /// Monday to Sunday of the week holding the selected day.
  [[nodiscard]] std::vector<LocalDay> weekDays() const;
  /// Monday to Sunday of the week under review.
  [[nodiscard]] std::vector<LocalDay> reviewWeekDays() const;
  [[nodiscard]] std::vector<FocusTask> selectedDayTasks() const;
  [[nodiscard]] std::optional<FocusTask> nextTask() const;
  [[nodiscard]] WeeklyReview weeklyReview() const;
  /// The texts of the Devices screen, rebuilt on each read so that the seen-ago lines follow
  /// `now`.
  [[nodiscard]] PairingViewModel pairedDevicesPresentation() const;

  // ---- texts ----
  /// A duration as a clock: "mm:ss" below an hour, "hh:mm:ss" from there on; negative is zero.
  [[nodiscard]] static std::string format(double seconds);
  /// Time left of the blocking session; "00:00" without one.
  [[nodiscard]] std::string countdown() const;
  /// The task's focus time so far, the running segment included.
  [[nodiscard]] double focusSeconds(const FocusTask& task) const;
  [[nodiscard]] std::string elapsedText(const FocusTask& task) const;
  /// The task's focus time as a sentence: "25m focused", "1h 5m focused".
  [[nodiscard]] std::string focusedDurationText(const FocusTask& task) const;
  /// Abbreviated weekday and day of month in the user's locale; empty for a day with no date.
  [[nodiscard]] std::string dayLabel(const LocalDay& day) const;

  /// The seven days of the Monday-first week around `date`.
  [[nodiscard]] std::vector<LocalDay> daysInWeek(Instant date) const;
};

}  // namespace brindlet
