#include "records/ProductivityPreferences.h"

namespace brindlet {

void toJson(JsonWriter& out, const ProductivityPreferences& preferences) {
  out.beginObject();
  out.key("dailyCapacityMinutes").integer(preferences.dailyCapacityMinutes);
  out.endObject();
}

ProductivityPreferences productivityPreferencesFromJson(const JsonNode& node) {
  return {node.object().required("dailyCapacityMinutes").integer()};
}

}  // namespace brindlet
