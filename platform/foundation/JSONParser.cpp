#include "platform/foundation/JSONParser.h"

#include <algorithm>
#include <cstring>

#include "platform/foundation/JSONValue.h"

namespace platform::detail {

namespace {

constexpr std::size_t usualBytes = std::size_t{4} << 20;
constexpr std::size_t mostExpected = 4096;
constexpr std::size_t roomBehind = simdjson::SIMDJSON_PADDING + 256;  // keys are compared without looking for their end

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

JSONParser& JSONParser::ofThisThread() {
  thread_local JSONParser parser;
  return parser;
}

simdjson::error_code JSONParser::makeRoom(std::size_t bytes) {
  if (values.capacity() >= bytes && values.max_depth() == JSONValue::maximumDepth) return simdjson::SUCCESS;
  return values.allocate(bytes + bytes / 4 + 1024, JSONValue::maximumDepth);
}

simdjson::padded_string_view JSONParser::padded(std::string_view bytes) {
  const std::size_t wanted = bytes.size() + roomBehind;
  if (wanted > capacity_) {
    capacity_ = wanted + wanted / 4;
    buffer_.reset(new char[capacity_]);
  }
  if (!bytes.empty()) std::memcpy(buffer_.get(), bytes.data(), bytes.size());
  std::memset(buffer_.get() + bytes.size(), 0, roomBehind);
  end_ = buffer_.get() + bytes.size();
  arraysAround_ = 0;
  mayExpect_ = mostExpected;
  return simdjson::padded_string_view(buffer_.get(), bytes.size(), wanted);
}

std::size_t JSONParser::elementsToExpect(std::size_t guessed) {
  if (arraysAround_ > 1) return 0;
  const std::size_t granted = std::min(guessed, mayExpect_);
  mayExpect_ -= granted;
  return granted;
}

void JSONParser::shrink() {
  if (capacity_ <= usualBytes) return;
  buffer_.reset();
  capacity_ = 0;
  values = simdjson::dom::parser();
  records = simdjson::ondemand::parser();
}

std::string reasonNotToParse(std::string_view bytes) {
  if (bytes.size() > JSONValue::maximumBytes) return "the JSON document is too long";
  if (bytes.size() > 2 * usualBytes && isNestedTooDeeply(bytes)) return sentenceFor(simdjson::DEPTH_ERROR);
  return {};
}

std::string sentenceFor(simdjson::error_code error) {
  std::string_view reason = "a bracket, a comma, a colon or a quote is missing or out of place";
  switch (error) {
    case simdjson::EMPTY:
      reason = "there is nothing";
      break;
    case simdjson::DEPTH_ERROR:
      reason = "it is nested too deeply";
      break;
    case simdjson::UTF8_ERROR:
      reason = "text that is not UTF-8";
      break;
    case simdjson::UNCLOSED_STRING:
      reason = "a string without an end";
      break;
    case simdjson::UNESCAPED_CHARS:
      reason = "a control character in a string";
      break;
    case simdjson::STRING_ERROR:
      reason = "a wrong escape in a string";
      break;
    case simdjson::NUMBER_ERROR:
      reason = "a malformed number, or one out of range";
      break;
    case simdjson::T_ATOM_ERROR:
    case simdjson::F_ATOM_ERROR:
    case simdjson::N_ATOM_ERROR:
      reason = "a word other than true, false and null";
      break;
    default:
      break;
  }
  return "not valid JSON: " + std::string(reason);
}

}  // namespace platform::detail
