#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "platform/geometry/CGGeometry.h"
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

 private:
  enum class Stage { presenting, presented, dismissing, over };
  void begin(const Ref<UIView>& window, bool animated, Completion completion);
  void beginDismissal(bool animated, Completion completion);
  using Screens = std::vector<Ref<UIViewController>>;
  void finishDismissal(const Screens& chain, const Screens& disappearing, bool uncovers);
  void build(const Ref<UIView>& window);
  void showAway(bool away);
  void setAside(const Ref<UIViewController>& presenting);
  void bringBack(const Ref<UIViewController>& presenting);
  void animate(std::function<void()> changes);
  /// Runs the end of the movement now, when one is under way.
  void finish();
  void layOut();
  CGRect holderFrame() const;
  bool coversAll() const;
  bool isSheet() const;

  Weak<UIViewController> presenting_;
  Weak<UIViewController> presented_;
  Stage stage_ = Stage::presenting;
  Ref<UIView> container_;  // over the whole window
  Ref<UIView> dimming_;
  Ref<UIView> holder_;  // around the presented view: moved, faded, rounded in its place
  Weak<UIView> aside_;  // where the covered view belongs
  std::function<void()> end_;
  int movement_ = 0;
};

}  // namespace platform
