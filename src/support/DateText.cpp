#include "support/DateText.h"

#include <unicode/dtptngen.h>
#include <unicode/locid.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <map>
#include <memory>
#include <mutex>
#include <string_view>
#include <tuple>

namespace brindlet {
namespace {

// Building a pattern generator or a date format costs far more than formatting with one, and
// screens ask for dates on every state they show. ICU formats are not safe to share between
// threads unguarded, so one lock covers the cache and every use of it.
class DateFormats {
 public:
  std::string format(Instant instant, const Calendar& calendar, std::u16string_view skeleton) {
    const std::lock_guard lock(mutex_);
    icu::SimpleDateFormat* format = find(calendar, skeleton);
    if (!format) return {};
    icu::UnicodeString text;
    format->format(instant.unixSeconds() * 1000.0, text);
    std::string out;
    text.toUTF8String(out);
    return out;
  }

 private:
  using Key = std::tuple<std::string, std::string, std::u16string>;

  icu::SimpleDateFormat* find(const Calendar& calendar, std::u16string_view skeleton) {
    // Looked up by views: a format already made costs no copies of its key.
    const auto found =
        formats_.find(std::tuple<std::string_view, std::string_view, std::u16string_view>(
            calendar.localeId(), calendar.timeZoneId(), skeleton));
    if (found != formats_.end()) return found->second.get();
    Key key{calendar.localeId(), calendar.timeZoneId(), std::u16string(skeleton)};
    std::unique_ptr<icu::SimpleDateFormat> made = make(calendar, skeleton);
    return formats_.emplace(std::move(key), std::move(made)).first->second.get();
  }

  std::unique_ptr<icu::SimpleDateFormat> make(const Calendar& calendar,
                                              std::u16string_view skeleton) {
    icu::DateTimePatternGenerator* generator = generatorFor(calendar.localeId());
    if (!generator) return nullptr;
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString pattern = generator->getBestPattern(
        icu::UnicodeString(skeleton.data(), static_cast<int32_t>(skeleton.size())), status);
    if (U_FAILURE(status)) return nullptr;
    auto format = std::make_unique<icu::SimpleDateFormat>(
        pattern, icu::Locale(calendar.localeId().c_str()), status);
    if (U_FAILURE(status)) return nullptr;
    format->adoptTimeZone(
        icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(calendar.timeZoneId())));
    return format;
  }

  icu::DateTimePatternGenerator* generatorFor(const std::string& localeId) {
    std::unique_ptr<icu::DateTimePatternGenerator>& generator = generators_[localeId];
    if (!generator) {
      UErrorCode status = U_ZERO_ERROR;
      generator.reset(
          icu::DateTimePatternGenerator::createInstance(icu::Locale(localeId.c_str()), status));
      if (U_FAILURE(status)) generator.reset();
    }
    return generator.get();
  }

  std::mutex mutex_;
  std::map<std::string, std::unique_ptr<icu::DateTimePatternGenerator>> generators_;
  std::map<Key, std::unique_ptr<icu::SimpleDateFormat>, std::less<>> formats_;
};

}  // namespace

std::string dateText(Instant instant, const Calendar& calendar, std::u16string_view skeleton) {
  static DateFormats formats;
  return formats.format(instant, calendar, skeleton);
}

}  // namespace brindlet
