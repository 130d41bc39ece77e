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
  /// While an array is read.
  struct InsideArray {
    explicit InsideArray(JSONParser& of) : parser(of) { ++parser.arraysAround_; }
    ~InsideArray() { --parser.arraysAround_; }
    InsideArray(const InsideArray&) = delete;
    InsideArray& operator=(const InsideArray&) = delete;
    JSONParser& parser;
  };
  /// For how many elements the array that is being read may make room at once when it seems to have so many: only an
  /// outermost one, and all of a document together not for very many.
  std::size_t elementsToExpect(std::size_t guessed);
  /// Lets go of what an unusually large document left behind.
  void shrink();

 private:
  std::unique_ptr<char[]> buffer_;
  std::size_t capacity_ = 0;
  const char* end_ = nullptr;
  std::size_t arraysAround_ = 0;
  std::size_t mayExpect_ = 0;
};

/// Empty when the document is worth parsing, else the sentence why not: too long, or (looked at for long documents
/// only, before anything is allocated for them) nested too deeply.
std::string reasonNotToParse(std::string_view bytes);
std::string sentenceFor(simdjson::error_code error);

}  // namespace platform::detail
