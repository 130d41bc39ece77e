#pragma once

#include "fuzz/Harnesses.h"
#include "platform/foundation/Record.h"

namespace fuzz {

/// What is written of a record is read as a record of which the same is written, byte for byte: what is stored, read
/// and stored again does not change.
template <class T>
void expectLasting(const T& record) {
  const auto written = platform::encodeJSON(record);
  expect(static_cast<bool>(written), "a record can be written");
  const auto read = platform::decodeJSON<T>(*written);
  expect(static_cast<bool>(read), "what was written can be read");
  const auto again = platform::encodeJSON(*read);
  expect(again && *again == *written, "what was read is written as before");
}

/// Reads the document in the two ways there are. They must agree whether it is such a record and which, and what is
/// written of it must be read as the same again.
template <class T>
void expectAgreement(std::string_view document) {
  const auto direct = platform::decodeJSON<T>(document);
  const auto value = platform::JSONValue::parse(document);
  const auto overValue = value ? platform::decodeRecord<T>(*value) : platform::Result<T>(platform::Failure{""});
  expect(static_cast<bool>(direct) == static_cast<bool>(overValue), "both readers take the document or none does");
  if (!direct) return;
  expect(*direct == *overValue, "both readers read the same");
  const auto written = platform::encodeJSON(*direct);
  expect(static_cast<bool>(written), "what was read can be written");
  const auto again = platform::decodeJSON<T>(*written);
  expect(again && *again == *direct, "what was written is read as the same");
  expectLasting(*direct);
}

}  // namespace fuzz
