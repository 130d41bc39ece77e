#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "platform/engine/EngineWindow.h"
#include "platform/geometry/Bitmap.h"
#include "platform/geometry/CGGeometry.h"

namespace platform {

class Canvas;
class FontAtSize;
class ShapedText;
struct FontFace;

/// What decoding a picture may take. Sizes are looked at before pixels are.
struct ImageLimits {
  /// Of one frame.
  std::int64_t pixels = Bitmap::maximumPixels;
  /// The instant of `Clock::nanoseconds` after which no more is read and nothing given.
  std::int64_t until = INT64_MAX;
};

/// The frames of a picture file in order. One thread at a time.
class ImageSequence {
 public:
  virtual ~ImageSequence() = default;
  /// The next frame, complete as shown; none at the end and for damaged data.
  virtual CGImageRef next() = 0;
  /// Back to the first frame.
  virtual void rewind() = 0;
};

/// The one door to the libraries that draw, show and listen. Everything above the engine goes through it.
/// Thread: main, except where a member says any. Nothing throws; what fails is told by an empty result.
class Engine {
 public:
  static Engine& shared();
  virtual ~Engine() = default;

  // ---- Drawing and text
  /// Paints onto the bitmap, which must stay where it is as long as the canvas lives. A pixel is a point.
  virtual std::unique_ptr<Canvas> makeCanvas(Bitmap& bitmap) = 0;
  virtual std::shared_ptr<ShapedText> shape(std::string_view text, const FontAtSize& font, bool underlined) = 0;

  // ---- Fonts. A face lives as long as the process.
  /// Weight 100 to 900.
  virtual const FontFace& systemFace(int weight, bool italic) = 0;
  virtual const FontFace& monospacedFace(int weight) = 0;
  /// By PostScript name or family; none when there is none.
  virtual const FontFace* faceNamed(const std::string& name) = 0;
  /// Makes the fonts of a file known; `postScriptName` is the name it will be asked for. Any thread.
  virtual void registerFont(std::string data, std::string postScriptName) = 0;

  // ---- Pictures. Any thread.
  /// PNG, JPEG or GIF; none for other or damaged data and beyond the limits.
  virtual CGImageRef decodeImage(std::string_view data, const ImageLimits& limits) = 0;
  virtual std::unique_ptr<ImageSequence> openImageSequence(std::string_view data, const ImageLimits& limits) = 0;
  virtual std::string encodePNG(const Bitmap& bitmap) = 0;

  // ---- The desktop
  /// Keeps to itself whatever the machine offers: no window is seen, no clipboard shared. Before the first use of
  /// windows, fonts or text.
  virtual void goWithoutDisplay() = 0;
  /// False when there is no screen; windows then exist without being seen.
  virtual bool isDisplayAvailable() = 0;
  /// True when there is no screen and nobody asked to go without: a window would wait for a person for ever.
  virtual bool isDisplayMissing() = 0;
  /// Size in points; the window shows that many desktop points and takes bitmaps of `scale` pixels a point. The
  /// delegate is borrowed.
  virtual std::unique_ptr<EngineWindow> openWindow(CGSize size, double scale, const std::string& title,
                                                   EngineWindowDelegate& delegate) = 0;
  virtual std::string clipboardText() = 0;
  virtual void setClipboardText(const std::string& text) = 0;

  // ---- The run loop
  /// Turns RunLoop::main() together with the window system until `stop`.
  virtual void run() = 0;
  /// Any thread.
  virtual void stop() = 0;
};

}  // namespace platform
