#include "platform/foundation/JSONRefusal.h"

// The parser checks itself with assertions wherever they are not switched off, at a third of its speed.
#ifndef NDEBUG
#define NDEBUG
#endif

#include <simdjson.h>

#include "platform/foundation/JSONReader.h"
#include "platform/foundation/JSONValue.h"

namespace platform::detail {

namespace {

std::string_view sentenceFor(simdjson::error_code error) {
  switch (error) {
    case simdjson::EMPTY:
      return "there is nothing";
    case simdjson::DEPTH_ERROR:
      return "it is nested too deeply";
    case simdjson::UTF8_ERROR:
      return "text that is not UTF-8";
    case simdjson::UNCLOSED_STRING:
      return "a string without an end";
    case simdjson::UNESCAPED_CHARS:
      return "a control character in a string";
    case simdjson::STRING_ERROR:
      return "a wrong escape in a string";
    case simdjson::NUMBER_ERROR:
      return "a malformed number, or one out of range";
    case simdjson::T_ATOM_ERROR:
    case simdjson::F_ATOM_ERROR:
    case simdjson::N_ATOM_ERROR:
      return "a word other than true, false and null";
    default:
      return "a bracket, a comma, a colon or a quote is missing or out of place";
  }
}

bool isNestedTooDeeply(std::string_view bytes) {
  std::size_t depth = 0;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    switch (bytes[i]) {
      case '[':
      case '{':
        if (++depth > JSONValue::maximumDepth) return true;
        break;
      case ']':
      case '}':
        if (depth > 0) --depth;
        break;
      case '"':
        for (++i; i < bytes.size() && bytes[i] != '"'; ++i) {
          if (bytes[i] == '\\') ++i;
        }
        break;
      default:
        break;
    }
  }
  return false;
}

}  // namespace

std::string reasonForRefusal(std::string_view bytes) {
  const JSONReader reader(bytes);
  const std::string_view text(reader.begin, static_cast<std::size_t>(reader.end - reader.begin));
  // Looked at before the parser makes room for a document of that size.
  if (isNestedTooDeeply(text)) return "not valid JSON: " + std::string(sentenceFor(simdjson::DEPTH_ERROR));
  simdjson::dom::parser parser;
  simdjson::error_code error = parser.allocate(text.size(), JSONValue::maximumDepth + 1);
  if (!error) error = parser.parse(text.data(), text.size()).error();
  return "not valid JSON: " + std::string(sentenceFor(error));
}

}  // namespace platform::detail
