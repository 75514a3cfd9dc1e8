#include "records/DomainGroup.h"

#include <array>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace brindlet {
namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 5> kSeededRuleIds = {{
    {"facebook.com", "A0000000-0000-4000-8000-000000000001"},
    {"instagram.com", "A0000000-0000-4000-8000-000000000002"},
    {"tiktok.com", "A0000000-0000-4000-8000-000000000003"},
    {"twitter.com", "A0000000-0000-4000-8000-000000000004"},
    {"x.com", "A0000000-0000-4000-8000-000000000005"},
}};

// Only ever asked for the five seeded domains; anything else is a programming fault.
Uuid stableRuleID(std::string_view domain) {
  for (const auto& [seeded, id] : kSeededRuleIds) {
    if (seeded == domain) return Uuid::fromLiteral(id);
  }
  std::abort();
}

DomainGroup makeSocialDistractions() {
  DomainGroup group{.id = Uuid::fromLiteral("4B402E53-3C5D-4A66-A9C5-C0DFB9C6A501"),
                    .name = "Social Distractions",
                    .rules = {},
                    .isEnabled = true};
  for (const auto& [domain, id] : kSeededRuleIds) {
    group.rules.push_back(
        {.id = stableRuleID(domain), .domain = std::string(domain), .isEnabled = true});
  }
  return group;
}

}  // namespace

const DomainGroup& DomainGroup::socialDistractions() {
  static const DomainGroup group = makeSocialDistractions();
  return group;
}

void toJson(JsonWriter& out, const DomainGroup& group) {
  out.beginObject();
  out.key("id").string(group.id.uppercaseText());
  out.key("isEnabled").boolean(group.isEnabled);
  out.key("name").string(group.name);
  out.key("rules").beginArray();
  for (const DomainRule& rule : group.rules) toJson(out, rule);
  out.endArray();
  out.endObject();
}

DomainGroup domainGroupFromJson(const JsonNode& node) {
  const JsonObject object = node.object();
  return {.id = object.required("id").uuid(),
          .name = std::string(object.required("name").string()),
          .rules = object.required("rules").list(domainRuleFromJson),
          .isEnabled = object.required("isEnabled").boolean()};
}

}  // namespace brindlet
