#include "tools/play/Scenario.h"

#include "lumicor/actions/TLStepPreparation.h"
#include "platform/foundation/JSONValue.h"

namespace play {

using namespace platform;
using namespace lumicor;

namespace {

Result<std::vector<TLAction>> prepared(Result<std::vector<TLAction>> steps) {
  if (!steps) return steps;
  return preparedSteps(std::move(*steps));
}

}  // namespace

Result<std::vector<TLAction>> readScenario(std::string_view bytes) {
  const auto document = JSONValue::parse(bytes);
  if (!document) return Failure{"not JSON: " + document.error()};
  if (document->asArray()) return prepared(decodeJSON<std::vector<TLAction>>(bytes));
  const JSONValue* const data = document->find("data");
  const JSONValue* const answer = (data ? *data : *document).find("answer");
  if (!answer) return Failure{"neither a list of steps nor a reply with an \"answer\""};
  if (answer->asArray()) return prepared(decodeRecord<std::vector<TLAction>>(*answer));
  const std::string* const text = answer->asString();
  if (!text) return Failure{"\"answer\" is neither a list of steps nor a text that holds one"};
  return prepared(decodeJSON<std::vector<TLAction>>(*text));
}

}  // namespace play
