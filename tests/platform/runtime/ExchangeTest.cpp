#include "platform/runtime/Exchangeable.h"

namespace platform {
namespace {

using testing::ElementsAre;

std::vector<std::string> history;

/// A control with one operation that can be hooked, as the platform's own have.
class Control : public Object<Control, NSObject> {
 public:
  virtual bool send(const std::string& action) {
    return Exchangeable<&Control::send, &Control::sendAsUsual>::call(*this, action);
  }
  void plain() { history.push_back("plain"); }
  static void exportMethods(MethodTable<Control>& table) {
    Exchangeable<&Control::send, &Control::sendAsUsual>::addTo(table.owner(), "send:");
    table.add<&Control::plain>("plain");
  }

 private:
  bool sendAsUsual(const std::string& action) {
    history.push_back(action);
    return true;
  }
};

class Button : public Object<Button, Control> {};

class Slider : public Object<Slider, Control> {
 public:
  bool send(const std::string& action) override {
    history.push_back("slider");
    return Control::send(action);
  }
};

/// The hook: tells what happens and lets the original do it, which has its name after the exchange.
bool hookedSend(Control& self, const std::string& action) {
  history.push_back("hook");
  return self.perform<bool>(sel("hooked_send:"), action);
}
void hookedPlain(Control& self) {
  history.push_back("hook");
  self.perform(sel("hooked_plain"));
}

/// Exchanges for one test: a second exchange puts everything back.
class ExchangeTest : public testing::Test {
 protected:
  ExchangeTest() { history.clear(); }
  ~ExchangeTest() override {
    if (isExchanged_) exchange();
  }
  void exchange() {
    class_addMethod<&hookedSend>(Control::cls(), sel("hooked_send:"));
    method_exchangeImplementations(class_getInstanceMethod(Button::cls(), sel("send:")),
                                   class_getInstanceMethod(Control::cls(), sel("hooked_send:")));
    isExchanged_ = !isExchanged_;
  }
  static std::vector<std::string> sent(const Ref<Control>& control) {
    history.clear();
    EXPECT_TRUE(control->send("tap"));
    return history;
  }
  static std::vector<std::string> performed(const Ref<Control>& control) {
    history.clear();
    EXPECT_TRUE(control->perform<bool>(sel("send:"), "tap"));
    return history;
  }
  bool isExchanged_ = false;
};

TEST_F(ExchangeTest, ChangesNothingUntilItIsMade) {
  EXPECT_THAT(sent(make<Control>()), ElementsAre("tap"));
  EXPECT_THAT(performed(make<Slider>()), ElementsAre("slider", "tap"));
  EXPECT_FALSE(class_getInstanceMethod(Control::cls(), sel("send:"))->isExchanged());
}

TEST_F(ExchangeTest, IsReachedByCallsAndMessagesOfTheClassAndOfThoseThatInherit) {
  exchange();
  for (const Ref<Control>& control : std::vector<Ref<Control>>{make<Control>(), make<Button>()}) {
    EXPECT_THAT(sent(control), ElementsAre("hook", "tap"));
    EXPECT_THAT(performed(control), ElementsAre("hook", "tap"));
  }
}

TEST_F(ExchangeTest, IsReachedThroughTheOverrideOfASubclass) {
  exchange();
  EXPECT_THAT(sent(make<Slider>()), ElementsAre("slider", "hook", "tap"));
  EXPECT_THAT(performed(make<Slider>()), ElementsAre("slider", "hook", "tap"));
}

TEST_F(ExchangeTest, IsSeenByACallThatWasHeldBefore) {
  class_addMethod<&hookedSend>(Control::cls(), sel("hooked_send:"));
  const MethodCall<bool(std::string)> send(Button::cls(), sel("send:"));
  const MethodCall<bool(std::string)> hooked(Control::cls(), sel("hooked_send:"));
  const Ref<Slider> slider = make<Slider>();
  exchange();
  EXPECT_TRUE(send(*slider, "tap"));
  EXPECT_THAT(history, ElementsAre("hook", "tap")) << "the implementation in force, not the override of the slider";
  history.clear();
  EXPECT_TRUE(hooked(*slider, "tap"));
  EXPECT_THAT(history, ElementsAre("tap"));
  exchange();
  history.clear();
  EXPECT_TRUE(send(*slider, "tap"));
  EXPECT_THAT(history, ElementsAre("tap"));
}

TEST_F(ExchangeTest, IsUndoneByASecondOne) {
  exchange();
  exchange();
  EXPECT_THAT(sent(make<Slider>()), ElementsAre("slider", "tap"));
  EXPECT_FALSE(class_getInstanceMethod(Control::cls(), sel("send:"))->isExchanged());
}

bool secondHook(Control& self, const std::string& action) {
  history.push_back("second hook");
  return self.perform<bool>(sel("second_send:"), action);
}

TEST_F(ExchangeTest, StacksOneHookOnAnother) {
  exchange();
  class_addMethod<&secondHook>(Control::cls(), sel("second_send:"));
  Method* const send = class_getInstanceMethod(Control::cls(), sel("send:"));
  Method* const second = class_getInstanceMethod(Control::cls(), sel("second_send:"));
  method_exchangeImplementations(send, second);
  EXPECT_THAT(sent(make<Control>()), ElementsAre("second hook", "hook", "tap"));
  method_exchangeImplementations(send, second);
  EXPECT_THAT(sent(make<Control>()), ElementsAre("hook", "tap"));
}

TEST_F(ExchangeTest, WorksForMethodsThatAreOnlySentByName) {
  class_addMethod<&hookedPlain>(Control::cls(), sel("hooked_plain"));
  Method* const plain = class_getInstanceMethod(Button::cls(), sel("plain"));
  Method* const hooked = class_getInstanceMethod(Button::cls(), sel("hooked_plain"));
  method_exchangeImplementations(plain, hooked);
  make<Button>()->perform(sel("plain"));
  EXPECT_THAT(history, ElementsAre("hook", "plain"));
  method_exchangeImplementations(plain, hooked);
}

// ---- Beside others

/// Does its work without the base's.
class Dial : public Object<Dial, Control> {
 public:
  bool send(const std::string&) override {
    history.push_back("dial");
    return true;
  }
};

/// Names its override for messages too, and has a method of its own that is named like somebody's hook.
class Knob : public Object<Knob, Control> {
 public:
  bool send(const std::string& action) override {
    history.push_back("knob");
    return Control::send(action);
  }
  bool ownHooked(const std::string&) {
    history.push_back("knob's own");
    return false;
  }
  static void exportMethods(MethodTable<Knob>& table) {
    table.add<&Knob::send>("send:");
    table.add<&Knob::ownHooked>("hooked_send:");
  }
};

/// A hook that keeps to its class's original, whatever a subclass calls its own methods.
bool carefulHook(Control& self, const std::string& action) {
  static const MethodCall<bool(std::string)> original(Control::cls(), sel("careful_send:"));
  history.push_back("careful hook");
  return original(self, action);
}

TEST_F(ExchangeTest, ReachesWhatOverridesItOnceAndOnlyThroughItsBase) {
  exchange();
  EXPECT_THAT(sent(make<Dial>()), ElementsAre("dial"));
  EXPECT_THAT(performed(make<Dial>()), ElementsAre("dial"));
  exchange();
  class_addMethod<&carefulHook>(Control::cls(), sel("careful_send:"));
  Method* const send = class_getInstanceMethod(Control::cls(), sel("send:"));
  Method* const careful = class_getInstanceMethod(Control::cls(), sel("careful_send:"));
  method_exchangeImplementations(send, careful);
  EXPECT_THAT(sent(make<Knob>()), ElementsAre("knob", "careful hook", "tap"));
  EXPECT_THAT(performed(make<Knob>()), ElementsAre("knob", "careful hook", "tap"));
  exchange();
  EXPECT_THAT(sent(make<Slider>()), ElementsAre("slider", "hook", "careful hook", "tap")) << "somebody else's on top";
  exchange();
  method_exchangeImplementations(send, careful);
  EXPECT_THAT(sent(make<Knob>()), ElementsAre("knob", "tap"));
}

class Lever : public Object<Lever, Knob> {
 public:
  static void exportMethods(MethodTable<Lever>& table) { table.add<&Lever::send>("send:"); }
};

bool leverHook(Lever& self, const std::string& action) {
  history.push_back("lever hook");
  return self.perform<bool>(sel("lever_send:"), action);
}

TEST_F(ExchangeTest, OfAClassesOwnExportedMethodIsReachedByMessages) {
  class_addMethod<&leverHook>(Lever::cls(), sel("lever_send:"));
  method_exchangeImplementations(class_getInstanceMethod(Lever::cls(), sel("send:")),
                                 class_getInstanceMethod(Lever::cls(), sel("lever_send:")));
  EXPECT_THAT(performed(make<Lever>()), ElementsAre("lever hook", "knob", "tap"));
  EXPECT_THAT(sent(make<Lever>()), ElementsAre("knob", "tap")) << "a call in C++ has gone past it to the override";
  EXPECT_THAT(performed(make<Knob>()), ElementsAre("knob", "tap")) << "the superclass's is another method";
}

/// Gives a class an implementation of its own that goes on to the base, and puts a hook over that one: the superclass
/// and its other subclasses are not touched. For the length of the process: a class cannot lose a method.
template <class Target>
struct OwnHook {
  static bool implementation(Target& self, const std::string& action) { return self.Control::send(action); }
  static bool hook(Target& self, const std::string& action) {
    history.push_back(Target::cls().name() + " hook");
    return self.template perform<bool>(sel("own_send:"), action);
  }
  static void install() {
    Class& cls = Target::cls();
    EXPECT_TRUE(class_addMethod<&implementation>(cls, sel("send:")));
    EXPECT_TRUE(class_addMethod<&hook>(cls, sel("own_send:")));
    method_exchangeImplementations(class_getInstanceMethod(cls, sel("send:")),
                                   class_getInstanceMethod(cls, sel("own_send:")));
  }
};

class Toggle : public Object<Toggle, Slider> {};
class Fader : public Object<Fader, Toggle> {};

TEST_F(ExchangeTest, OfAClassThatGotAnImplementationOfItsOwnLeavesTheSuperclassAlone) {
  OwnHook<Toggle>::install();
  const std::vector<Ref<Control>> hooked{make<Toggle>(), make<Fader>()};
  for (const Ref<Control>& control : hooked) {
    EXPECT_THAT(sent(control), ElementsAre("slider", "Toggle hook", "tap"));
    EXPECT_THAT(performed(control), ElementsAre("slider", "Toggle hook", "tap"));
  }
  EXPECT_THAT(sent(make<Slider>()), ElementsAre("slider", "tap"));
  EXPECT_THAT(performed(make<Control>()), ElementsAre("tap"));
  EXPECT_FALSE(class_getInstanceMethod(Control::cls(), sel("send:"))->isExchanged());
  exchange();  // one over the superclass's comes later, below it
  EXPECT_THAT(sent(hooked[0]), ElementsAre("slider", "Toggle hook", "hook", "tap"));
  OwnHook<Fader>::install();  // and one above both
  EXPECT_THAT(sent(hooked[1]), ElementsAre("slider", "Fader hook", "Toggle hook", "hook", "tap"));
  EXPECT_THAT(performed(hooked[1]), ElementsAre("slider", "Fader hook", "Toggle hook", "hook", "tap"));
}

/// What it does sends once more, to itself or to another.
class Echo : public Object<Echo, Control> {
 public:
  bool send(const std::string& action) override {
    const bool done = Control::send(action);
    if (const Ref<Control> next = std::exchange(next_, nullptr)) next->send("again");
    return done;
  }
  Ref<Control> next_;
};
class Repeater : public Object<Repeater, Echo> {};
class Handler : public Object<Handler, Control> {};

bool callsAgainFromInside(Control& self, const std::string& action) {
  history.push_back("below");
  if (action == "tap") self.send("inner");
  return self.perform<bool>(sel("below_send:"), action);
}

TEST_F(ExchangeTest, CountsACallFromInsideTheBaseAsACallOfItsOwn) {
  OwnHook<Repeater>::install();
  const auto repeater = make<Repeater>();
  repeater->next_ = repeater;
  EXPECT_THAT(sent(repeater), ElementsAre("Repeater hook", "tap", "Repeater hook", "again"));
  repeater->next_ = make<Repeater>();
  EXPECT_THAT(sent(repeater), ElementsAre("Repeater hook", "tap", "Repeater hook", "again"));

  OwnHook<Handler>::install();
  class_addMethod<&callsAgainFromInside>(Control::cls(), sel("below_send:"));
  Method* const send = class_getInstanceMethod(Control::cls(), sel("send:"));
  Method* const below = class_getInstanceMethod(Control::cls(), sel("below_send:"));
  method_exchangeImplementations(send, below);
  EXPECT_THAT(sent(make<Handler>()), ElementsAre("Handler hook", "below", "Handler hook", "below", "inner", "tap"));
  method_exchangeImplementations(send, below);
}

void otherSignature(Control&, std::int64_t) {}

TEST(ExchangeDeath, RefusesWhatDoesNotMatch) {
  class_addMethod<&otherSignature>(Control::cls(), sel("other:"));
  Method* const send = class_getInstanceMethod(Control::cls(), sel("send:"));
  Method* const other = class_getInstanceMethod(Control::cls(), sel("other:"));
  EXPECT_DEATH(method_exchangeImplementations(send, other),
               "send: of class Control is bool \\(string\\), other: is void \\(long\\)");
  EXPECT_DEATH(method_exchangeImplementations(send, nullptr), "fatal error: .* a method is missing");
  EXPECT_DEATH(MethodCall<bool()>(Control::cls(), sel("send:")),
               "send: of class Control is called as bool \\(\\) but is");
  EXPECT_DEATH(MethodCall<bool()>(Control::cls(), sel("missing")), "class Control does not answer missing");
}

/// An operation that gives an object, and an initialiser that make() has to reach.
class Recognizer : public Object<Recognizer, NSObject> {
 public:
  virtual void init(const Ref<NSObject>& target, SEL action) {
    Exchangeable<&Recognizer::init, &Recognizer::initAsUsual>::call(*this, target, action);
  }
  virtual Ref<Recognizer> partner(const Ref<Recognizer>& other) {
    return Exchangeable<&Recognizer::partner, &Recognizer::partnerAsUsual>::call(*this, other);
  }
  static void exportMethods(MethodTable<Recognizer>& table) {
    Exchangeable<&Recognizer::init, &Recognizer::initAsUsual>::addTo(table.owner(), "initWithTarget:action:");
    Exchangeable<&Recognizer::partner, &Recognizer::partnerAsUsual>::addTo(table.owner(), "partner:");
  }
  std::vector<std::string> actions;

