#include "Theme.h"

namespace brindlet::ui {

QColor Theme::tint(const QColor& base, double opacity) {
  QColor tinted = base;
  tinted.setAlphaF(static_cast<float>(opacity));
  return tinted;
}

QColor Theme::mixed(const QColor& base, const QColor& other, double share) {
  const auto mix = [share](float from, float to) {
    return static_cast<float>(from + (to - from) * share);
  };
  return QColor::fromRgbF(mix(base.redF(), other.redF()), mix(base.greenF(), other.greenF()),
                          mix(base.blueF(), other.blueF()), base.alphaF());
}

QColor Theme::priorityColor(const QString& priority) const {
  if (priority == u"critical") return red;
  if (priority == u"high") return orange;
  if (priority == u"normal") return blue;
  return grey;
}

}  // namespace brindlet::ui
