#include "examples/teashop/screens/TermsScreen.h"

#include "examples/teashop/views/Arrange.h"
#include "examples/teashop/views/Theme.h"
#include "platform/foundation/URL.h"
#include "platform/uikit/views/WKWebView.h"

namespace teashop {

using namespace platform;

void TermsScreen::viewDidLoad() {
  Super::viewDidLoad();
  setTitle("Terms and delivery");
  view()->setBackgroundColor(theme::paper);
  auto page = make<WKWebView>();
  page->setAccessibilityIdentifier("termsPage");
  page->loadURL(URL::parse("https://teashop.example/terms"));
  view()->addSubview(page);
  pin(page, view()->safeAreaLayoutGuide());
}

}  // namespace teashop
