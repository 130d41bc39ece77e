#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "platform/animation/LayerDisplay.h"
#include "platform/geometry/TiledBitmap.h"
#include "platform/runtime/Ref.h"

namespace platform {

/// The picture of the application's screen, kept up to date frame by frame for whoever shows or records it: they share
/// it, and it is drawn once. Nothing is drawn while nothing changes. It follows the screen's size.
/// Owner:  all who hold it; it is made when somebody asks for it and nobody does yet.
/// Thread: main. Units: pixels.
class ScreenDisplay {
 public:
  static Ref<ScreenDisplay> shared();
  ScreenDisplay();
  ~ScreenDisplay();
  ScreenDisplay(const ScreenDisplay&) = delete;
  ScreenDisplay& operator=(const ScreenDisplay&) = delete;

  /// What the screen shows as of the last frame; clear before the first one.
  const Bitmap& bitmap() const { return display_->bitmap(); }
  /// The same for others to see: what is hidden from captures is black. Shares what has not changed with the picture
  /// that was handed out before, so that asking at every frame costs a copy of what changed.
  const TiledBitmap& picture();
  /// Lays out and draws what has changed now, as a frame does, and tells the observers.
  void showFrame();

  /// Everything counts as changed at the next frame, which comes soon: for one who has seen nothing yet.
  void invalidate() { display_->invalidate(); }

  /// Told after each frame of FrameClock what has changed, CGRectZero for nothing. Returns a number for removeObserver.
  using Observer = std::function<void(const CGRect& changed)>;
  std::uint64_t addObserver(Observer observer);
  void removeObserver(std::uint64_t observer);

 private:
  void followScreen();

  struct Watcher {
    std::uint64_t number;
    std::shared_ptr<Observer> call;
  };
  std::unique_ptr<LayerDisplay> display_;
  TiledBitmap picture_;
  CGRect notInPicture_;
  std::vector<CGRect> hidden_;
  std::vector<Watcher> observers_;
  std::uint64_t lastNumber_ = 0;
  std::uint64_t frameObserver_ = 0;
};

}  // namespace platform
