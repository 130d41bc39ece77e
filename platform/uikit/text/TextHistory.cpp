#include "platform/uikit/text/TextHistory.h"

#include <utility>

namespace platform {

void TextHistory::add(Step step, Kind kind) {
  if (step.bytes() == 0) return;
  ++version_;
  undone_.clear();
  const bool isTyping = kind == Kind::typing;
  const bool goesOn = isTyping && runs_ && !done_.empty() && step.removed.empty() &&
                      step.start == done_.back().start + done_.back().inserted.size();
  runs_ = isTyping && !step.inserted.ends_with('\n');
  bytes_ += step.bytes();
  if (goesOn) {
    done_.back().inserted += step.inserted;
    done_.back().after = step.after;
  } else {
    done_.push_back(std::move(step));
  }
  forgetOldest();
}

void TextHistory::forgetOldest() {
  while (done_.size() > 1 && (done_.size() > stepLimit || bytes_ > byteLimit)) {
    bytes_ -= done_.front().bytes();
    done_.pop_front();
  }
}

void TextHistory::clear() {
  ++version_;
  done_.clear();
  undone_.clear();
  bytes_ = 0;
  runs_ = false;
}

void TextHistory::wasUndone() {
  ++version_;
  bytes_ -= done_.back().bytes();
  undone_.push_back(std::move(done_.back()));
  done_.pop_back();
  runs_ = false;
}

void TextHistory::wasRedone() {
  ++version_;
  bytes_ += undone_.back().bytes();
  done_.push_back(std::move(undone_.back()));
  undone_.pop_back();
  runs_ = false;
}

}  // namespace platform
