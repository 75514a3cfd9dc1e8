#pragma once

#include <QtQml/qqmlregistration.h>

#include <QAbstractListModel>
#include <QString>
#include <vector>

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
class ReviewProposalListModel : public QAbstractListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Recommendation lists come from the review screen.")
  Q_PROPERTY(int count READ count NOTIFY countChanged)

 public:
  enum Role {
    ProposalIdRole = Qt::UserRole + 1,
    ReasonRole,
    TaskTitleRole,
    ChangeRole,
  };

  using QAbstractListModel::QAbstractListModel;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  [[nodiscard]] int count() const { return static_cast<int>(rows_.size()); }
  [[nodiscard]] const std::vector<ProposalRowData>& rows() const { return rows_; }
  void setRows(std::vector<ProposalRowData> rows);

 signals:
  void countChanged();

 private:
  std::vector<ProposalRowData> rows_;
};

}  // namespace brindlet::ui
