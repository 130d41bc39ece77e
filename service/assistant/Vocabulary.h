#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "service/assistant/PreparedTask.h"

namespace service {

/// Every word that the tasks know, for putting right what was mistyped. Never changes once made; any thread.
class Vocabulary {
 public:
  explicit Vocabulary(const std::vector<PreparedTask>& tasks);

  /// Replaces the key of an unknown word by that of the one known word it differs from by one slip: a letter left out,
  /// added, changed, or two swapped. Only words of five letters and more are taken for mistyped ones. The words
  /// themselves stay as they were typed.
  void correct(std::vector<Token>& tokens) const;

 private:
  std::set<std::string> keys_;
};

/// Whether one slip turns `a` into `b`.
bool differByOneSlip(std::string_view a, std::string_view b);

}  // namespace service
