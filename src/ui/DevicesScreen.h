#pragma once

#include <QtQml/qqmlregistration.h>

#include <QString>
#include <vector>

#include "RowListModel.h"
#include "ScreenModel.h"

class QQmlEngine;
class QJSEngine;

namespace brindlet::ui {

/// One paired iPhone as its card shows it.
struct DeviceRowData {
  QString deviceId{};
  QString name{};
  /// "{status} · {seen}", the line under the name.
  QString caption{};
  /// Not heard from for a while: the caption and the dot turn orange.
  bool isStale = false;

  friend bool operator==(const DeviceRowData&, const DeviceRowData&) = default;
};

/// The paired iPhones in the order the model gives them. A new list of the same devices only
/// changes the rows that differ, so each card keeps its identity as the seen-ago lines move.
class PairedDeviceListModel : public brindlet::ui::RowListModel {
  Q_OBJECT
  QML_ELEMENT
  QML_UNCREATABLE("Device lists come from the Devices screen.")

 public:
  enum Role {
    DeviceIdRole = Qt::UserRole + 1,
    NameRole,
    CaptionRole,
    IsStaleRole,
  };

  explicit PairedDeviceListModel(QObject* parent = nullptr);

  [[nodiscard]] int count() const override { return static_cast<int>(rows_.size()); }
  [[nodiscard]] const std::vector<DeviceRowData>& rows() const { return rows_; }
  void setRows(std::vector<DeviceRowData> rows);

 private:
  [[nodiscard]] QVariant field(std::size_t row, int column) const override;

  std::vector<DeviceRowData> rows_;
};

/// What the Devices screen shows: the pairing status and the paired iPhones. Everything is read
/// from the model's pairing presentation of the shown state; the screen has no controls.
class DevicesScreen : public brindlet::ui::ScreenModel {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

  Q_PROPERTY(QString headline READ headline NOTIFY changed)
  Q_PROPERTY(QString detail READ detail NOTIFY changed)
  Q_PROPERTY(QString modeMessage READ modeMessage NOTIFY changed)
  Q_PROPERTY(QString statusSymbol READ statusSymbol NOTIFY changed)
  Q_PROPERTY(brindlet::ui::PairedDeviceListModel* devices READ devices CONSTANT)

 public:
  explicit DevicesScreen(Dashboard& dashboard, QObject* parent = nullptr);

  /// Made by the QML engine the first time a screen asks for it, over the one dashboard.
  static DevicesScreen* create(QQmlEngine* engine, QJSEngine* scriptEngine);

  [[nodiscard]] QString headline() const { return headline_; }
  [[nodiscard]] QString detail() const { return detail_; }
  /// What the running session's mode means; empty when no session runs.
  [[nodiscard]] QString modeMessage() const { return modeMessage_; }
  /// The icon beside the headline, chosen from the headline's own words.
  [[nodiscard]] QString statusSymbol() const;
  [[nodiscard]] PairedDeviceListModel* devices() { return &devices_; }

 protected:
  void refresh() override;

 private:
  QString headline_;
  QString detail_;
  QString modeMessage_;
  PairedDeviceListModel devices_;
};

}  // namespace brindlet::ui
