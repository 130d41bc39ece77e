#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "platform/foundation/RecordReading.h"
#include "platform/foundation/RecordWriting.h"
#include "platform/foundation/Result.h"

// Records: plain values that say once which fields they have, in wire order, and are read and written by that.
//
//     class TeaOrder {
//      public:
//       TeaOrder(std::string name, std::int64_t cups);
//       static constexpr auto fields() {
//         return std::tuple{field("name", &TeaOrder::name_), field("cups", &TeaOrder::cups_)};
//       }
//      private: ...
//     };
//
// A field is a bool, std::int64_t, double, float, std::string, an enumeration with RawValues, another record, or a
// std::vector or std::map<std::string, ...> of these. A record's constructor takes its fields' values, in order, and
// keeps them as they are (an aggregate needs none): a reader builds a record of its values, or of empty ones which it
// then fills in. Reading is strict: every key must be there with a value of its type; null is none; an integer is a
// whole number in whatever form (7, 7.0, 70e-1) that fits; keys that are not known are passed over.
// Optional fields are not offered: a record is whole or it is not there.

namespace platform {

/// A record, or a vector or map of records (or of anything a field may be), as compact JSON, keys in declared order.
/// Fails only for a number that is infinite or none.
template <class T>
Result<Data> encodeJSON(const T& value) {
  JSONWriter writer(detail::expectedBytes(value) + 16);
  char* const end = detail::write(writer, writer.start(), value);
  if (writer.hasFailed()) return Failure{"a number that is not finite cannot be written as JSON"};
  return writer.finish(end);
}

/// Reads a document strictly. On failure the sentence names the place: "elements[3].type: missing".
template <class T>
Result<T> decodeJSON(std::string_view bytes) {
  detail::Slot<T> slot = detail::emptySlot<T>();
  std::string error;
  if (!detail::decodeDocument(bytes, detail::readerOf<T>, &slot, error)) return Failure{std::move(error)};
  return detail::take<T>(slot);
}

/// The same strictness and the same sentences for a value that was parsed before.
template <class T>
Result<T> decodeRecord(const JSONValue& value) {
  detail::Slot<T> slot = detail::emptySlot<T>();
  detail::DecodingError error;
  if (!detail::Coder<T>::convert(value, slot, error)) return Failure{error.description()};
  return detail::take<T>(slot);
}

/// The record as a value, members in declared order.
template <class T>
JSONValue toJSONValue(const T& value) {
  return detail::toValue(value);
}

}  // namespace platform
