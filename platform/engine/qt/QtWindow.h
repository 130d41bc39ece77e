#pragma once

#include <QImage>
#include <QRasterWindow>

#include "platform/engine/EngineWindow.h"

namespace platform {

/// A desktop window that shows one bitmap. When the screen is too small for the device, the window is as large as fits
/// and everything in it smaller. It asks for a fixed size; a window manager that gives it another finds the bitmap in
/// the middle, as large as fits. A press whose release is lost, as when the window is minimised, ends as cancelled.
class QtWindow final : public QRasterWindow, public EngineWindow {
 public:
  QtWindow(CGSize size, double scale, const std::string& title, EngineWindowDelegate& delegate);

  void setTitle(const std::string& title) override;
  void present(const Bitmap& bitmap, const CGRect& changed) override;
  CGSize sizeInPoints() const override { return size_; }
  double scale() const override { return scale_; }

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void exposeEvent(QExposeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void touchEvent(QTouchEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  CGPoint location(QPointF inWindow) const {
    return {(inWindow.x() - place_.x()) / zoom_, (inWindow.y() - place_.y()) / zoom_};
  }
  /// Puts the bitmap where the window's size has room for it.
  void fit();
  /// The release of the mouse will not come any more.
  void loseMouse();
  void sendTouch(std::int64_t identifier, WindowTouchPhase phase, QPointF inWindow);

  CGSize size_;
  double scale_;
  double zoom_ = 1;  ///< the window's points for one of the device
  QRectF place_;     ///< of the bitmap in the window
  EngineWindowDelegate& delegate_;
  QImage shown_;
  bool isMouseDown_ = false;
  CGPoint lastMouse_;
};

}  // namespace platform
