#pragma once

#include <QtQml/qqmlregistration.h>

#include <QString>
#include <QVariantList>
#include <cstdint>
#include <optional>
#include <string>

#include "ReviewCompletedListModel.h"
#include "ReviewProposalListModel.h"
#include "ScreenModel.h"
#include "records/LocalDay.h"
#include "support/Calendar.h"

class QQmlEngine;
class QJSEngine;

namespace brindlet::ui {

/// The height a chart column keeps however little its day holds.
inline constexpr double kMinimumWorkloadColumnHeight = 120;

/// Abbreviated month and day in the calendar's locale, "Nov 16"; empty for a day with no date.
[[nodiscard]] std::string reviewDayText(const LocalDay& day, const Calendar& calendar);
/// The completion rate as a whole percentage, the fraction cut off: 0.999 reads "99%".
[[nodiscard]] std::string completionPercentText(double rate);
/// "{h}h {m}m", both always shown.
[[nodiscard]] std::string hoursMinutesText(std::int64_t minutes);
/// The bar of a day's open minutes: a fifth of a point per minute, never under a stub of 3.
[[nodiscard]] double workloadBarHeight(std::int64_t minutes);

/// What the Review screen shows: the figures of the week under review, its daily workload, the
/// pending recommendations and the tasks finished in the week, every text worked out here.
class ReviewScreen : public brindlet::ui::ScreenModel {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

  Q_PROPERTY(QString weekRangeText READ weekRangeText NOTIFY changed)
  /// The four figure cards, each a map of `title`, `value` and `detail`.
  Q_PROPERTY(QVariantList metrics READ metrics NOTIFY metricsChanged)
  /// One column per day of the week: `label`, `minutes`, `barHeight`, `accessibleName`.
  Q_PROPERTY(QVariantList workloadDays READ workloadDays NOTIFY workloadChanged)
  /// The height the bars stand in: at least the minimum, more for a day taller than that.
  Q_PROPERTY(double workloadHeight READ workloadHeight NOTIFY workloadChanged)
  Q_PROPERTY(brindlet::ui::ReviewProposalListModel* proposals READ proposals CONSTANT)
  Q_PROPERTY(brindlet::ui::ReviewCompletedListModel* completed READ completed CONSTANT)

 public:
  explicit ReviewScreen(Dashboard& dashboard, QObject* parent = nullptr);

  /// Made by the QML engine the first time a screen asks for it, over the one dashboard.
  static ReviewScreen* create(QQmlEngine* engine, QJSEngine* scriptEngine);

  /// "{weekStart} – {weekEnd}", "Nov 16 – Nov 22".
  [[nodiscard]] QString weekRangeText() const { return weekRangeText_; }
  [[nodiscard]] QVariantList metrics() const { return metrics_; }
  [[nodiscard]] QVariantList workloadDays() const { return workloadDays_; }
  [[nodiscard]] double workloadHeight() const { return workloadHeight_; }
  [[nodiscard]] ReviewProposalListModel* proposals() { return &proposals_; }
  [[nodiscard]] ReviewCompletedListModel* completed() { return &completed_; }

  /// Moves the review by whole weeks, back when negative, without limit either way.
  Q_INVOKABLE void changeWeek(int weeks);
  Q_INVOKABLE void generateRecommendations();
  Q_INVOKABLE void approveProposal(const QString& proposalId);
  Q_INVOKABLE void dismissProposal(const QString& proposalId);
  Q_INVOKABLE void approveAllProposals();
  Q_INVOKABLE void dismissAllProposals();

 signals:
  void metricsChanged();
  void workloadChanged();

 protected:
  void refresh() override;

 private:
  [[nodiscard]] std::optional<PlanningProposal> findProposal(const QString& proposalId) const;
  /// A proposal's day for the change line: "Unscheduled" when it has none.
  [[nodiscard]] QString proposalDayText(const std::optional<LocalDay>& day) const;

  QString weekRangeText_;
  QVariantList metrics_;
  QVariantList workloadDays_;
  double workloadHeight_ = kMinimumWorkloadColumnHeight;
  ReviewProposalListModel proposals_;
  ReviewCompletedListModel completed_;
};

}  // namespace brindlet::ui
