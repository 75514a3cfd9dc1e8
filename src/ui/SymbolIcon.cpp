#include "SymbolIcon.h"

#include <QHash>
#include <QMutex>
#include <QPainter>
#include <QQuickWindow>
#include <QSvgRenderer>
#include <memory>

namespace brindlet::ui {
namespace {

QImage render(QSvgRenderer& svg, const QColor& color, QSize pixels) {
  QImage image(pixels, QImage::Format_ARGB32_Premultiplied);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  svg.render(&painter);
  // The icons are single-colour shapes: their coverage, filled with the wanted colour.
  painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
  painter.fillRect(image.rect(), color);
  return image;
}

}  // namespace

SymbolIcon::SymbolIcon(QQuickItem* parent) : QQuickPaintedItem(parent) {}

void SymbolIcon::setSymbol(const QString& symbol) {
  if (symbol == symbol_) return;
  symbol_ = symbol;
  update();
  emit symbolChanged();
}

void SymbolIcon::setColor(const QColor& color) {
  if (color == color_) return;
  color_ = color;
  update();
  emit colorChanged();
}

void SymbolIcon::paint(QPainter* painter) {
  if (symbol_.isEmpty() || width() <= 0 || height() <= 0) return;
  const qreal ratio = window() ? window()->effectiveDevicePixelRatio() : 1.0;
  const QSize pixels = (size() * ratio).toSize();
  const QImage image = drawn(symbol_, color_, pixels);
  if (!image.isNull()) painter->drawImage(boundingRect(), image);
}

QImage SymbolIcon::drawn(const QString& symbol, const QColor& color, QSize pixels) {
  // Painting may happen on a render thread of each window.
  static QMutex mutex;
  static QHash<QString, std::shared_ptr<QSvgRenderer>> symbols;
  static QHash<QString, QImage> images;
  const QString key = QStringLiteral("%1 %2 %3x%4")
                          .arg(symbol, color.name(QColor::HexArgb))
                          .arg(pixels.width())
                          .arg(pixels.height());
  const QMutexLocker lock(&mutex);
  const auto found = images.constFind(key);
  if (found != images.constEnd()) return *found;
  std::shared_ptr<QSvgRenderer>& svg = symbols[symbol];
  if (!svg) svg = std::make_shared<QSvgRenderer>(QStringLiteral(":/icons/%1.svg").arg(symbol));
  return *images.insert(key, svg->isValid() ? render(*svg, color, pixels) : QImage());
}

}  // namespace brindlet::ui