 private:
  void initAsUsual(const Ref<NSObject>&, SEL action) { actions.push_back(action.name()); }
  Ref<Recognizer> partnerAsUsual(const Ref<Recognizer>& other) { return other; }
};

void hookedInit(Recognizer& self, const Ref<NSObject>& target, SEL action) {
  self.perform(sel("hooked_initWithTarget:action:"), target, action);
  self.actions.push_back("hooked");
}
Ref<Recognizer> hookedPartner(Recognizer& self, const Ref<Recognizer>&) {
  return self.perform<Ref<Recognizer>>(sel("hooked_partner:"), as<Recognizer>(self.shared_from_this()));
}

TEST(Exchange, ReachesTheInitialiserThatMakeCalls) {
  class_addMethod<&hookedInit>(Recognizer::cls(), sel("hooked_initWithTarget:action:"));
  Method* const init = class_getInstanceMethod(Recognizer::cls(), sel("initWithTarget:action:"));
  Method* const hooked = class_getInstanceMethod(Recognizer::cls(), sel("hooked_initWithTarget:action:"));
  method_exchangeImplementations(init, hooked);
  EXPECT_THAT(make<Recognizer>(Ref<NSObject>(), sel("onTap:"))->actions, ElementsAre("onTap:", "hooked"));
  method_exchangeImplementations(init, hooked);
  EXPECT_THAT(make<Recognizer>(Ref<NSObject>(), sel("onTap:"))->actions, ElementsAre("onTap:"));
}

TEST(Exchange, CarriesObjectsThroughExchangedOperations) {
  class_addMethod<&hookedPartner>(Recognizer::cls(), sel("hooked_partner:"));
  Method* const partner = class_getInstanceMethod(Recognizer::cls(), sel("partner:"));
  Method* const hooked = class_getInstanceMethod(Recognizer::cls(), sel("hooked_partner:"));
  const auto one = make<Recognizer>(Ref<NSObject>(), sel("a"));
  const auto other = make<Recognizer>(Ref<NSObject>(), sel("b"));
  EXPECT_EQ(one->partner(other), other);
  method_exchangeImplementations(partner, hooked);
  EXPECT_EQ(one->partner(other), one);
  EXPECT_EQ(one->partner(nullptr), one);
  method_exchangeImplementations(partner, hooked);
}

}  // namespace
}  // namespace platform
