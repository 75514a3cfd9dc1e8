#include "DevicesScreen.h"

#include "sync/PairingViewModel.h"

namespace brindlet::ui {

// ---- PairedDeviceListModel ----

int PairedDeviceListModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : count();
}

QVariant PairedDeviceListModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) {
    return {};
  }
  const DeviceRowData& row = rows_[static_cast<std::size_t>(index.row())];
  switch (role) {
    case DeviceIdRole:
      return row.deviceId;
    case Qt::DisplayRole:
    case NameRole:
      return row.name;
    case CaptionRole:
      return row.caption;
    case IsStaleRole:
      return row.isStale;
    default:
      return {};
  }
}

QHash<int, QByteArray> PairedDeviceListModel::roleNames() const {
  return {{DeviceIdRole, "deviceId"},
          {NameRole, "name"},
          {CaptionRole, "caption"},
          {IsStaleRole, "isStale"}};
}

void PairedDeviceListModel::setRows(std::vector<DeviceRowData> rows) {
  if (rows == rows_) return;
  const bool sameDevices =
      rows.size() == rows_.size() && std::equal(rows.begin(), rows.end(), rows_.begin(),
                                                [](const DeviceRowData& a, const DeviceRowData& b) {
                                                  return a.deviceId == b.deviceId;
                                                });
  if (!sameDevices) {
    beginResetModel();
    rows_ = std::move(rows);
    endResetModel();
    emit countChanged();
    return;
  }
  for (std::size_t i = 0; i < rows.size(); ++i) {
    if (rows[i] == rows_[i]) continue;
    rows_[i] = std::move(rows[i]);
    const QModelIndex changed = index(static_cast<int>(i));
    emit dataChanged(changed, changed);
  }
}

// ---- DevicesScreen ----

DevicesScreen::DevicesScreen(Dashboard& dashboard, QObject* parent)
    : ScreenModel(dashboard, parent), devices_(this) {
  refresh();
}

DevicesScreen* DevicesScreen::create(QQmlEngine*, QJSEngine*) {
  return new DevicesScreen(*Dashboard::instance());
}

QString DevicesScreen::statusSymbol() const {
  // Read from the words on purpose: a headline that changes its wording changes its icon too.
  if (headline_.startsWith(QStringLiteral("Protected"))) {
    return QStringLiteral("checkmark.shield.fill");
  }
  if (headline_ == QStringLiteral("Paired")) return QStringLiteral("checkmark.circle.fill");
  return QStringLiteral("iphone.and.arrow.forward");
}

void DevicesScreen::refresh() {
  const PairingViewModel presentation = state().pairedDevicesPresentation();
  headline_ = QString::fromStdString(presentation.headline);
  detail_ = QString::fromStdString(presentation.detail);
  modeMessage_ = QString::fromStdString(presentation.modeMessage.value_or(std::string()));

  std::vector<DeviceRowData> rows;
  rows.reserve(presentation.devices.size());
  for (const PairingDevicePresentation& device : presentation.devices) {
    rows.push_back(DeviceRowData{
        .deviceId = QString::fromStdString(device.id),
        .name = QString::fromStdString(device.name),
        .caption = QString::fromStdString(device.statusText + " · " + device.lastSeenText),
        .isStale = device.isStale,
    });
  }
  devices_.setRows(std::move(rows));
}

}  // namespace brindlet::ui
