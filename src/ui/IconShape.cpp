#include "IconShape.h"

#include <QPainter>
#include <QResource>
#include <QSvgRenderer>
#include <cstring>

namespace brindlet::ui {

QImage drawIconShape(const QString& svgFile, QSize pixels) {
  QSvgRenderer svg(svgFile);
  if (!svg.isValid()) return {};
  QImage shape(pixels, QImage::Format_ARGB32_Premultiplied);
  shape.fill(Qt::transparent);
  {
    QPainter painter(&shape);
    svg.render(&painter);
  }
  // A copy: the image painted on keeps the painter's engine and its buffers while it lives.
  return shape.copy();
}

QString preparedShapeName(const QString& symbol, int side) {
  return QStringLiteral("masks/%1/%2").arg(side).arg(symbol);
}

QImage preparedIconShape(const QString& symbol, QSize pixels) {
  const int side = pixels.width();
  if (pixels.height() != side) return {};
  const QResource mask(QStringLiteral(":/icons/") + preparedShapeName(symbol, side));
  if (!mask.isValid() || mask.compressionAlgorithm() != QResource::NoCompression ||
      mask.size() != qint64(side) * side) {
    return {};
  }
  QImage alpha(pixels, QImage::Format_Alpha8);
  for (int y = 0; y < side; ++y) {
    std::memcpy(alpha.scanLine(y), mask.data() + qsizetype(y) * side, side);
  }
  return alpha.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

}  // namespace brindlet::ui
