#pragma once

#include <memory>

#include "platform/engine/Engine.h"
#include "platform/engine/qt/QtBitmaps.h"
#include "platform/engine/qt/QtFonts.h"
#include "platform/engine/qt/QtShadows.h"

namespace platform {

/// The engine on Qt Gui.
class QtEngine final : public Engine {
 public:
  QtEngine();
  ~QtEngine() override;

  std::unique_ptr<Canvas> makeCanvas(Bitmap& bitmap) override;
  std::shared_ptr<ShapedText> shape(std::string_view text, const FontAtSize& font, bool underlined) override;
  const FontFace& systemFace(int weight, bool italic) override { return fonts_.system(weight, italic); }
  const FontFace& monospacedFace(int weight) override { return fonts_.monospaced(weight); }
  const FontFace* faceNamed(const std::string& name) override { return fonts_.named(name); }
  void registerFont(std::string data, std::string postScriptName) override;
  CGImageRef decodeImage(std::string_view data, const ImageLimits& limits) override;
  std::unique_ptr<ImageSequence> openImageSequence(std::string_view data, const ImageLimits& limits) override;
  std::string encodePNG(const Bitmap& bitmap) override;
  void goWithoutDisplay() override;
  bool isDisplayAvailable() override;
  bool isDisplayMissing() override;
  std::unique_ptr<EngineWindow> openWindow(CGSize size, double scale, const std::string& title,
                                           EngineWindowDelegate& delegate) override;
  std::string clipboardText() override;
  void setClipboardText(const std::string& text) override;
  void run() override;
  void stop() override;

 private:
  QtFonts fonts_;
  QtBitmaps bitmaps_;
  QtShadows shadows_;
};

}  // namespace platform
