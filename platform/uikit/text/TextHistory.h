#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>

namespace platform {

/// What was done to a text, step by step, so that it can be undone and redone. A run of typing is one step, until the
/// caret goes elsewhere, something else is done or a line is broken; every deletion, cut, paste and replacement is one
/// of its own. Bounded: the last `stepLimit` steps, and of these no more than hold `byteLimit` bytes of text together;
/// the newest stays whatever it holds. Positions are bytes. Main thread.
class TextHistory {
 public:
  static constexpr std::size_t stepLimit = 100;
  static constexpr std::size_t byteLimit = std::size_t{1} << 20;

  enum class Kind { typing, change };
  struct Selection {
    std::size_t anchor = 0;
    std::size_t caret = 0;
  };
  /// At `start` the text `removed` gave way to `inserted`.
  struct Step {
    std::size_t start = 0;
    std::string removed;
    std::string inserted;
    Selection before;
    Selection after;
    Step reversed() const { return {start, inserted, removed, after, before}; }
    std::size_t bytes() const { return removed.size() + inserted.size(); }
  };

  /// What was undone before cannot be redone any more.
  void add(Step step, Kind kind);
  /// What is typed next begins a step of its own.
  void endRun() { runs_ = false; }
  void clear();

  /// The step to undo (redo) next, or none; valid until the history changes.
  const Step* toUndo() const { return done_.empty() ? nullptr : &done_.back(); }
  const Step* toRedo() const { return undone_.empty() ? nullptr : &undone_.back(); }
  void wasUndone();
  void wasRedone();

  /// Another number after every change of the history.
  std::uint64_t version() const { return version_; }

 private:
  void forgetOldest();

  std::deque<Step> done_;
  std::deque<Step> undone_;
  std::size_t bytes_ = 0;  ///< of the steps done
  std::uint64_t version_ = 0;
  bool runs_ = false;
};

}  // namespace platform
