#include "UiTexts.h"

#include <unicode/dtptngen.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <cctype>
#include <memory>

#include "records/EnumText.h"

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
  if (!start) return "Today";
  const icu::Locale locale(calendar.localeId().c_str());
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::DateTimePatternGenerator> generator(
      icu::DateTimePatternGenerator::createInstance(locale, status));
  if (U_FAILURE(status)) return "Today";
  const icu::UnicodeString pattern = generator->getBestPattern(u"EEEEMMMMd", status);
  icu::SimpleDateFormat format(pattern, locale, status);
  if (U_FAILURE(status)) return "Today";
  format.adoptTimeZone(
      icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(calendar.timeZoneId())));
  icu::UnicodeString text;
  format.format(start->unixSeconds() * 1000.0, text);
  std::string out;
  text.toUTF8String(out);
  return out;
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
