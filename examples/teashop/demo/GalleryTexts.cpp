#include "examples/teashop/demo/GalleryTexts.h"

#include <utility>

namespace teashop::galleryTexts {

namespace {

/// The assistant and the customer in turn, the assistant first.
Messages inTurn(std::vector<std::string> texts) {
  Messages messages;
  for (std::string& text : texts) {
    const auto number = static_cast<std::int64_t>(messages.size());
    messages.push_back({std::move(text), number % 2 == 0, number});
  }
  return messages;
}

}  // namespace

Messages shortConversation() {
  return inTurn({
      "Good day! Tell me what you would like.",
      "Is there a tea without caffeine?",
      "Yes: rooibos, camomile, and three other herbal teas. Shall I show you one of them?",
      "Rooibos, please.",
      "Here it is. Say \u201corder it\u201d and I will do the rest.",
  });
}

Messages longConversation(int count) {
  const std::vector<std::string> texts = {
      "What may I do for you?",
      "Two packets of sencha to Ada Lovelace, 12 Harbour Street, Bristol",
      "Ordered. It comes on Thursday between nine and noon; you can change the time until tomorrow evening.",
      "Thank you!",
      "With pleasure.",
      "And how long does it have to brew? The last one was rather bitter, so I would like to get it right this time.",
      "One minute and a half, with water of 70 degrees. Hotter water makes it bitter.",
      "Set a timer",
  };
  std::vector<std::string> chosen;
  for (int i = 0; i < count; ++i) chosen.push_back(texts[static_cast<std::size_t>(i) % texts.size()]);
  return inTurn(std::move(chosen));
}

Messages veryLongMessage() {
  return inTurn({
      "All right, here is how we pack and send tea. Every order is packed by hand on the day on which it comes in, as "
      "long as it comes before two o\u2019clock. Leaves go into a bag that keeps light and air out, the bag into a "
      "tin, "
      "and the tin into a box of grey board. Nothing in it is made of plastic.\n\nThe post takes the boxes at four. "
      "Within the country they arrive on the next working day, elsewhere within a week. Up to two kilogrammes cost the "
      "same, wherever you live; above forty pounds we pay.\n\nIf a tea is not to your taste, send it back within "
      "thirty "
      "days, opened or not. We do not ask why, though we like to hear it: most of the notes in our catalogue began as "
      "a "
      "letter of that kind.\n\nFor presents we write a card by hand, in your words or in ours, and leave out the bill. "
      "Tell us the day on which it should arrive and we wait with the box until then. And if somebody is not at home, "
      "a neighbour will do: the post leaves a note that says which.",
      "I see",
  });
}

Messages scripts() {
  return inTurn({
      "Latin: Two cups of tea, please",
      "Greek: Δύο φλιτζάνια τσάι, παρακαλώ",
      "Cyrillic: Две чашки чая, пожалуйста",
      "Armenian: Երկու բաժակ թեյ, խնդրում եմ",
      "Georgian: ორი ფინჯანი ჩაი, გთხოვთ",
      "Hebrew: שתי כוסות תה, בבקשה",
      "Arabic: كوبان من الشاي من فضلك",
      "Devanagari: कृपया दो कप चाय",
      "Bengali: দয়া করে দুই কাপ চা",
      "Tamil: இரண்டு கோப்பை தேநீர், தயவுசெய்து",
      "Thai: ขอชาสองถ้วย",
      "Chinese: 请来两杯茶",
      "Japanese: お茶を二杯ください",
      "Korean: 차 두 잔 주세요",
      "Emoji: 🍵🍵 🙏 😊 👩🏽‍🌾 🇯🇵",
      "שלום, Earl Grey 250 g",
  });
}

}  // namespace teashop::galleryTexts
