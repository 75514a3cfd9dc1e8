#pragma once

#include <QtQml/qqmlregistration.h>

#include "ScreenModel.h"

class QQmlEngine;
class QJSEngine;

namespace brindlet::ui {

/// What the Data Safety screen shows: the backup status, and the daily copy, export and restore.
class DataSafetyScreen : public ScreenModel {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

 public:
  explicit DataSafetyScreen(Dashboard& dashboard, QObject* parent = nullptr);

  /// Made by the QML engine the first time a screen asks for it, over the one dashboard.
  static DataSafetyScreen* create(QQmlEngine* engine, QJSEngine* scriptEngine);
};

}  // namespace brindlet::ui
