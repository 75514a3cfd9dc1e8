#include "records/LocalDay.h"

namespace brindlet {

LocalDay::LocalDay(Instant date, const Calendar& calendar) {
  const CivilDate civil = calendar.civilDate(date);
  year = civil.year;
  month = civil.month;
  day = civil.day;
}

std::optional<Instant> LocalDay::date(const Calendar& calendar) const {
  return calendar.startOfDay(CivilDate{year, month, day});
}

void toJson(JsonWriter& out, const LocalDay& day) {
  out.beginObject();
  out.key("day").integer(day.day);
  out.key("month").integer(day.month);
  out.key("year").integer(day.year);
  out.endObject();
}

LocalDay localDayFromJson(const JsonNode& node) {
  const JsonObject object = node.object();
  return {object.required("year").integer(), object.required("month").integer(),
          object.required("day").integer()};
}

}  // namespace brindlet
