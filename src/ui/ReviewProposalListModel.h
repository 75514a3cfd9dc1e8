#pragma once

#include <QtQml/qqmlregistration.h>

#include <QString>
#include <vector>

#include "RowListModel.h"

namespace brindlet::ui {

/// One pending recommendation as the Review screen lists it, every text already worked out.
struct ProposalRowData {
  QString proposalId{};
  QString reason{};
  QString taskTitle{};  // "Task" when the task is gone
  QString change{};     // "Nov 17 → Nov 18", "Unscheduled → Nov 18"

  friend bool operator==(const ProposalRowData&, const ProposalRowData&) = default;
};

/// The pending recommendations in the order they were made. A new list of the same proposals
/// only changes the rows that differ, so a press on a row's button survives the next heartbeat.
class ReviewProposalListModel : public brindlet::ui::RowListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Recommendation lists come from the review screen.")

 public:
  enum Role {
    ProposalIdRole = Qt::UserRole + 1,
    ReasonRole,
    TaskTitleRole,
    ChangeRole,
  };

  explicit ReviewProposalListModel(QObject* parent = nullptr);

  [[nodiscard]] int count() const override { return static_cast<int>(rows_.size()); }
  [[nodiscard]] const std::vector<ProposalRowData>& rows() const { return rows_; }
  void setRows(std::vector<ProposalRowData> rows);

 private:
  [[nodiscard]] QVariant field(std::size_t row, int column) const override;

  std::vector<ProposalRowData> rows_;
};

}  // namespace brindlet::ui
