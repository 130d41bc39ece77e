#pragma once

#include <functional>
#include <memory>

#include "platform/graphics/CGGeometry.h"
#include "platform/runtime/Ref.h"
#include "platform/uikit/Forward.h"

namespace platform {

class UIView;

/// One controller shown over another, from presenting to dismissing. Owned by the presented controller, which the
/// presenting one owns; it knows both weakly. A new order ends the animation that runs. Main thread.
class ModalPresentation : public std::enable_shared_from_this<ModalPresentation> {
 public:
  using Completion = std::function<void()>;
  static constexpr double coverDuration = 0.35;
  static constexpr double dissolveDuration = 0.35;
  /// Points from the screen's top to the top of a page sheet, and the radius of its upper corners.
  static constexpr double sheetTop = 54;
  static constexpr double sheetCornerRadius = 10;

  /// Refused (with a line on standard error) when the presenting controller is on no screen or presents already, or
  /// when the other one is shown already.
  static void present(const Ref<UIViewController>& presenting, const Ref<UIViewController>& presented, bool animated,
                      Completion completion);
  /// Takes away what `presenting` presents, and all that is presented over that.
  static void dismiss(const Ref<UIViewController>& presenting, bool animated, Completion completion);

  ModalPresentation(const Ref<UIViewController>& presenting, const Ref<UIViewController>& presented);
  ~ModalPresentation();
  /// The window changed its size.
  void layOut();

 private:
  enum class Stage { presenting, presented, dismissing, over };
  void begin(bool animated, Completion completion);
  void beginDismissal(bool animated, Completion completion);
  void animate(double duration, std::function<void()> changes, std::function<void()> end);
  /// Runs the end of the animation now, when one runs.
  void finish();
  void build(const Ref<UIWindow>& window);
  CGRect presentedFrame() const;
  bool coversAll() const;

  Weak<UIViewController> presenting_;
  Weak<UIViewController> presented_;
  Stage stage_ = Stage::presenting;
  Ref<UIView> container_;
  Ref<UIView> dimming_;
  std::function<void()> end_;
};

}  // namespace platform
