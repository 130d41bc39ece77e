#pragma once

#include <functional>
#include <string>
#include <vector>

#include "examples/teashop/TeashopApplication.h"
#include "examples/teashop/demo/DemoHands.h"
#include "examples/teashop/demo/DemoReport.h"
#include "examples/teashop/demo/DemoScribe.h"
#include "examples/teashop/demo/DemoStory.h"
#include "examples/teashop/demo/ServiceEvents.h"

namespace teashop {

/// Plays requests on the running shop, as a person would: it finds what it touches on the screen, taps, types and
/// looks. It knows neither the assistant's insides nor the shop's, except for what must be in the books at last. Works
/// in real and in virtual time. Main thread.
class DemoPlayer {
 public:
  /// What happens is added to the report, which is borrowed.
  DemoPlayer(TeashopApplication& application, std::string serviceAddress, DemoReport& report);

  /// Plays one story after the other; what did not come about is a check of the report that does not hold, and the last
  /// thing that is played.
  void play(const std::vector<DemoStory>& stories);
  void visitEveryScreen();
  /// Since it was made.
  DemoReport::Times times() const { return scribe_.times(); }

 private:
  void tell(const DemoStory& story);
  void openChat(const DemoStory& story);
  void ask(const DemoStory& story);
  void watch(const DemoStory& story);
  void readOutcome(const DemoStory& story);
  void checkEvents(const DemoStory& story);

  /// Waits as the scribe does; what never comes about ends the play.
  bool until(const std::string& what, const std::function<bool()>& condition, double seconds = 20);

  TeashopApplication& application_;
  ServiceEvents events_;
  DemoReport& report_;
  DemoHands hands_;
  DemoScribe scribe_;
  std::int64_t lastEvent_ = 0;  // the newest that belongs to a story already told
  bool isBroken_ = false;       // a condition never held: what follows makes no sense any more
};

}  // namespace teashop
