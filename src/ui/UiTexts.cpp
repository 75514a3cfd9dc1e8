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

namespace {

// The header's long date format for one locale and time zone. Building one costs far more than
// using it, and the header asks for its text on every state the model publishes.
struct HeaderDateFormat {
  std::string localeId;
  std::string timeZoneId;
  std::unique_ptr<icu::SimpleDateFormat> format;
};

const icu::SimpleDateFormat* headerDateFormat(const Calendar& calendar) {
  thread_local HeaderDateFormat cached;
  if (cached.format && cached.localeId == calendar.localeId() &&
      cached.timeZoneId == calendar.timeZoneId()) {
    return cached.format.get();
  }
  const icu::Locale locale(calendar.localeId().c_str());
  UErrorCode status = U_ZERO_ERROR;
  const std::unique_ptr<icu::DateTimePatternGenerator> generator(
      icu::DateTimePatternGenerator::createInstance(locale, status));
  if (U_FAILURE(status)) return nullptr;
  const icu::UnicodeString pattern = generator->getBestPattern(u"EEEEMMMMd", status);
  auto format = std::make_unique<icu::SimpleDateFormat>(pattern, locale, status);
  if (U_FAILURE(status)) return nullptr;
  format->adoptTimeZone(
      icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(calendar.timeZoneId())));
  cached = {calendar.localeId(), calendar.timeZoneId(), std::move(format)};
  return cached.format.get();
}

}  // namespace

std::string headerDate(const LocalDay& day, const Calendar& calendar) {
  const std::optional<Instant> start = day.date(calendar);
  if (!start) return "Today";
  const icu::SimpleDateFormat* format = headerDateFormat(calendar);
  if (!format) return "Today";
  icu::UnicodeString text;
  format->format(start->unixSeconds() * 1000.0, text);
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
