#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "lumicor/core/TLChatMessage.h"
#include "platform/animation/CALayer.h"
#include "platform/engine/TextLayout.h"
#include "platform/uikit/lists/PartialSums.h"
#include "platform/uikit/lists/UIScrollView.h"
#include "platform/uikit/views/UILabel.h"

namespace bench {

using namespace platform;

/// The reference of the chat: the same bubbles in a plain scroll view, every frame computed by hand. What is near the
/// screen is measured and shown, on views that are used again; a row that nobody has seen counts as 44 points. No
/// constraints, no cells, no delegate.
class HandPlacedChat : public Object<HandPlacedChat, UIScrollView> {
 public:
  void setMessages(std::vector<lumicor::TLChatMessage> messages) {
    messages_ = std::move(messages);
    measured_.assign(messages_.size(), 0);
    heights_ = PartialSums<double>(std::vector<double>(messages_.size(), estimate));
  }

  void scrollToEnd() {
    const double height = bounds().size.height;
    double seen = 0;
    for (std::size_t row = messages_.size(); row > 0 && seen < height; --row) seen += measure(row - 1);
    showAt(std::max(0.0, total() - height));
  }

  void scrollBy(double points) {
    // Rows that come in above are measured first, so that those on the screen stay where they are.
    double top = contentOffset().y + points;
    const std::size_t anchor = rowAt(contentOffset().y);
    const double before = heights_.before(anchor);
    for (std::size_t row = rowAt(std::max(0.0, top)); row < anchor; ++row) measure(row);
    top += heights_.before(anchor) - before;
    showAt(std::clamp(top, 0.0, std::max(0.0, total() - bounds().size.height)));
  }

  void append(lumicor::TLChatMessage message) {
    messages_.push_back(std::move(message));
    measured_.push_back(0);
    // The sums have no room for one more: they are made again, as a list of frames would be.
    std::vector<double> heights(messages_.size());
    for (std::size_t i = 0; i < heights.size(); ++i) heights[i] = measured_[i] > 0 ? measured_[i] : estimate;
    heights_ = PartialSums<double>(std::move(heights));
    scrollToEnd();
  }

 private:
  static constexpr double estimate = 44;
  struct Bubble {
    Ref<UIView> view = make<UIView>();
    Ref<UILabel> label = make<UILabel>();
    Bubble() {
      view->layer()->setCornerRadius(16);
      view->layer()->setCornerCurve(CALayerCornerCurve::continuous);
      label->setNumberOfLines(0);
      view->addSubview(label);
    }
  };

  static TextStyle style() {
    TextStyle style;
    style.font = UIFont::systemFont(16);
    return style;
  }
  CGSize textSize(std::size_t row) const {
    const CGSize size = TextLayout::measure(messages_[row].message, style(), 250);
    return {std::ceil(size.width * 2) / 2, std::ceil(size.height * 2) / 2};
  }
  double total() const { return heights_.before(messages_.size()); }
  std::size_t rowAt(double y) const { return std::min(heights_.countWithin(y), messages_.size() - 1); }
  double measure(std::size_t row) {
    if (measured_[row] > 0) return measured_[row];
    measured_[row] = textSize(row).height + 32;
    heights_.add(row, measured_[row] - estimate);
    return measured_[row];
  }

  void showAt(double top) {
    setContentSize({bounds().size.width, total()});
    setContentOffset({0, top}, false);
    const double bottom = top + bounds().size.height;
    std::map<std::size_t, Bubble> now;
    const std::size_t first = rowAt(top);
    double y = heights_.before(first);
    std::size_t last = first;
    for (; last < messages_.size() && y < bottom; ++last) y += measure(last);
    for (auto it = shown_.begin(); it != shown_.end();) {
      const bool stays = it->first >= first && it->first < last;
      if (!stays) waiting_.push_back(it->second);
      it = stays ? std::next(it) : shown_.erase(it);
    }
    y = heights_.before(first);
    for (std::size_t row = first; row < last; ++row) {
      place(row, y);
      y += measured_[row];
    }
    for (const Bubble& bubble : waiting_) bubble.view->setHidden(true);
  }

  void place(std::size_t row, double y) {
    if (shown_.contains(row)) return move(shown_.at(row), row, y);
    Bubble bubble = waiting_.empty() ? Bubble() : waiting_.back();
    if (waiting_.empty()) {
      addSubview(bubble.view);
    } else {
      waiting_.pop_back();
      bubble.view->setHidden(false);
    }
    const bool isRemote = messages_[row].isRemote;
    bubble.view->setBackgroundColor(isRemote ? UIColor(0.37, 0.36, 0.94, 1) : UIColor(0.76, 0.76, 0.76, 1));
    bubble.label->setFont(UIFont::systemFont(16));
    bubble.label->setTextColor(isRemote ? UIColor::white() : UIColor::black());
    bubble.label->setText(messages_[row].message);
    move(bubble, row, y);
    shown_.emplace(row, bubble);
  }

  void move(const Bubble& bubble, std::size_t row, double y) const {
    const CGSize text = textSize(row);
    const double x = messages_[row].isRemote ? 22 : bounds().size.width - 42 - text.width;
    bubble.view->setFrame({x, y + 6, text.width + 20, text.height + 20});
    bubble.label->setFrame({10, 10, text.width, text.height});
  }

  std::vector<lumicor::TLChatMessage> messages_;
  std::vector<double> measured_;  ///< by row; 0 while nobody has seen it
  PartialSums<double> heights_;
  std::map<std::size_t, Bubble> shown_;
  std::vector<Bubble> waiting_;
};

}  // namespace bench
