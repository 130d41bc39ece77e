#include "platform/engine/qt/QtEngine.h"

#include <QClipboard>
#include <QGuiApplication>

#include "platform/dispatch/DispatchQueue.h"
#include "platform/engine/qt/QtApplication.h"
#include "platform/engine/qt/QtCanvas.h"
#include "platform/engine/qt/QtImages.h"
#include "platform/engine/qt/QtRunLoop.h"
#include "platform/engine/qt/QtShapedText.h"
#include "platform/engine/qt/QtWindow.h"

namespace platform {

Engine& Engine::shared() {
  // Kept to the end of the process: faces and fonts are used until then.
  static QtEngine* const engine = new QtEngine;
  return *engine;
}

QtEngine::QtEngine() = default;
QtEngine::~QtEngine() = default;

std::unique_ptr<Canvas> QtEngine::makeCanvas(Bitmap& bitmap) {
  assertMainThread("Engine::makeCanvas");
  QtApplication::ensure();
  return std::make_unique<QtCanvas>(bitmap, bitmaps_, shadows_);
}

std::shared_ptr<ShapedText> QtEngine::shape(std::string_view text, const FontAtSize& font, bool underlined) {
  assertMainThread("Engine::shape");
  return std::make_shared<QtShapedText>(text, font, underlined);
}

void QtEngine::registerFont(std::string data, std::string postScriptName) {
  fonts_.add(std::move(data), std::move(postScriptName));
}

CGImageRef QtEngine::decodeImage(std::string_view data, const ImageLimits& limits) {
  return QtImages::decode(data, limits);
}

std::unique_ptr<ImageSequence> QtEngine::openImageSequence(std::string_view data, const ImageLimits& limits) {
  return QtImages::open(data, limits);
}

std::string QtEngine::encodePNG(const Bitmap& bitmap) { return QtImages::encodePNG(bitmap); }

void QtEngine::goWithoutDisplay() { QtApplication::goWithoutDisplay(); }
bool QtEngine::isDisplayAvailable() { return QtApplication::isDisplayAvailable(); }
bool QtEngine::isDisplayMissing() { return QtApplication::isDisplayMissing(); }

std::unique_ptr<EngineWindow> QtEngine::openWindow(CGSize size, double scale, const std::string& title,
                                                   EngineWindowDelegate& delegate) {
  QtApplication::ensure();
  return std::make_unique<QtWindow>(size, scale, title, delegate);
}

std::string QtEngine::clipboardText() {
  QtApplication::ensure();
  return QGuiApplication::clipboard()->text().toStdString();
}

void QtEngine::setClipboardText(const std::string& text) {
  QtApplication::ensure();
  QGuiApplication::clipboard()->setText(QString::fromStdString(text));
}

void QtEngine::run() {
  QtApplication::ensure();
  QtRunLoop().run();
}

void QtEngine::stop() {
  if (QCoreApplication::instance()) QtRunLoop::stop();
}

}  // namespace platform
