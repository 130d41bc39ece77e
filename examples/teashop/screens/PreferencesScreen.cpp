#include "examples/teashop/screens/PreferencesScreen.h"

#include "examples/teashop/views/Theme.h"
#include "lumicor/screen/LumicorLabel.h"
#include "platform/declarative/View.h"
#include "platform/uikit/views/UISystemSymbol.h"

namespace teashop {

using namespace platform;
using namespace platform::declarative;
using lumicor::lumicorLabel;

namespace {

constexpr Alignment leading{HorizontalAlignment::leading, VerticalAlignment::center};

View card(const View& content) {
  return content.padding(16).expand(true, false, leading).background(Color(theme::card)).cornerRadius(theme::radius);
}

std::string summaryOf(const Preferences& preferences) {
  return "You like it " + preferences.strength +
         (preferences.wantsNewsletter ? ", and hear from us when new tea arrives." : ".");
}

}  // namespace

PreferencesScreen::PreferencesScreen(ShopRef shop) : Object([this] { return body(); }), shop_(std::move(shop)) {}

void PreferencesScreen::viewDidLoad() {
  Super::viewDidLoad();
  setTitle("Preferences");
  view()->setBackgroundColor(theme::paper);
}

View PreferencesScreen::body() {
  const View greeting = HStack({Image(UISystemSymbol::image("leaf.fill", 26)).foregroundColor(theme::leaf),
                                Text("How do you like your tea?").font(theme::title()).foregroundColor(theme::ink)},
                               10);
  const View summary = Text(summaryOf(shop_->preferences)).font(theme::caption()).foregroundColor(theme::inkSoft);
  return ScrollView(VStack({lumicorLabel(greeting, "preferenceGreeting"), strengthChoice(), newsletter(),
                            lumicorLabel(summary, "preferenceSummary")},
                           16, HorizontalAlignment::leading)
                        .padding(theme::margin));
}

View PreferencesScreen::strengthChoice() {
  std::vector<View> choices;
  for (const std::string strength : {"mild", "medium", "strong"}) {
    const bool isChosen = shop_->preferences.strength == strength;
    choices.push_back(
        Text(strength)
            .font(UIFont::systemFont(15, isChosen ? UIFontWeightSemibold : UIFontWeightRegular))
            .foregroundColor(isChosen ? UIColor::white() : theme::ink)
            .padding(UIEdgeInsets{10, 16, 10, 16})
            .background(Color(isChosen ? theme::leaf : theme::leafTint))
            .cornerRadius(19)
            .accessibilityIdentifier("strength-" + strength)
            .onTapGesture([this, strength] { change([&](Preferences& all) { all.strength = strength; }); }));
  }
  return card(VStack({Text("Strength").font(theme::headline()).foregroundColor(theme::ink),
                      lumicorLabel(HStack(std::move(choices), 8), "preferenceStrength")},
                     12, HorizontalAlignment::leading));
}

View PreferencesScreen::newsletter() {
  const View toggle = Toggle(shop_->preferences.wantsNewsletter,
                             [this](bool isOn) { change([&](Preferences& all) { all.wantsNewsletter = isOn; }); });
  const View words =
      VStack({Text("News of new teas").font(theme::headline()).foregroundColor(theme::ink),
              Text("Four letters a year, no more").font(theme::caption()).foregroundColor(theme::inkSoft)},
             2, HorizontalAlignment::leading);
  return lumicorLabel(card(HStack({words, Spacer(), toggle})), "preferenceNewsletter");
}

void PreferencesScreen::change(const std::function<void(Preferences&)>& edit) {
  edit(shop_->preferences);
  setNeedsUpdate();
}

}  // namespace teashop
