#include "platform/runtime/Object.h"

namespace platform {
namespace {

class Drink : public Object<Drink, NSObject> {};
class Tea : public Object<Tea, Drink> {};

class Shop : public Object<Shop, NSObject> {
 public:
  std::int64_t priceOf(const Ref<Tea>& tea, bool isLarge) { return tea ? (isLarge ? 5 : 3) : 0; }
  Ref<Drink> serve() const { return served_; }
  void rename(std::string name) { name_ = std::move(name); }
  virtual std::string name() const { return name_; }
  double halve(double amount) noexcept { return amount / 2; }
  static void exportMethods(MethodTable<Shop>& table) {
    table.add<&Shop::priceOf>("priceOf:isLarge:");
    table.add<&Shop::serve>("serve");
    table.add<&Shop::rename>("rename:");
    table.add<&Shop::name>("name");
    table.add<&Shop::halve>("halve:");
  }
  Ref<Drink> served_;

 private:
  std::string name_ = "shop";
};

class Kiosk : public Object<Kiosk, Shop> {
 public:
  std::string name() const override { return "kiosk " + Shop::name(); }
};

TEST(Perform, PassesArgumentsAndResultsOfEveryKind) {
  const Ref<Shop> shop = make<Shop>();
  EXPECT_EQ(shop->perform<std::int64_t>(sel("priceOf:isLarge:"), make<Tea>(), true), 5);
  EXPECT_EQ(shop->perform<std::int64_t>(sel("priceOf:isLarge:"), Ref<NSObject>(), true), 0);
  EXPECT_EQ(shop->perform<Ref<NSObject>>(sel("serve")), nullptr);
  shop->served_ = make<Tea>();
  EXPECT_EQ(shop->perform<Ref<Tea>>(sel("serve")), shop->served_);
  shop->perform(sel("rename:"), "corner shop");
  EXPECT_EQ(shop->perform<std::string>(sel("name")), "corner shop");
  EXPECT_EQ(shop->perform<double>(sel("halve:"), 5.0), 2.5);
}

TEST(Perform, ReachesTheOverrideOfAVirtualMember) {
  const Ref<NSObject> kiosk = make<Kiosk>();
  EXPECT_TRUE(kiosk->respondsToSelector(sel("name")));
  EXPECT_FALSE(kiosk->respondsToSelector(sel("close")));
  EXPECT_EQ(kiosk->perform<std::string>(sel("name")), "kiosk shop");
}

/// Stands in front of another object, as a delegate proxy does.
class Proxy : public Object<Proxy, NSObject> {
 public:
  explicit Proxy(Ref<NSObject> original = nullptr) : original_(std::move(original)) {}
  bool respondsToSelector(SEL selector) const override {
    return Super::respondsToSelector(selector) || (original_ && original_->respondsToSelector(selector));
  }
  Ref<NSObject> forwardingTargetForSelector(SEL selector) const override {
    return original_ && original_->respondsToSelector(selector) ? original_ : nullptr;
  }
  std::string own() { return "proxy"; }
  static void exportMethods(MethodTable<Proxy>& table) { table.add<&Proxy::own>("own"); }

  Ref<NSObject> original_;
};

TEST(Forwarding, HandsOnWhatAProxyDoesNotAnswerItself) {
  const Ref<Proxy> inner = make<Proxy>(make<Kiosk>());
  const Ref<Proxy> outer = make<Proxy>(inner);
  EXPECT_TRUE(outer->respondsToSelector(sel("name")));
  EXPECT_EQ(outer->perform<std::string>(sel("name")), "kiosk shop");
  EXPECT_EQ(outer->perform<std::string>(sel("own")), "proxy");
  EXPECT_EQ(outer->perform<std::int64_t>(sel("priceOf:isLarge:"), make<Tea>(), false), 3);
  EXPECT_FALSE(outer->respondsToSelector(sel("close")));
}

/// Forwards to whatever it is told to, even in a ring.
class Careless : public Object<Careless, NSObject> {
 public:
  Ref<NSObject> forwardingTargetForSelector(SEL) const override { return next.lock(); }
  Weak<NSObject> next;
};

TEST(PerformDeath, NamesWhatNobodyAnswers) {
  const Ref<Careless> a = make<Careless>();
  const Ref<Careless> b = make<Careless>();
  a->next = b;
  b->next = a;
  EXPECT_DEATH(a->perform(sel("close")), "fatal error: class Careless does not answer close");
  a->next = a;
  EXPECT_DEATH(a->perform(sel("close")), "fatal error: class Careless does not answer close");
  EXPECT_DEATH(make<Proxy>(make<Shop>())->perform(sel("close")), "fatal error: class Proxy does not answer close");
}

TEST(PerformDeath, NamesSelectorClassAndBothSignaturesWhenTheyDiffer) {
  const Ref<Shop> shop = make<Shop>();
  EXPECT_DEATH(shop->perform<std::int64_t>(sel("priceOf:isLarge:"), make<Tea>(), 1),
               "fatal error: message priceOf:isLarge: to class Shop was sent as long \\(Ref<NSObject>, int\\) but the "
               "method is long \\(Ref<NSObject>, bool\\)");
  EXPECT_DEATH(shop->perform(sel("name")),
               "message name to class Shop was sent as void \\(\\) but the method is string \\(\\)");
  EXPECT_DEATH(shop->perform<int>(sel("halve:"), 5.0F),
               "was sent as int \\(float\\) but the method is double \\(double\\)");
  EXPECT_DEATH(make<Proxy>(shop)->perform(sel("name")), "message name to class Shop was sent as void");
}

TEST(PerformDeath, NamesTheClassesWhenAnObjectIsOfTheWrongOne) {
  const Ref<Shop> shop = make<Shop>();
  EXPECT_DEATH(shop->perform<std::int64_t>(sel("priceOf:isLarge:"), make<Drink>(), true),
               "fatal error: an object of class Drink was passed to a method of its class which takes Tea");
  shop->served_ = make<Drink>();
  EXPECT_DEATH(shop->perform<Ref<Tea>>(sel("serve")),
               "fatal error: an object of class Drink was passed to a sender that expects which takes Tea");
}

}  // namespace
}  // namespace platform
