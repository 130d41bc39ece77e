#include "lumicor/capture/LumicorActionElement.h"

#include <algorithm>
#include <iterator>

#include "lumicor/core/LumicorUtils.h"
#include "lumicor/screen/LumicorElementKind.h"
#include "platform/uikit/application/UIApplication.h"
#include "platform/uikit/lists/UICollectionViewCell.h"
#include "platform/uikit/lists/UITableViewCell.h"
#include "platform/uikit/views/UILabel.h"

namespace lumicor {

namespace {

constexpr const char* filler = "Default";

using Type = LumicorType;
using Input = LumicorInputType;

/// What a person reads on a cell first.
std::string firstText(const Ref<UIView>& view) {
  if (const auto label = as<UILabel>(view); label && !label->text().value_or("").empty()) return *label->text();
  for (const Ref<UIView>& subview : view->subviews()) {
    if (std::string text = firstText(subview); !text.empty()) return text;
  }
  return "";
}

/// Some actions are performed again by what they are, and not by what they were done to.
LumicorElementKind kindOf(const LumicorAction& action) {
  LumicorElementKind kind;
  if (action.view) kind = LumicorUtils::getLumicorElementType(action.view);
  if (action.name == "uiBarButtonItem") {
    kind = {Type::TYPE_BAR_BUTTON_ITEM, Input::TYPE_BAR_BUTTON_ITEM, ""};
  } else if (action.name == "systemBack") {
    kind = {Type::TYPE_SYSTEM_BACK, Input::TYPE_DEFAULT, ""};
  } else if (action.name == "searchCancelled") {
    kind.type = Type::TYPE_SEARCH_CANCEL;
  } else if (action.name.starts_with("pickerView")) {
    kind = {Type::TYPE_PICKER_VIEW, Input::TYPE_DEFAULT, ""};
  } else if (as<UITableViewCell>(action.view) || as<UICollectionViewCell>(action.view)) {
    kind.value = firstText(action.view);
  }
  if (action.value) kind.value = *action.value;
  return kind;
}

CGRect frameInWindow(const UIView& view) {
  const Ref<UIWindow> window = UIApplication::shared().keyWindow();
  const CGRect bounds = view.bounds();
  return {window ? view.convertRect(bounds, window.get()).origin : CGPoint{}, bounds.size};
}

bool isOperable(const LumicroElement& element) {
  const Type type = element.type();
  if (type == Type::TYPE_TEXT) return element.inputType() == Input::TYPE_EDIT_TEXT;
  switch (element.inputType()) {
    case Input::TYPE_EDIT_TEXT:
    case Input::TYPE_BUTTON:
    case Input::TYPE_CHECKBOX:
    case Input::TYPE_RADIO:
    case Input::TYPE_SELECT:
    case Input::TYPE_TOGGLE:
    case Input::TYPE_BAR_BUTTON_ITEM:
      return true;
    case Input::TYPE_PROGRESS_BAR:
      return false;
    case Input::TYPE_DEFAULT:
      break;
  }
  return type == Type::TYPE_INPUT || type == Type::TYPE_SEARCH || type == Type::TYPE_TABBAR ||
         type == Type::TYPE_PICKER_VIEW;
}

}  // namespace

LumicroElement LumicorActionElement::of(const LumicorAction& action) {
  LumicorElementKind kind = kindOf(action);
  const CGRect frame = action.view ? frameInWindow(*action.view) : CGRect();
  return {action.identifier,
          filler,
          LumicorUtils::truncated(frame.origin.x),
          LumicorUtils::truncated(frame.origin.y),
          LumicorUtils::truncated(frame.size.width),
          LumicorUtils::truncated(frame.size.height),
          action.name,
          kind.type == Type::TYPE_SYSTEM_BACK,
          action.id,
          filler,
          std::move(kind.value),
          filler,
          kind.type,
          kind.inputType};
}

std::vector<LumicroElement> LumicorActionElement::inputsAmong(const std::vector<LumicroElement>& elements) {
  std::vector<LumicroElement> inputs;
  std::ranges::copy_if(elements, std::back_inserter(inputs), &isOperable);
  return inputs;
}

}  // namespace lumicor
