#pragma once

#include <QtQml/qqmlregistration.h>

#include "ScreenModel.h"

class QQmlEngine;
class QJSEngine;

namespace brindlet::ui {

/// What the Blocking screen shows: the setup or running card of a blocking session and the selected
/// group's domains.
class BlockingScreen : public ScreenModel {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

 public:
  explicit BlockingScreen(Dashboard& dashboard, QObject* parent = nullptr);

  /// Made by the QML engine the first time a screen asks for it, over the one dashboard.
  static BlockingScreen* create(QQmlEngine* engine, QJSEngine* scriptEngine);
};

}  // namespace brindlet::ui
