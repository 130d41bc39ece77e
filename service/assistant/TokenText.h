#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace service {

/// One word of a text.
struct Token {
  std::string word;  ///< folded
  std::string key;   ///< what words are compared by (see wordKey)
  std::size_t begin = 0;
  std::size_t end = 0;  ///< the word's bytes in the text it came from
  double weight = 1;    ///< how much it tells
  std::optional<std::int64_t> number;
  bool endsClause = false;  ///< a comma, a semicolon or a line break follows
};

/// The words of a text, in order: runs of letters and digits.
std::vector<Token> tokenise(std::string_view text);

}  // namespace service
