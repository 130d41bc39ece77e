#include "fuzz/Harnesses.h"
#include "lumicor/ui/UIColorHex.h"
#include "platform/foundation/URL.h"

namespace fuzz {

using platform::URL;

void url(std::string_view input) {
  const std::size_t end = std::min(input.find('\n'), input.size());
  const auto address = URL::parse(input.substr(0, end));
  if (address) {
    expect(URL::parse(address->absoluteString()) == address, "an address is read as itself");
    expect(address->port().value_or(address->effectivePort()) == address->effectivePort(), "a port that is told holds");
    (void)address->lastPathComponent();
    const auto resolved = address->resolving(input.substr(std::min(end + 1, input.size())));
    expect(!resolved || URL::parse(resolved->absoluteString()) == resolved, "a resolved address is one");
  }
  const std::string path = "/" + std::string(input.substr(0, 1000));
  if (path.find('\0') == std::string::npos) expect(URL::fileURL(path).path() == path, "a file's address names it");
}

void color(std::string_view input) {
  const platform::UIColor color = lumicor::UIColorHex(input);
  for (const double part : {color.red(), color.green(), color.blue(), color.alpha()})
    expect(part >= 0 && part <= 1, "the parts of a colour lie between 0 and 1");
}

}  // namespace fuzz
