#pragma once

#include <QString>
#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "app/AppModelState.h"
#include "flow/WorkloadSummary.h"
#include "records/FocusTask.h"
#include "records/LocalDay.h"
#include "support/Calendar.h"

namespace brindlet::ui {

/// The screens of the main window, in the order of the sidebar.
enum class Destination { today, week, review, blocking, devices, dataSafety };

struct DestinationEntry {
  Destination destination;
  std::string_view title;
  std::string_view symbol;
};

inline constexpr std::array<DestinationEntry, 6> kDestinations{{
    {Destination::today, "Today", "sun.max.fill"},
    {Destination::week, "Week", "calendar"},
    {Destination::review, "Review", "chart.bar.fill"},
    {Destination::blocking, "Blocking", "shield.fill"},
    {Destination::devices, "Devices", "iphone.and.arrow.forward"},
    {Destination::dataSafety, "Data Safety", "externaldrive.fill.badge.checkmark"},
}};

/// The name the sidebar and the alert carry as their title.
inline constexpr std::string_view kNavigationTitle = "Tolvane";

[[nodiscard]] inline QString qs(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// The raw value with its first letter in capitals: "Critical".
[[nodiscard]] std::string priorityTitle(TaskPriority priority);
[[nodiscard]] std::string priorityRawValue(TaskPriority priority);

/// The day as the Today header shows it: full weekday, full month and day in the user's locale,
/// or "Today" when the day forms no date.
[[nodiscard]] std::string headerDate(const LocalDay& day, const Calendar& calendar);

/// "{taskCount} tasks · {h}h {m}m", hours and minutes always both shown.
[[nodiscard]] std::string workloadText(const WorkloadSummary& workload);

/// The sidebar footer: which of its three looks applies.
enum class FooterState { attention, active, ready };
[[nodiscard]] FooterState footerState(const AppModelState& state);
[[nodiscard]] std::string footerCaption(FooterState state);

/// The text beside the menu-bar icon: the running task's time, else the session's countdown,
/// else nothing.
[[nodiscard]] std::optional<std::string> menuBarLabel(const AppModelState& state);
/// The symbol of the menu-bar icon.
[[nodiscard]] std::string menuBarSymbol(const AppModelState& state);

}  // namespace brindlet::ui
