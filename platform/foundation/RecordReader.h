#pragma once

// How records are read, independent of their types: Record.h describes a record to this file as a table of fields with
// their readers.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/foundation/JSONReader.h"
#include "platform/foundation/JSONValue.h"

namespace platform::detail {

/// Where reading failed and why: "elements[3].type: missing". Built from the inside out.
class DecodingError {
 public:
  bool fail(std::string reason);  // always false, so that readers can return it
  void insideMember(std::string_view name) { path_.insert(0, "." + std::string(name)); }
  void insideElement(std::size_t index) { path_.insert(0, "[" + std::to_string(index) + "]"); }
  std::string description() const;

 private:
  std::string path_;
  std::string reason_;
};

/// How one type of value is read into memory of that type. Two sources, one strictness: from a document, giving none on
/// the first deviation without saying which; and from a value, naming it.
struct ValueReader {
  Place (*read)(JSONReader& reader, Place at, void* target);
  bool (*convert)(const JSONValue& value, void* target, DecodingError& error);
};

struct FieldReader {
  std::string_view name;
  ValueReader value;
};

/// The members of an object in whatever order and with whatever between them. The first `done` of the fields have been
/// read already, and the place is behind them.
Place readMembers(JSONReader& reader, Place at, std::span<const FieldReader> fields, void* const* targets,
                  std::size_t done);

bool convert(const JSONValue& value, std::string& target, DecodingError& error);
bool convert(const JSONValue& value, std::int64_t& target, DecodingError& error);
bool convert(const JSONValue& value, bool& target, DecodingError& error);
bool convert(const JSONValue& value, double& target, DecodingError& error);
bool convert(const JSONValue& value, float& target, DecodingError& error);
bool convertMembers(const JSONValue& value, std::span<const FieldReader> fields, void* const* targets,
                    DecodingError& error);

/// For how many more elements a list may make room at once: as many as there will be if they are as long as those read
/// so far, if the list is an outermost one and while the document is long enough to make that likely.
std::size_t elementsToExpect(JSONReader& reader, Place first, Place next, std::size_t read, std::size_t bytesEach);

/// Reads a whole document. On failure `error` tells where and why.
bool decodeDocument(std::string_view bytes, const ValueReader& value, void* target, std::string& error);

}  // namespace platform::detail
