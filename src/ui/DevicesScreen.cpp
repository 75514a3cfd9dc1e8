#include "DevicesScreen.h"

#include "sync/PairingViewModel.h"

namespace brindlet::ui {

// ---- PairedDeviceListModel ----

PairedDeviceListModel::PairedDeviceListModel(QObject* parent)
    : RowListModel({"deviceId", "name", "caption", "isStale"}, parent) {}

QVariant PairedDeviceListModel::field(std::size_t index, int column) const {
  const DeviceRowData& row = rows_[index];
  switch (column) {
    case 0:
      return row.deviceId;
    case 1:
      return row.name;
    case 2:
      return row.caption;
    case 3:
      return row.isStale;
    default:
      return {};
  }
}

void PairedDeviceListModel::setRows(std::vector<DeviceRowData> rows) {
  replaceRows(rows_, std::move(rows), &DeviceRowData::deviceId);
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
