#include "ReviewScreen.h"

namespace brindlet::ui {

ReviewScreen::ReviewScreen(Dashboard& dashboard, QObject* parent)
    : ScreenModel(dashboard, parent) {}

ReviewScreen* ReviewScreen::create(QQmlEngine*, QJSEngine*) {
  return new ReviewScreen(*Dashboard::instance());
}

}  // namespace brindlet::ui
