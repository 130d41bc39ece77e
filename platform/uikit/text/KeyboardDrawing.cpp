#include <algorithm>
#include <cctype>
#include <cmath>

#include "platform/engine/TextLayout.h"
#include "platform/graphics/CGContext.h"
#include "platform/graphics/UIFont.h"
#include "platform/uikit/text/UIKeyboardView.h"

// How keys look.

namespace platform {

namespace {

using Kind = KeyboardKey::Kind;

constexpr double keyRadius = 5;
constexpr UIColor keyColor = UIColor::white();
constexpr UIColor functionKeyColor(0.671, 0.698, 0.741, 1);
constexpr UIColor keyShadow(0.537, 0.541, 0.553, 1);
constexpr UIColor actionColor(0, 0.478, 1, 1);
constexpr UIColor ink = UIColor::black();

bool isAction(UIReturnKeyType type) { return type != UIReturnKeyType::standard && type != UIReturnKeyType::next; }

void drawCentred(CGContext& context, const std::string& text, const UIFont& font, CGPoint center,
                 const UIColor& color) {
  TextStyle style;
  style.font = font;
  style.lineBreakMode = NSLineBreakMode::byClipping;
  const auto layout = TextLayout::make(text, style);
  // Letters are centred by their own height, not by the line's, which leaves room for accents.
  const double middle =
      layout->firstBaseline() -
      (std::islower(static_cast<unsigned char>(text[0])) != 0 ? font.xHeight() / 2 : font.capHeight() / 2);
  context.drawText(layout, {center.x - layout->size().width / 2, center.y - middle}, color);
}

CGStrokeStyle roundLine() {
  CGStrokeStyle line;
  line.width = 1.5;
  line.cap = CGLineCap::round;
  line.join = CGLineJoin::round;
  return line;
}

/// The arrow of the shift key, 18 points wide around the centre; filled when it is on, underlined when it is locked.
void drawShift(CGContext& context, CGPoint center, UIKeyboardView::Shift shift) {
  const bool locked = shift == UIKeyboardView::Shift::locked;
  const double y = center.y - (locked ? 2 : 0);
  CGPath arrow;
  arrow.move({center.x, y - 9});
  arrow.line({center.x + 9, y + 0.5});
  arrow.line({center.x + 4.25, y + 0.5});
  arrow.line({center.x + 4.25, y + 7.5});
  arrow.line({center.x - 4.25, y + 7.5});
  arrow.line({center.x - 4.25, y + 0.5});
  arrow.line({center.x - 9, y + 0.5});
  arrow.close();
  context.setFillColor(ink);
  context.setStrokeColor(ink);
  context.strokePath(arrow, roundLine());
  if (shift != UIKeyboardView::Shift::off) context.fillPath(arrow);
  if (locked) {
    context.fillPath(CGPath::roundedRect({center.x - 5, y + 10.25, 10, 2.25}, 1));
  }
}

/// A box with an arrow's point to the left and a cross in it; filled while it is held.
void drawBackspace(CGContext& context, CGPoint center, bool held) {
  CGPath box;
  const double left = center.x - 11.5;
  const double right = center.x + 10.5;
  const double top = center.y - 8;
  const double bottom = center.y + 8;
  box.move({left, center.y});
  box.line({left + 6.5, top + 0.8});
  box.curve({left + 7, top + 0.2}, {left + 7.6, top}, {left + 8.4, top});
  box.line({right - 2.5, top});
  box.curve({right - 1, top}, {right, top + 1}, {right, top + 2.5});
  box.line({right, bottom - 2.5});
  box.curve({right, bottom - 1}, {right - 1, bottom}, {right - 2.5, bottom});
  box.line({left + 8.4, bottom});
  box.curve({left + 7.6, bottom}, {left + 7, bottom - 0.2}, {left + 6.5, bottom - 0.8});
  box.close();
  CGPath cross;
  const CGPoint middle{center.x + 2, center.y};
  cross.move({middle.x - 3.4, middle.y - 3.4});
  cross.line({middle.x + 3.4, middle.y + 3.4});
  cross.move({middle.x + 3.4, middle.y - 3.4});
  cross.line({middle.x - 3.4, middle.y + 3.4});
  context.setFillColor(ink);
  context.setStrokeColor(ink);
  const CGStrokeStyle line = roundLine();
  context.strokePath(box, line);
  if (held) {
    context.fillPath(box);
    context.setStrokeColor(keyColor);
  }
  context.strokePath(cross, line);
}

struct KeyLook {
  UIColor background = keyColor;
  UIColor text = ink;
};

KeyLook lookOf(const KeyboardKey& key, const UITextInputTraits& traits, UIKeyboardView::Shift shift, bool held) {
  const bool pad = KeyboardLayout::isPad(traits.keyboardType);
  switch (key.kind) {
    case Kind::character:
      // On a pad nothing rises above the finger, so the key itself answers.
      return {held && pad ? functionKeyColor : keyColor, ink};
    case Kind::space:
      return {held ? functionKeyColor : keyColor, ink};
    case Kind::shift:
      return {shift != UIKeyboardView::Shift::off ? keyColor : functionKeyColor, ink};
    case Kind::returnKey:
      if (isAction(traits.returnKeyType)) return held ? KeyLook{keyColor, ink} : KeyLook{actionColor, keyColor};
      break;
    case Kind::backspace:
    case Kind::plane:
      break;
  }
  return {held ? keyColor : functionKeyColor, ink};
}

void drawLabel(CGContext& context, const KeyboardKey& key, const UIColor& color, bool pad) {
  const CGPoint center = key.frame.center();
  if (pad) {
    const bool hasDetail = !key.detail.empty();
    drawCentred(context, key.label, UIFont::systemFont(25), {center.x, center.y - (hasDetail ? 5 : 0)}, color);
    if (hasDetail) {
      drawCentred(context, key.detail, UIFont::systemFont(10, UIFontWeightSemibold), {center.x, center.y + 14.5},
                  color);
    }
    return;
  }
  const bool isWord = key.kind != Kind::character || key.label == ".com";
  if (isWord) {
    drawCentred(context, key.label, UIFont::systemFont(16), {center.x, center.y}, color);
    return;
  }
  const bool isSmall = key.label.size() == 1 && key.label[0] >= 'a' && key.label[0] <= 'z';
  const UIFont font = isSmall ? UIFont::systemFont(25, UIFontWeightLight) : UIFont::systemFont(22.5);
  drawCentred(context, key.label, font, {center.x, center.y - (isSmall ? 0.5 : 0)}, color);
}

/// The outline of a key with a balloon growing out of its top.
CGPath balloonOutline(const CGRect& key, const CGRect& head) {
  constexpr double headRadius = 10;
  const double neck = head.maxY();         // where the head starts to narrow
  const double shoulder = key.minY() - 1;  // where it has become the key
  const double bend = (shoulder - neck) * 0.6;
  CGPath path;
  path.move({head.minX() + headRadius, head.minY()});
  path.line({head.maxX() - headRadius, head.minY()});
  path.arc({head.maxX() - headRadius, head.minY() + headRadius}, headRadius, -M_PI_2, 0, true);
  path.line({head.maxX(), neck - headRadius});
  path.curve({head.maxX(), neck - headRadius + bend + headRadius / 2}, {key.maxX(), neck}, {key.maxX(), shoulder});
  path.line({key.maxX(), key.maxY() - keyRadius});
  path.arc({key.maxX() - keyRadius, key.maxY() - keyRadius}, keyRadius, 0, M_PI_2, true);
  path.line({key.minX() + keyRadius, key.maxY()});
  path.arc({key.minX() + keyRadius, key.maxY() - keyRadius}, keyRadius, M_PI_2, M_PI, true);
  path.line({key.minX(), shoulder});
  path.curve({key.minX(), neck}, {head.minX(), neck - headRadius + bend + headRadius / 2},
             {head.minX(), neck - headRadius});
  path.line({head.minX(), head.minY() + headRadius});
  path.arc({head.minX() + headRadius, head.minY() + headRadius}, headRadius, M_PI, 1.5 * M_PI, true);
  path.close();
  return path;
}

}  // namespace

void UIKeyboardView::draw(CGRect, CGContext& context) {
  const bool pad = KeyboardLayout::isPad(traits_.keyboardType);
  for (const KeyboardKey& key : layout_.keys) {
    const bool held = isHeld(key);
    const KeyLook look = lookOf(key, traits_, shift_, held);
    const bool isBare = pad && key.kind == Kind::backspace;  // on a pad it stands on the panel itself
    if (!isBare) {
      context.setFillColor(keyShadow);
      context.fillPath(CGPath::roundedRect(key.frame.offsetBy(0, 1), keyRadius));
      context.setFillColor(look.background);
      context.fillPath(CGPath::roundedRect(key.frame, keyRadius));
    }
    switch (key.kind) {
      case Kind::shift:
        drawShift(context, key.frame.center(), shift_);
        break;
      case Kind::backspace:
        drawBackspace(context, key.frame.center(), held);
        break;
      default:
        drawLabel(context, key, look.text, pad);
    }
  }
}

// ---- Balloon

namespace {

constexpr double balloonMargin = 12;  // room for the shadow
constexpr double headHeight = 52;
constexpr double headGap = 10;
constexpr double headOverhang = 12;
constexpr double edge = 3;  // of the panel, which the head keeps away from

}  // namespace

void UIKeyboardBalloon::initWithFrame(CGRect frame) {
  UIView::initWithFrame(frame);
  setUserInteractionEnabled(false);
}

void UIKeyboardBalloon::showOver(const KeyboardKey& key, double width) {
  text_ = key.label;
  const double headWidth = key.frame.width() + 2 * headOverhang;
  const double headX = std::clamp(key.frame.minX() - headOverhang, edge, width - edge - headWidth);
  const CGRect all{headX - balloonMargin, key.frame.minY() - headGap - headHeight - balloonMargin,
                   headWidth + 2 * balloonMargin, key.frame.height() + headGap + headHeight + 2 * balloonMargin};
  setFrame(all);
  key_ = key.frame.offsetBy(-all.minX(), -all.minY());
  setNeedsDisplay();
}

void UIKeyboardBalloon::draw(CGRect rect, CGContext& context) {
  const CGRect head{balloonMargin, balloonMargin, rect.size.width - 2 * balloonMargin, headHeight};
  const CGPath outline = balloonOutline(key_, head);
  context.saveGState();
  context.setShadow({0, 1.5}, 6, UIColor::white(0, 0.32));
  context.setFillColor(keyColor);
  context.fillPath(outline);
  context.restoreGState();
  const bool isSmall = text_.size() == 1 && text_[0] >= 'a' && text_[0] <= 'z';
  const UIFont font = isSmall ? UIFont::systemFont(36, UIFontWeightLight) : UIFont::systemFont(33);
  drawCentred(context, text_, font, {head.midX(), head.midY() + 2}, ink);
}

}  // namespace platform
