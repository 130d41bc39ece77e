#pragma once

// What the two readers of JSON (values and records) have in common. Included by their sources alone.

// The parser checks itself with assertions wherever they are not switched off, at a third of its speed.
#ifndef NDEBUG
#define NDEBUG
#endif

#include <memory>
#include <simdjson.h>
#include <string>
#include <string_view>

namespace platform::detail {

/// The parsers of one thread with their buffers, which are kept between documents of usual size.
struct JSONParser {
  simdjson::dom::parser values;
  simdjson::ondemand::parser records;

  static JSONParser& ofThisThread();
  /// Makes `values` ready for a document of that length and for no more nesting than values may have.
  simdjson::error_code makeRoom(std::size_t bytes);
  /// A copy of the document with the room behind it that the parser reads into. Valid until the next call.
  simdjson::padded_string_view padded(std::string_view bytes);
  /// Where that copy ends.
  const char* end() const { return end_; }
  /// Lets go of what an unusually large document left behind.
  void shrink();

 private:
  std::unique_ptr<char[]> buffer_;
  std::size_t capacity_ = 0;
  const char* end_ = nullptr;
};

/// Empty when the document is worth parsing, else the sentence why not: too long, or (looked at for long documents
/// only, before anything is allocated for them) nested too deeply.
std::string reasonNotToParse(std::string_view bytes);
std::string sentenceFor(simdjson::error_code error);

}  // namespace platform::detail
