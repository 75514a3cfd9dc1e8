#include "SymbolIcon.h"

#include <QDir>
#include <QHash>
#include <QMutex>
#include <QPainter>
#include <QQuickWindow>
#include <QSGSimpleTextureNode>
#include <QSGTexture>
#include <array>
#include <memory>
#include <optional>
#include <utility>

#include "IconShape.h"

namespace brindlet::ui {
namespace {

// The sizes in pixels that the screens' icons come in.
constexpr std::array kUsualSizes{12, 14, 16};
constexpr int kDefaultSize = 16;

// The icons are single-colour shapes: drawn once in black, their coverage gives every colour.
class IconCache {
 public:
  QImage tinted(const QString& symbol, const QColor& color, QSize pixels) {
    const QString key = QStringLiteral("%1 %2 %3x%4")
                            .arg(symbol, color.name(QColor::HexArgb))
                            .arg(pixels.width())
                            .arg(pixels.height());
    if (const std::optional<QImage> found = lookUp(tinted_, key)) return *found;
    return insert(tinted_, key, tint(shape(symbol, pixels), color));
  }

  bool hasShape(const QString& symbol, QSize pixels) {
    return lookUp(shapes_, shapeKey(symbol, pixels)).has_value();
  }

  void prepare(const QString& symbol, QSize pixels) { (void)shape(symbol, pixels); }

 private:
  static QImage tint(QImage shape, const QColor& color) {
    if (shape.isNull()) return shape;
    return paintedOn(std::move(shape), [&color](QPainter& painter, const QRect& area) {
      painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
      painter.fillRect(area, color);
    });
  }

  // An image keeps the paint engine of the first painter on it, with the engine's buffers, for as
  // long as it lives; the cache keeps a copy painted on by none.
  template <typename Paint>
  static QImage paintedOn(QImage image, const Paint& paint) {
    {
      QPainter painter(&image);
      paint(painter, image.rect());
    }
    return image.copy();
  }

  static QString shapeKey(const QString& symbol, QSize pixels) {
    return QStringLiteral("%1 %2x%3").arg(symbol).arg(pixels.width()).arg(pixels.height());
  }

  QImage shape(const QString& symbol, QSize pixels) {
    const QString key = shapeKey(symbol, pixels);
    if (const std::optional<QImage> found = lookUp(shapes_, key)) return *found;
    return insert(shapes_, key, draw(symbol, pixels));
  }

  static QImage draw(const QString& symbol, QSize pixels) {
    // Reading a shape drawn ahead is a copy, where drawing it means parsing the SVG.
    if (const QImage shape = preparedIconShape(symbol, pixels); !shape.isNull()) return shape;
    return drawIconShape(QStringLiteral(":/icons/%1.svg").arg(symbol), pixels);
  }

  // The lock covers only the tables, never a drawing: a paint never waits for the icons being
  // drawn ahead. Two threads may both draw an icon neither found; the first one kept stays.
  std::optional<QImage> lookUp(const QHash<QString, QImage>& table, const QString& key) {
    const QMutexLocker lock(&mutex_);
    const auto found = table.constFind(key);
    if (found == table.constEnd()) return std::nullopt;
    return *found;
  }

  QImage insert(QHash<QString, QImage>& table, const QString& key, const QImage& image) {
    const QMutexLocker lock(&mutex_);
    auto kept = table.find(key);
    if (kept == table.end()) kept = table.insert(key, image);
    return *kept;
  }

  // Painting may happen on a render thread of each window, and drawing ahead on another.
  QMutex mutex_;
  QHash<QString, QImage> shapes_;
  QHash<QString, QImage> tinted_;
};

// The node of one icon on screen, owning the texture it shows.
class IconNode : public QSGSimpleTextureNode {
 public:
  void show(QQuickWindow& window, const QImage& image, const QString& key) {
    if (texture_ != nullptr && key == key_ && image.size() == texture_->textureSize()) return;
    std::unique_ptr<QSGTexture> texture(window.createTextureFromImage(image));
    setTexture(texture.get());
    texture_ = std::move(texture);
    key_ = key;
  }

 private:
  std::unique_ptr<QSGTexture> texture_;
  QString key_;
};

IconCache& iconCache() {
  static IconCache cache;
  return cache;
}

}  // namespace

SymbolIcon::SymbolIcon(QQuickItem* parent) : QQuickItem(parent) {
  setFlag(ItemHasContents);
  setIconSize(kDefaultSize);
}

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

void SymbolIcon::setIconSize(int size) {
  if (size == iconSize_) return;
  iconSize_ = size;
  setImplicitSize(size, size);
  setSize(QSizeF(size, size));
  emit iconSizeChanged();
}

void SymbolIcon::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) {
  QQuickItem::geometryChange(newGeometry, oldGeometry);
  if (newGeometry.size() != oldGeometry.size()) update();
}

QSGNode* SymbolIcon::updatePaintNode(QSGNode* old, UpdatePaintNodeData* /*data*/) {
  auto* node = static_cast<IconNode*>(old);
  const QSize pixels = (size() * window()->effectiveDevicePixelRatio()).toSize();
  const QImage image =
      symbol_.isEmpty() || pixels.isEmpty() ? QImage() : drawn(symbol_, color_, pixels);
  if (image.isNull()) {
    delete node;
    return nullptr;
  }
  if (node == nullptr) node = new IconNode;
  node->show(*window(), image, symbol_ + color_.name(QColor::HexArgb));
  node->setRect(boundingRect());
  return node;
}

QImage SymbolIcon::drawn(const QString& symbol, const QColor& color, QSize pixels) {
  return iconCache().tinted(symbol, color, pixels);
}

bool SymbolIcon::isDrawn(const QString& symbol, QSize pixels) {
  return iconCache().hasShape(symbol, pixels);
}

void SymbolIcon::drawBundled(const std::function<bool()>& keepDrawing) {
  // Every bundled file is an icon; listing them without a name filter spares compiling one.
  const QStringList files = QDir(QStringLiteral(":/icons")).entryList(QDir::Files);
  for (const QString& file : files) {
    if (!keepDrawing()) return;
    for (const int size : kUsualSizes) iconCache().prepare(file.chopped(4), QSize(size, size));
  }
}

}  // namespace brindlet::ui
