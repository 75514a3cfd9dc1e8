#include "DataSafetyScreen.h"

namespace brindlet::ui {

DataSafetyScreen::DataSafetyScreen(Dashboard& dashboard, QObject* parent)
    : ScreenModel(dashboard, parent) {}

DataSafetyScreen* DataSafetyScreen::create(QQmlEngine*, QJSEngine*) {
  return new DataSafetyScreen(*Dashboard::instance());
}

}  // namespace brindlet::ui
