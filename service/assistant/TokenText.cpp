#include "service/assistant/TokenText.h"

#include "service/assistant/WordForms.h"
#include "service/base/Utf8.h"

namespace service {

std::vector<Token> tokenise(std::string_view text) {
  std::vector<Token> tokens;
  Token current;
  const auto finish = [&] {
    if (!current.word.empty()) {
      current.key = wordKey(current.word);
      current.weight = wordWeight(current.word);
      current.number = numberWord(current.word);
      tokens.push_back(std::move(current));
    }
    current = Token();
  };
  for (std::size_t offset = 0; offset < text.size();) {
    const CodePoint point = codePointAt(text, offset);
    const FoldedCharacter folded = foldCharacter(point.value);
    if (folded.isSeparator) {
      finish();
      const bool isClauseEnd = point.value == ',' || point.value == ';' || point.value == '\n';
      if (isClauseEnd && !tokens.empty()) tokens.back().endsClause = true;
    } else {
      if (current.word.empty()) current.begin = offset;
      current.word += folded.letters;
      current.end = offset + point.length;
    }
    offset += point.length;
  }
  finish();
  return tokens;
}

}  // namespace service
