#include "platform/engine/qt/QtWindow.h"

#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QPainter>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "platform/dispatch/Clock.h"
#include "platform/engine/qt/QtConversions.h"

namespace platform {

namespace {

/// Points a notch of a mouse wheel scrolls.
constexpr double pointsANotch = 40;
/// The finger that the mouse is.
constexpr std::int64_t mouse = 0;
/// A window without any room still has places to divide by.
constexpr double smallestZoom = 0.001;
/// Room for the frame and bars of the desktop.
constexpr double desktopMargin = 48;

WindowKey::Name nameOf(int key) {
  switch (key) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      return WindowKey::Name::returnKey;
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
      return WindowKey::Name::tab;
    case Qt::Key_Backspace:
      return WindowKey::Name::backspace;
    case Qt::Key_Delete:
      return WindowKey::Name::forwardDelete;
    case Qt::Key_Escape:
      return WindowKey::Name::escape;
    case Qt::Key_Left:
      return WindowKey::Name::left;
    case Qt::Key_Right:
      return WindowKey::Name::right;
    case Qt::Key_Up:
      return WindowKey::Name::up;
    case Qt::Key_Down:
      return WindowKey::Name::down;
    case Qt::Key_Home:
      return WindowKey::Name::home;
    case Qt::Key_End:
      return WindowKey::Name::end;
    default:
      return WindowKey::Name::none;
  }
}

/// The text without the control characters that keys such as Escape type.
std::string typed(const QString& text) {
  QString result;
  for (const QChar c : text) {
    if (c.category() != QChar::Other_Control) result.append(c);
  }
  return result.toStdString();
}

}  // namespace

QtWindow::QtWindow(CGSize size, double scale, const std::string& title, EngineWindowDelegate& delegate)
    : size_(size), scale_(scale), delegate_(delegate) {
  double zoom = 1;
  if (const QScreen* const screen = QGuiApplication::primaryScreen()) {
    const QSize room = screen->availableSize();
    zoom = std::min({1.0, (room.width() - desktopMargin) / size.width, (room.height() - desktopMargin) / size.height});
    zoom = std::max(zoom, 0.25);
  }
  const QSize wanted(static_cast<int>(std::lround(size.width * zoom)),
                     static_cast<int>(std::lround(size.height * zoom)));
  setMinimumSize(wanted);
  setMaximumSize(wanted);
  resize(wanted);
  fit();
  QtWindow::setTitle(title);
  show();
}

void QtWindow::fit() {
  const QSize room = QWindow::size();
  zoom_ = std::max(std::min(room.width() / size_.width, room.height() / size_.height), smallestZoom);
  const QSizeF drawn(size_.width * zoom_, size_.height * zoom_);
  place_ = QRectF(QPointF((room.width() - drawn.width()) / 2, (room.height() - drawn.height()) / 2), drawn);
  // Lengths rounded to whole pixels would else leave a seam at a side.
  if (std::abs(place_.x()) < 1 && std::abs(place_.y()) < 1) place_ = QRectF(QPointF(0, 0), room);
}

void QtWindow::setTitle(const std::string& title) { QRasterWindow::setTitle(QString::fromStdString(title)); }

void QtWindow::present(const Bitmap& bitmap, const CGRect& changed) {
  if (bitmap.isEmpty()) return;
  const bool isNew = shown_.width() != bitmap.width() || shown_.height() != bitmap.height();
  if (isNew) shown_ = QImage(bitmap.width(), bitmap.height(), QImage::Format_ARGB32_Premultiplied);
  const CGRect all(0, 0, bitmap.width(), bitmap.height());
  const CGRect part = isNew ? all : changed.integral().intersection(all);
  if (part.isEmpty()) return;
  const int left = static_cast<int>(part.minX()), top = static_cast<int>(part.minY());
  const auto bytes = static_cast<std::size_t>(part.width()) * 4;
  for (int y = top; y < static_cast<int>(part.maxY()); ++y) {
    std::memcpy(shown_.scanLine(y) + static_cast<std::ptrdiff_t>(left) * 4, bitmap.row(y) + left, bytes);
  }
  if (isNew) return update();  // whatever its size, it fills the window
  const double factor = zoom_ / scale_;
  update(QRectF(part.minX() * factor, part.minY() * factor, part.width() * factor, part.height() * factor)
             .translated(place_.topLeft())
             .toAlignedRect()
             .adjusted(-1, -1, 1, 1));
}

