#pragma once

#include <QtQml/qqmlregistration.h>

#include "ScreenModel.h"

class QQmlEngine;
class QJSEngine;

namespace brindlet::ui {

/// What the Devices screen shows: the pairing status and the paired iPhones.
class DevicesScreen : public ScreenModel {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

 public:
  explicit DevicesScreen(Dashboard& dashboard, QObject* parent = nullptr);

  /// Made by the QML engine the first time a screen asks for it, over the one dashboard.
  static DevicesScreen* create(QQmlEngine* engine, QJSEngine* scriptEngine);
};

}  // namespace brindlet::ui
