#include "examples/teashop/views/Theme.h"

namespace teashop {

using namespace platform;

UIFont theme::title() { return UIFont::systemFont(26, UIFontWeightBold); }
UIFont theme::headline() { return UIFont::systemFont(17, UIFontWeightSemibold); }
UIFont theme::body() { return UIFont::systemFont(15, UIFontWeightRegular); }
UIFont theme::caption() { return UIFont::systemFont(13, UIFontWeightRegular); }

Ref<UILabel> makeLabel(const std::string& text, const UIFont& font, const UIColor& color) {
  auto label = make<UILabel>();
  label->setTranslatesAutoresizingMaskIntoConstraints(false);
  label->setText(text);
  label->setFont(font);
  label->setTextColor(color);
  label->setNumberOfLines(0);
  return label;
}

UIColor colorOf(unsigned rgb) {
  return UIColor(((rgb >> 16) & 255) / 255.0, ((rgb >> 8) & 255) / 255.0, (rgb & 255) / 255.0, 1);
}

}  // namespace teashop
