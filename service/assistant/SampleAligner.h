#pragma once

#include <cstddef>
#include <vector>

#include "service/assistant/PreparedTask.h"

namespace service {

/// The tokens in which a slot was found.
struct Capture {
  const Slot* slot = nullptr;
  std::size_t first = 0;
  std::size_t count = 0;
  const Choice* choice = nullptr;
};

/// How a sample request lies along a query.
struct Alignment {
  std::vector<Capture> captures;
  std::vector<bool> claimed;      ///< for every token: belongs to a word or slot of the sample
  double matchedWords = 0;        ///< weight of the sample's words that were found
  bool foundTellingWord = false;  ///< or the sample has none to find
};

/// Lays a sample along the tokens of a query, in order, so that the most telling parts of both meet. Words of either
/// side may be passed over. A text slot takes any words, but only right after what stands before it in the sample:
/// in "send it to {address}" an address begins after a "to". Takes time in proportion to elements x tokens^2.
Alignment alignSample(const PreparedTask& task, const Sample& sample, const std::vector<Token>& tokens);

}  // namespace service
