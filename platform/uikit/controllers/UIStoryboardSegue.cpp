#include "platform/uikit/controllers/UIStoryboardSegue.h"

#include <utility>

#include "platform/uikit/controllers/UINavigationController.h"

namespace platform {

UIStoryboardSegue::UIStoryboardSegue(std::string identifier, Kind kind, Ref<UIViewController> source,
                                     Ref<UIViewController> destination)
    : identifier_(std::move(identifier)),
      kind_(kind),
      source_(std::move(source)),
      destination_(std::move(destination)) {}

UIStoryboardSegue::~UIStoryboardSegue() = default;

void UIStoryboardSegue::perform() {
  Ref<UINavigationController> navigation = as<UINavigationController>(source_);
  if (!navigation) navigation = source_->navigationController();
  if (kind_ == Kind::show && navigation) {
    navigation->pushViewController(destination_, true);
  } else {
    source_->presentViewController(destination_, true);
  }
}

}  // namespace platform
