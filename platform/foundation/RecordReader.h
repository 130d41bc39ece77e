#pragma once

// How records are read, independent of their types: Record.h describes a record to this file as a plan of fields and
// slots, and the parser stays in the source.

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

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

/// A value inside the document that is being parsed.
class JSONSource;

/// What a slot holds. The simple kinds are read without a call through a pointer.
enum class SlotKind : std::uint8_t { string, integer, boolean, number, singleNumber, compound };

/// How to read one type of value into a slot of it. Two sources, one strictness.
struct ValuePlan {
  SlotKind kind = SlotKind::compound;
  bool (*parse)(JSONSource& source, void* slot) = nullptr;
  bool (*convert)(const JSONValue& value, void* slot, DecodingError& error) = nullptr;
};

struct FieldPlan {
  constexpr FieldPlan(std::string_view fieldName, ValuePlan fieldValue) : name(fieldName), value(fieldValue) {
    for (std::size_t i = 0; i < sizeof start && i < name.size(); ++i) {
      const std::size_t shift = 8 * (std::endian::native == std::endian::little ? i : sizeof start - 1 - i);
      start |= std::uint64_t{static_cast<unsigned char>(name[i])} << shift;
      startMask |= std::uint64_t{0xFF} << shift;
      const char fromEnd = name[name.size() - std::min(name.size(), sizeof end) + i];
      end |= std::uint64_t{static_cast<unsigned char>(fromEnd)} << shift;
    }
  }
  std::string_view name;
  ValuePlan value;
  /// The first and the last bytes of the name as numbers, to compare keys with.
  std::uint64_t start = 0;
  std::uint64_t startMask = 0;
  std::uint64_t end = 0;
};

/// Reading from the parser: false on the first deviation, without saying which.
bool parseValue(JSONSource& source, const ValuePlan& plan, void* slot);
bool parseObject(JSONSource& source, std::span<const FieldPlan> fields, void* const* slots);
/// `expect` is told once, after the first element, about how many there will be if the others are as long.
bool parseArray(JSONSource& source, void* context, bool (*element)(JSONSource&, void* context),
                void (*expect)(void* context, std::size_t count));
bool parseMembers(JSONSource& source, void* context, bool (*member)(std::string_view name, JSONSource&, void* context));
bool parseText(JSONSource& source, std::string_view& text);

/// Reading from a value in memory: false on the first deviation, which the error names.
bool convertValue(const JSONValue& value, const ValuePlan& plan, void* slot, DecodingError& error);
bool convertObject(const JSONValue& value, std::span<const FieldPlan> fields, void* const* slots, DecodingError& error);

/// Reads a whole document by the plan. On failure `error` tells where and why.
bool decodeDocument(std::string_view bytes, const ValuePlan& plan, void* slot, std::string& error);

}  // namespace platform::detail
