#include "ReviewScreen.h"

#include <QVariantMap>
#include <algorithm>
#include <memory>
#include <unordered_map>

#include "UiTexts.h"
#include "app/AppModel.h"
#include "review/WeeklyReview.h"
#include "support/DateText.h"

namespace brindlet::ui {
namespace {

QVariantMap metric(const QString& title, const std::string& value, const QString& detail) {
  return {{QStringLiteral("title"), title},
          {QStringLiteral("value"), qs(value)},
          {QStringLiteral("detail"), detail}};
}

}  // namespace

std::string reviewDayText(const LocalDay& day, const Calendar& calendar) {
  const std::optional<Instant> start = day.date(calendar);
  if (!start) return {};
  return dateText(*start, calendar, kMonthDaySkeleton);
}

std::string completionPercentText(double rate) {
  // Cut, not rounded: a week with one task left open never reads as fully done.
  return std::to_string(static_cast<std::int64_t>(rate * 100)) + "%";
}

std::string hoursMinutesText(std::int64_t minutes) {
  return std::to_string(minutes / 60) + "h " + std::to_string(minutes % 60) + "m";
}

double workloadBarHeight(std::int64_t minutes) {
  return std::max(3.0, static_cast<double>(minutes) / 5.0);
}

ReviewScreen::ReviewScreen(Dashboard& dashboard, QObject* parent) : ScreenModel(dashboard, parent) {
  refresh();
}

ReviewScreen* ReviewScreen::create(QQmlEngine*, QJSEngine*) {
  return new ReviewScreen(*Dashboard::instance());
}

QString ReviewScreen::proposalDayText(const std::optional<LocalDay>& day) const {
  return day ? qs(reviewDayText(*day, state().calendar)) : QStringLiteral("Unscheduled");
}

void ReviewScreen::refresh() {
  const AppModelState& shown = state();
  const WeeklyReview review = shown.weeklyReview();
  std::unordered_map<Uuid, const FocusTask*> tasksById;
  for (const FocusTask& task : shown.tasks()) tasksById.emplace(task.id, &task);

  weekRangeText_ = qs(reviewDayText(review.weekStart, shown.calendar) + " – " +
                      reviewDayText(review.weekEnd, shown.calendar));

  const QVariantList metrics{
      metric(QStringLiteral("Completion"), completionPercentText(review.completionRate),
             QStringLiteral("%1 of %2 tasks")
                 .arg(review.completedTaskCount)
                 .arg(review.plannedTaskCount)),
      metric(QStringLiteral("Planned"), hoursMinutesText(review.plannedMinutes),
             QStringLiteral("estimated work")),
      metric(QStringLiteral("Focused"), hoursMinutesText(review.actualMinutes),
             QStringLiteral("recorded time")),
      metric(QStringLiteral("Carry-over"), std::to_string(review.carryoverTaskIDs.size()),
             QStringLiteral("unfinished tasks")),
  };
  if (metrics != metrics_) {
    metrics_ = metrics;
    emit metricsChanged();
  }

  QVariantList days;
  double height = kMinimumWorkloadColumnHeight;
  for (const LocalDay& day : shown.reviewWeekDays()) {
    const auto entry = review.dailyWorkload.find(day);
    const std::int64_t minutes = entry == review.dailyWorkload.end() ? 0 : entry->second;
    const double barHeight = workloadBarHeight(minutes);
    height = std::max(height, barHeight);
    const QString label = qs(shown.dayLabel(day));
    days << QVariantMap{
        {QStringLiteral("label"), label},
        {QStringLiteral("minutes"), QVariant::fromValue(minutes)},
        {QStringLiteral("barHeight"), barHeight},
        {QStringLiteral("accessibleName"),
         QStringLiteral("%1, %2").arg(label, qs(hoursMinutesText(minutes)))},
    };
  }
  if (days != workloadDays_ || height != workloadHeight_) {
    workloadDays_ = days;
    workloadHeight_ = height;
    emit workloadChanged();
  }

  std::vector<ProposalRowData> proposalRows;
  for (const PlanningProposal& proposal : shown.pendingProposals()) {
    const auto task = tasksById.find(proposal.taskID);
    proposalRows.push_back(ProposalRowData{
        .proposalId = qs(proposal.id.uppercaseText()),
        .reason = qs(proposal.reason),
        .taskTitle = task == tasksById.end() ? QStringLiteral("Task") : qs(task->second->title),
        .change = proposalDayText(proposal.originalPlannedDay) + QStringLiteral(" → ") +
                  proposalDayText(proposal.suggestedPlannedDay),
    });
  }
  proposals_.setRows(std::move(proposalRows));

  std::vector<CompletedRowData> completedRows;
  for (const Uuid& id : review.completedTaskIDs) {
    // A task deleted since it was finished leaves no row behind.
    const auto task = tasksById.find(id);
    if (task == tasksById.end()) continue;
    completedRows.push_back(CompletedRowData{
        .taskId = qs(id.uppercaseText()),
        .title = qs(task->second->title),
        .elapsedText = qs(shown.elapsedText(*task->second)),
    });
  }
  completed_.setRows(std::move(completedRows));
}

std::optional<PlanningProposal> ReviewScreen::findProposal(const QString& proposalId) const {
  const std::optional<Uuid> id = Uuid::parse(proposalId.toStdString());
  if (!id) return std::nullopt;
  for (const PlanningProposal& proposal : state().pendingProposals()) {
    if (proposal.id == *id) return proposal;
  }
  return std::nullopt;
}

void ReviewScreen::changeWeek(int weeks) {
  post([weeks](AppModel& model) { model.changeReviewWeek(weeks); });
}

void ReviewScreen::generateRecommendations() {
  post([](AppModel& model) { model.generateRecommendations(); });
}

void ReviewScreen::approveProposal(const QString& proposalId) {
  if (const std::optional<PlanningProposal> proposal = findProposal(proposalId)) {
    post([proposal = *proposal](AppModel& model) { model.approveProposal(proposal); });
  }
}

void ReviewScreen::dismissProposal(const QString& proposalId) {
  if (const std::optional<PlanningProposal> proposal = findProposal(proposalId)) {
    post([proposal = *proposal](AppModel& model) { model.dismissProposal(proposal); });
  }
}

void ReviewScreen::approveAllProposals() {
  post([](AppModel& model) { model.approveAllProposals(); });
}

void ReviewScreen::dismissAllProposals() {
  post([](AppModel& model) { model.dismissAllProposals(); });
}

}  // namespace brindlet::ui
