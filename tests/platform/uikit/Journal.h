#pragma once

#include <string>

namespace platform::test {

/// What happened, word by word; `take` tells it and starts afresh.
class Journal {
 public:
  void note(const std::string& word) { words_ += (words_.empty() ? "" : " ") + word; }
  std::string take() { return std::exchange(words_, {}); }

 private:
  std::string words_;
};

}  // namespace platform::test
