#include "fuzz/RecordAgreement.h"
#include "lumicor/core/TLAction.h"
#include "lumicor/core/TLChatMessage.h"
#include "lumicor/core/TLDefaults.h"
#include "lumicor/core/TLLayout.h"
#include "lumicor/network/LumicorConfiguration.h"
#include "lumicor/screen/LumicorSnapshot.h"

namespace fuzz {

void records(std::string_view input) {
  if (input.empty()) return;
  const std::string_view document = input.substr(1);
  switch (input[0]) {
    case 'e':
      return expectAgreement<std::vector<lumicor::LumicroElement>>(document);
    case 's':
      return expectAgreement<lumicor::LumicorSnapshot>(document);
    case 'v':
      return expectAgreement<lumicor::LumicorScrollDetails>(document);
    case 'a':
      return expectAgreement<std::vector<lumicor::TLAction>>(document);
    case 'p':
      return expectAgreement<lumicor::TLActionPosition>(document);
    case 'd':
      return expectAgreement<lumicor::TLDefaults>(document);
    case 'l':
      return expectAgreement<lumicor::TLLayout>(document);
    case 'm':
      return expectAgreement<std::vector<lumicor::TLChatMessage>>(document);
    case 'c':
      if (const auto value = platform::JSONValue::parse(document)) (void)lumicor::LumicorConfiguration::read(*value);
      return;
    case 't':  // a person's text, whatever its bytes
      return expectLasting(lumicor::TLChatMessage{std::string(document), true, 1});
    default:
      return;
  }
}

}  // namespace fuzz
