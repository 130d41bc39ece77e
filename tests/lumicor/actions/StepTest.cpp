#include "tests/lumicor/actions/StepTest.h"

#include "lumicor/actions/TLStepOperation.h"
#include "platform/uikit/controllers/UINavigationController.h"

namespace lumicor::test {

Ref<UINavigationController> CartScreen::navigationController() const {
  ++lookups;
  if (onLookup) onLookup();
  return UIViewController::navigationController();
}

void CartScreen::performSegue(const std::string& identifier, const Ref<NSObject>& sender) {
  if (identifier != ownSegue) return Super::performSegue(identifier, sender);
  segueSender = sender;
  ++ownSeguesPerformed;
}

void Host::onTap(Ref<NSObject> sender) { hear("tap by " + sender->isa().name()); }

void Host::hearAgain(Ref<NSObject> sender) { hear("again by " + sender->isa().name()); }

void Host::exportMethods(MethodTable<Host>& table) {
  table.add<&Host::onTap>("onTap:").add<&Host::hearAgain>("hearAgain:");
}

TLTaskResult StepTest::perform(const TLAction& step) {
  TLTaskResult result;
  performStep(step, TLStepTarget::find(step), result);
  return result;
}

}  // namespace lumicor::test
