#pragma once

#include <QtQml/qqmlregistration.h>

#include "ScreenModel.h"

class QQmlEngine;
class QJSEngine;

namespace brindlet::ui {

/// What the Week screen shows: the seven day columns of the selected week and the unscheduled
/// column, and the moves between them.
class WeekScreen : public ScreenModel {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

 public:
  explicit WeekScreen(Dashboard& dashboard, QObject* parent = nullptr);

  /// Made by the QML engine the first time a screen asks for it, over the one dashboard.
  static WeekScreen* create(QQmlEngine* engine, QJSEngine* scriptEngine);
};

}  // namespace brindlet::ui
