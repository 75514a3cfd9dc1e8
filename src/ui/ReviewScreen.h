#pragma once

#include <QtQml/qqmlregistration.h>

#include "ScreenModel.h"

class QQmlEngine;
class QJSEngine;

namespace brindlet::ui {

/// What the Review screen shows: the figures of the week under review, its daily workload and the
/// pending recommendations.
class ReviewScreen : public ScreenModel {
  Q_OBJECT
  QML_ELEMENT
  QML_SINGLETON

 public:
  explicit ReviewScreen(Dashboard& dashboard, QObject* parent = nullptr);

  /// Made by the QML engine the first time a screen asks for it, over the one dashboard.
  static ReviewScreen* create(QQmlEngine* engine, QJSEngine* scriptEngine);
};

}  // namespace brindlet::ui
