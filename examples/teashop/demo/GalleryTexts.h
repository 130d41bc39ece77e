#pragma once

#include <string>
#include <vector>

#include "lumicor/core/TLChatMessage.h"

namespace teashop {

/// What is said in the chats of the gallery.
namespace galleryTexts {

using Messages = std::vector<lumicor::TLChatMessage>;

Messages shortConversation();
/// Of so many messages, between one line and four.
Messages longConversation(int count);
Messages veryLongMessage();
/// The same wish in fourteen scripts, and one in pictures.
Messages scripts();

}  // namespace galleryTexts

}  // namespace teashop
