#include "WeekScreen.h"

namespace brindlet::ui {

WeekScreen::WeekScreen(Dashboard& dashboard, QObject* parent) : ScreenModel(dashboard, parent) {}

WeekScreen* WeekScreen::create(QQmlEngine*, QJSEngine*) {
  return new WeekScreen(*Dashboard::instance());
}

}  // namespace brindlet::ui
