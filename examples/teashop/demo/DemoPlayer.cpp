#include "examples/teashop/demo/DemoPlayer.h"

#include <algorithm>
#include <cstdio>

#include "examples/teashop/ScreenCatalogue.h"
#include "examples/teashop/demo/ScreenReader.h"
#include "platform/dispatch/RunLoop.h"

namespace teashop {

using namespace platform;

namespace {

Ref<UIView> floatingButton() { return screenReader::ofClass("TLFloaterView"); }
Ref<UIView> sendButton() { return screenReader::buttonTitled("Send"); }

/// The view stands still: nothing is between two places any more.
void rest() { RunLoop::advance(0.6); }

}  // namespace

DemoPlayer::DemoPlayer(TeashopApplication& application, std::string serviceAddress, DemoReport& report)
    : application_(application), events_(std::move(serviceAddress)), report_(report), scribe_(report, "") {}

void DemoPlayer::play(const std::vector<DemoStory>& stories) {
  for (const DemoStory& story : stories) {
    if (!isBroken_) tell(story);
  }
  if (isBroken_) scribe_.stage("Where it stopped", "", "The story did not go on from here");
}

bool DemoPlayer::until(const std::string& what, const std::function<bool()>& condition, double seconds) {
  if (scribe_.until(what, condition, seconds)) return true;
  isBroken_ = true;
  return false;
}

void DemoPlayer::tell(const DemoStory& story) {
  report_.begin(story.title, story.request);
  if (story.given) story.given(*application_.shop());
  std::printf(" %s\n", story.title.c_str());
  for (void (DemoPlayer::*part)(const DemoStory&) : {&DemoPlayer::openChat, &DemoPlayer::ask, &DemoPlayer::watch,
                                                     &DemoPlayer::readOutcome, &DemoPlayer::checkEvents}) {
    if (!isBroken_) (this->*part)(story);
  }
  if (isBroken_ || !story.isKept) return;
  const bool isKept = story.isKept(*application_.shop());
  report_.add(DemoReport::Check{story.kept, isKept, isKept ? "" : "it is not so"});
}

void DemoPlayer::openChat(const DemoStory&) {
  if (sendButton()) return;  // it came back after the request before
  if (!until("the floating button appears", [] { return floatingButton() != nullptr; })) return;
  rest();
  if (scribe_.stages() == 0)
    scribe_.stage("The shop", "Start the shop with the assistant inside", "The round button is there");
  hands_.tap(floatingButton());
  if (!until("the chat opens", [] { return sendButton() != nullptr; })) return;
  rest();
  scribe_.stage("The chat", "Tap the round button", "The chat fills the screen, the shop's bars are gone");
}

void DemoPlayer::ask(const DemoStory& story) {
  hands_.tap(screenReader::ofClass("PaddedTextField"));
  rest();
  hands_.type(story.request);
  if (scribe_.stages() < 3) scribe_.stage("A request", "Say what is wanted", "Typed on the software keyboard");
  hands_.tap(sendButton());
  const auto isSent = [&] { return screenReader::reads(story.request); };
  const auto isUnderWay = [] { return sendButton() == nullptr; };
  // A service that answers at once takes the chat away before it can be looked at.
  if (!until(
          "the request is on its way", [&] { return isSent() || isUnderWay(); }, 3))
    return;
  if (isUnderWay()) return;
  rest();
  if (isSent()) scribe_.stage("Sent", "Tap Send", "The bubble stands, the assistant is at work");
}

void DemoPlayer::watch(const DemoStory& story) {
  if (!until("the chat makes way", [] { return sendButton() == nullptr; })) return;
  for (const DemoStop& stop : story.stops) {
    if (!until(stop.title, stop.isSeen)) return;
    rest();
    scribe_.stage(stop.title, stop.asked, stop.told());
  }
}

void DemoPlayer::readOutcome(const DemoStory& story) {
  if (!story.reopensChat) return;
  if (!until("the outcome is told in the reopened chat",
             [&] { return sendButton() != nullptr && screenReader::lowestText() == story.outcome; }))
    return;
  rest();
  scribe_.stage("The outcome", "Hear how it went", "The chat is open again and says: " + story.outcome);
  report_.add(DemoReport::Check{"the outcome text came", true, story.outcome});
}

void DemoPlayer::checkEvents(const DemoStory& story) {
  const std::vector<std::string> expected = {"MESSAGE_SENT", "ACTION_RESPONSE", "TASK_SUCCESS " + story.taskId};
  std::vector<ServiceEvents::Event> events;
  // The last event is on its way when the outcome is read: ask until it is there.
  const bool isThere = RunLoop::advanceUntil(
      [&] {
        events = events_.since(lastEvent_);
        auto next = expected.begin();
        for (const auto& event : events) {
          const std::string told = event.taskId.empty() ? event.name : event.name + " " + event.taskId;
          if (next != expected.end() && told == *next) ++next;
        }
        return next == expected.end();
      },
      20);
  std::string found;
  for (const auto& event : events) found += (found.empty() ? "" : ", ") + event.name;
  report_.add(DemoReport::Check{"the service heard how it went", isThere, found});
  if (!isThere) std::printf("   the service heard only: %s\n", found.c_str());
  if (!events.empty()) lastEvent_ = events.back().id;
}

void DemoPlayer::visitEveryScreen() {
  if (isBroken_) return;
  report_.begin("Every screen of the shop", "");
  std::puts(" Every screen of the shop");
  for (const NamedScreen& screen : screenCatalogue()) {
    screen.show(application_);
    RunLoop::advance(0.8);
    scribe_.stage(screen.name, "", screen.what);
  }
}

}  // namespace teashop
