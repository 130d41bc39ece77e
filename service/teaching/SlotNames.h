#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace service {

/// The words of an identifier, in lower case: "deliveryCity-field" has three.
std::vector<std::string> wordsOfIdentifier(std::string_view identifier);

/// What the value behind an identifier may be called: its words without those of the screen's name and without what
/// only says which kind of view it is. "deliveryCityField" on "DeliveryScreen" is "city". "value" when nothing is left.
std::string slotNameFor(std::string_view identifier, std::string_view viewName);

/// Where two identifiers stop to be the same, at the beginning of a word: "product-" of "product-sencha" and
/// "product-sansibar". Empty when they share no word.
std::string_view sharedBeginning(std::string_view a, std::string_view b);

/// The last word or words of an identifier behind its last mark ("-", "_", "." or ":"), or else behind its first word.
std::string_view ownEnding(std::string_view identifier);

}  // namespace service