void QtWindow::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.setClipRegion(event->region());  // of the rest the window keeps what it shows
  const QRect window(QPoint(0, 0), QWindow::size());
  if (shown_.isNull()) return painter.fillRect(window, Qt::white);
  if (place_ != QRectF(window)) painter.fillRect(window, Qt::black);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.drawImage(place_, shown_);
}

void QtWindow::resizeEvent(QResizeEvent* event) {
  QRasterWindow::resizeEvent(event);
  fit();
  update();
}

void QtWindow::exposeEvent(QExposeEvent* event) {
  QRasterWindow::exposeEvent(event);
  if (!isExposed()) loseMouse();
}

bool QtWindow::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::Close:
      event->ignore();
      delegate_.windowClosed();
      return true;
    case QEvent::InputMethodQuery:
      static_cast<QInputMethodQueryEvent*>(event)->setValue(Qt::ImEnabled, true);
      event->accept();
      return true;
    case QEvent::InputMethod: {
      WindowKey key;
      key.text = typed(static_cast<QInputMethodEvent*>(event)->commitString());
      if (!key.text.empty()) delegate_.windowKeyPressed(key);
      return true;
    }
    default:
      return QRasterWindow::event(event);
  }
}

void QtWindow::sendTouch(std::int64_t identifier, WindowTouchPhase phase, QPointF inWindow) {
  const CGPoint at = location(inWindow);
  if (identifier == mouse) lastMouse_ = at;
  delegate_.windowTouched({identifier, phase, at, Clock::mediaTime()});
}

void QtWindow::loseMouse() {
  if (!std::exchange(isMouseDown_, false)) return;
  delegate_.windowTouched({mouse, WindowTouchPhase::cancelled, lastMouse_, Clock::mediaTime()});
}

void QtWindow::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || isMouseDown_) return;
  isMouseDown_ = true;
  sendTouch(mouse, WindowTouchPhase::began, event->position());
}

void QtWindow::mouseMoveEvent(QMouseEvent* event) {
  if (!isMouseDown_) return;
  if (!event->buttons().testFlag(Qt::LeftButton)) return loseMouse();
  sendTouch(mouse, WindowTouchPhase::moved, event->position());
}

void QtWindow::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !isMouseDown_) return;
  isMouseDown_ = false;
  sendTouch(mouse, WindowTouchPhase::ended, event->position());
}

void QtWindow::touchEvent(QTouchEvent* event) {
  event->accept();  // else the same touch comes again as a mouse
  const bool isCancelled = event->type() == QEvent::TouchCancel;
  for (const QEventPoint& point : event->points()) {
    if (point.state() == QEventPoint::Stationary && !isCancelled) continue;
    const WindowTouchPhase phase = isCancelled                                    ? WindowTouchPhase::cancelled
                                   : point.state() == QEventPoint::State::Pressed ? WindowTouchPhase::began
                                   : point.state() == QEventPoint::State::Updated ? WindowTouchPhase::moved
                                                                                  : WindowTouchPhase::ended;
    sendTouch(1 + point.id(), phase, point.position());
  }
}

void QtWindow::wheelEvent(QWheelEvent* event) {
  const QPointF points = event->pixelDelta().isNull() ? QPointF(event->angleDelta()) / 120 * pointsANotch
                                                      : QPointF(event->pixelDelta()) / zoom_;
  delegate_.windowScrolled({location(event->position()), {points.x(), points.y()}});
}

void QtWindow::keyPressEvent(QKeyEvent* event) {
  WindowKey key;
  key.name = nameOf(event->key());
  key.shift = event->modifiers().testFlag(Qt::ShiftModifier) || event->key() == Qt::Key_Backtab;
  key.command = event->modifiers() & (Qt::ControlModifier | Qt::MetaModifier);
  key.option = event->modifiers().testFlag(Qt::AltModifier);
  // With the command key a letter is named, not typed: Qt's text is a control character then.
  if (key.command && event->key() >= Qt::Key_A && event->key() <= Qt::Key_Z) {
    key.text = static_cast<char>('a' + event->key() - Qt::Key_A);
  } else {
    key.text = typed(event->text());
  }
  if (key.name != WindowKey::Name::none || !key.text.empty()) delegate_.windowKeyPressed(key);
}

}  // namespace platform
