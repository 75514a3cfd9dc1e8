#pragma once

#include <QtQml/qqmlregistration.h>

#include <QColor>
#include <QImage>
#include <QQuickItem>
#include <QString>
#include <functional>

#include "Theme.h"

namespace brindlet::ui {

/// One of the bundled icons, by its symbol name, drawn in a single colour: the secondary text
/// colour unless given one, 16 pixels square unless given a size. Screens know it as `AppIcon`. It
/// stands in for the stock icon item so that the first screen opens without loading the stock
/// controls. It shows the shared drawn image as a texture: no painter, and no image of its own,
/// per icon on screen.
class SymbolIcon : public QQuickItem {
  Q_OBJECT
  QML_NAMED_ELEMENT(AppIcon)
  Q_PROPERTY(QString symbol READ symbol WRITE setSymbol NOTIFY symbolChanged)
  Q_PROPERTY(QColor color READ color WRITE setColor NOTIFY colorChanged)
  /// The side of the square icon in logical pixels; it is both the icon's size and its implicit
  /// size, so that no binding per icon keeps them in step.
  Q_PROPERTY(int size READ iconSize WRITE setIconSize NOTIFY iconSizeChanged)

 public:
  explicit SymbolIcon(QQuickItem* parent = nullptr);

  [[nodiscard]] QString symbol() const { return symbol_; }
  void setSymbol(const QString& symbol);
  [[nodiscard]] QColor color() const { return color_; }
  void setColor(const QColor& color);
  [[nodiscard]] int iconSize() const { return iconSize_; }
  void setIconSize(int size);

  QSGNode* updatePaintNode(QSGNode* old, UpdatePaintNodeData* data) override;

  /// The icon for `symbol` in `color`, `pixels` large; a null image for a symbol not bundled.
  /// Each symbol and size is drawn once, and each colour of it tinted once, then shared by every
  /// icon that shows it. Safe on any thread.
  [[nodiscard]] static QImage drawn(const QString& symbol, const QColor& color, QSize pixels);

  /// Draws every bundled icon at the sizes the screens use, so that the window's first frame
  /// finds them drawn: one icon at a time, each once `keepDrawing` has said to go on. Safe on any
  /// thread once the application object exists.
  static void drawBundled(const std::function<bool()>& keepDrawing = [] { return true; });
  /// Whether `symbol` has been drawn at `pixels` in some colour.
  [[nodiscard]] static bool isDrawn(const QString& symbol, QSize pixels);

 signals:
  void symbolChanged();
  void colorChanged();
  void iconSizeChanged();

 protected:
  void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;

 private:
  QString symbol_;
  QColor color_{Theme::kSecondary};
  int iconSize_ = 0;
};

}  // namespace brindlet::ui
