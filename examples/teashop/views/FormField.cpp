#include "examples/teashop/views/FormField.h"

#include "examples/teashop/views/Arrange.h"
#include "examples/teashop/views/Theme.h"

namespace teashop {

using namespace platform;

Ref<UITextField> makeFormField(const std::string& placeholder, const std::string& identifier) {
  auto field = make<UITextField>();
  field->setTranslatesAutoresizingMaskIntoConstraints(false);
  field->setAccessibilityIdentifier(identifier);
  field->setPlaceholder(placeholder);
  field->setFont(UIFont::systemFont(17, UIFontWeightRegular));
  field->setTextColor(theme::ink);
  field->setBackgroundColor(theme::card);
  field->setBorderStyle(UITextBorderStyle::roundedRect);
  setHeight(field, 48);
  return field;
}

Ref<UIView> withCaption(const std::string& caption, const Ref<UIView>& control) {
  return makeColumn({makeLabel(caption, UIFont::systemFont(13, UIFontWeightMedium), theme::inkSoft), control}, 6);
}

}  // namespace teashop
