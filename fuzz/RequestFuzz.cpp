#include <array>

#include "fuzz/Harnesses.h"
#include "service/http/RequestLine.h"
#include "tests/service/RunningService.h"
#include "tests/service/Wire.h"

namespace fuzz {

using namespace service;

void request(std::string_view input) {
  if (const auto fields = HeaderFields::parse(input)) {
    for (const auto& [name, value] : fields->all()) expect(fields->count(name) > 0, "a field is found by its name");
  }
  const std::string line = printable(input, 100);
  expect(line.size() <= 500 && line.find_first_of("\r\n\x1b") == std::string::npos, "what is printed stays one line");
  try {
    const Json value = parseJson(input);
    expect(parseJson(value.dump(-1, ' ', false, Json::error_handler_t::replace)) == value, "what was written is read");
  } catch (const JsonError&) {
  }
}

void connection(std::string_view input) {
  using namespace std::chrono_literals;
  // Whatever is left unsaid ends with the connection's half that is closed: the limits are for a machine that stands
  // still.
  static RunningService running({.headTime = 10s, .bodyTime = 10s, .writeTime = 10s, .lingerTime = 50ms});
  constexpr std::array<std::string_view, 7> paths{
      "/sdk/init",          "/sdk/steps/get",         "/sdk/event/log",   "/sdk/messages/upload",
      "/sdk/task/register", "/sdk/snapshot/register", "/sdk/media/upload"};
  const std::size_t path = input.empty() ? paths.size() : static_cast<std::size_t>(input[0] - '0');
  Wire wire(running.port());
  wire.send(path < paths.size() ? postRequest(paths[path], input.substr(1)) : std::string(input));
  wire.finishSending();
  const WireResponse response = wire.receive();
  expect(response.status == 0 || (response.status >= 200 && response.status < 600), "an answer has a sound status");
  expect(path >= paths.size() || response.status != 0, "a sound request has an answer");
  expect(response.status != 500, "nothing that a client sends is the service's own failure");
}

}  // namespace fuzz
