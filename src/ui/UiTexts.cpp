#include "UiTexts.h"

#include <cctype>

#include "records/EnumText.h"
#include "support/DateText.h"

namespace brindlet::ui {

std::string priorityRawValue(TaskPriority priority) {
  return std::string(kTaskPriorityText.text(priority));
}

std::string priorityTitle(TaskPriority priority) {
  std::string text = priorityRawValue(priority);
  if (!text.empty()) text[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text[0])));
  return text;
}

std::string headerDate(const LocalDay& day, const Calendar& calendar) {
  const std::optional<Instant> start = day.date(calendar);
  const std::string text = start ? dateText(*start, calendar, kLongDaySkeleton) : std::string();
  return text.empty() ? "Today" : text;
}

std::string workloadText(const WorkloadSummary& workload) {
  return std::to_string(workload.taskCount) + " tasks · " +
         std::to_string(workload.estimatedMinutes / 60) + "h " +
         std::to_string(workload.estimatedMinutes % 60) + "m";
}

FooterState footerState(const AppModelState& state) {
  if (state.protectionError) return FooterState::attention;
  if (state.protectionStatus == ProtectionStatus::active) return FooterState::active;
  return FooterState::ready;
}

std::string footerCaption(FooterState state) {
  switch (state) {
    case FooterState::attention:
      return "Protection needs attention";
    case FooterState::active:
      return "Blocking active";
    case FooterState::ready:
      break;
  }
  return "Ready";
}

std::optional<std::string> menuBarLabel(const AppModelState& state) {
  if (const std::optional<FocusTask> task = state.activeTask()) return state.elapsedText(*task);
  if (state.activeSession) return state.countdown();
  return std::nullopt;
}

std::string menuBarSymbol(const AppModelState& state) {
  return state.protectionStatus == ProtectionStatus::active ? "shield.fill" : "shield";
}

}  // namespace brindlet::ui
