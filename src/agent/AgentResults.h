#pragma once

#include "agent/JSONValue.h"
#include "records/FocusTask.h"
#include "records/LocalDay.h"
#include "records/PlanningProposal.h"
#include "review/WeeklyReview.h"

// The forms in which records reach an agent: keys in lower camel case, dates as ISO 8601 text,
// identifiers as upper-case text, and an optional field's key left out when it is absent. Each
// fails with EncodingError for a number or a date that JSON can't carry.
namespace brindlet {

/// An object with `year`, `month` and `day`.
[[nodiscard]] JSONValue jsonValue(const LocalDay& day);
[[nodiscard]] JSONValue jsonValue(const TaskReminder& reminder);
[[nodiscard]] JSONValue jsonValue(const FocusTask& task);
[[nodiscard]] JSONValue jsonValue(const PlanningProposal& proposal);
/// The two maps of a review are arrays that alternate key and value, since their keys aren't
/// texts.
[[nodiscard]] JSONValue jsonValue(const WeeklyReview& review);

}  // namespace brindlet
