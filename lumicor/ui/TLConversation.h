#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "lumicor/core/TLChatMessage.h"

namespace lumicor {

/// The messages of a chat screen in order: the session's history, which is shared and never copied unless it has to be
/// sorted, and behind it what has come since. Opening a chat so costs the same whatever was said before. Main thread.
class TLConversation {
 public:
  using History = std::shared_ptr<const std::vector<TLChatMessage>>;

  TLConversation() = default;
  /// Nothing has come since; the oldest message stands first.
  explicit TLConversation(History history);

  std::size_t size() const { return earlier_ + since_.size(); }
  bool empty() const { return size() == 0; }
  const TLChatMessage& operator[](std::size_t index) const {
    return index < earlier_ ? (*history_)[index] : since_[index - earlier_];
  }
  const TLChatMessage& back() const { return (*this)[size() - 1]; }
  void append(TLChatMessage message) { since_.push_back(std::move(message)); }
  /// There must be one.
  void removeLast() { since_.empty() ? void(--earlier_) : since_.pop_back(); }

  class Iterator {
   public:
    Iterator(const TLConversation& of, std::size_t index) : of_(&of), index_(index) {}
    const TLChatMessage& operator*() const { return (*of_)[index_]; }
    Iterator& operator++() {
      ++index_;
      return *this;
    }
    bool operator==(const Iterator& other) const { return index_ == other.index_; }

   private:
    const TLConversation* of_;
    std::size_t index_;
  };
  Iterator begin() const { return {*this, 0}; }
  Iterator end() const { return {*this, size()}; }

 private:
  History history_;
  std::size_t earlier_ = 0;  ///< as many of the history's messages are part of it
  std::vector<TLChatMessage> since_;
};

}  // namespace lumicor
