#include <thread>

#include "platform/runtime/Class.h"
#include "platform/runtime/Object.h"

namespace shop {

class CartScreen : public platform::Object<CartScreen, platform::NSObject> {
 public:
  class Row : public platform::Object<Row, platform::NSObject> {};
};

template <class T>
class Box : public platform::Object<Box<T>, platform::NSObject> {};

}  // namespace shop

namespace platform {
namespace {

class Hidden : public Object<Hidden, shop::CartScreen> {};

TEST(Class, IsNamedWithoutItsSurroundings) {
  class Local : public Object<Local, NSObject> {};
  EXPECT_EQ(NSStringFromClass(NSObject::cls()), "NSObject");
  EXPECT_EQ(NSStringFromClass(shop::CartScreen::cls()), "CartScreen");
  EXPECT_EQ(NSStringFromClass(shop::CartScreen::Row::cls()), "Row");
  EXPECT_EQ(NSStringFromClass(Hidden::cls()), "Hidden");
  EXPECT_EQ(NSStringFromClass(Local::cls()), "Local");
  EXPECT_EQ(NSStringFromClass(shop::Box<shop::CartScreen>::cls()), "Box<shop::CartScreen>");
}

TEST(Class, OfAnObjectIsThatOfItsMostDerivedType) {
  const Ref<NSObject> object = make<Hidden>();
  EXPECT_EQ(&object->classForCoder(), &Hidden::cls());
  EXPECT_EQ(Hidden::cls().superclass(), &shop::CartScreen::cls());
  EXPECT_TRUE(object->isKindOfClass(shop::CartScreen::cls()));
  EXPECT_TRUE(object->isKindOfClass(NSObject::cls()));
  EXPECT_FALSE(make<shop::CartScreen>()->isKindOfClass(Hidden::cls()));
  EXPECT_THAT(object->description(), testing::MatchesRegex("<Hidden: 0x[0-9a-f]+>"));
}

TEST(Selector, IsTheSameForTheSameSpelling) {
  EXPECT_TRUE(sel("buy:from:") == sel("buy:from:"));
  EXPECT_FALSE(sel("buy:from:") == sel("buy:"));
  EXPECT_EQ(NSStringFromSelector(sel("buy:from:")), "buy:from:");
  EXPECT_FALSE(SEL());
  EXPECT_EQ(NSStringFromSelector(SEL()), "");
  EXPECT_EQ(class_getInstanceMethod(NSObject::cls(), SEL()), nullptr);
}

class Base : public Object<Base, NSObject> {
 public:
  std::string who() { return "base"; }
  static void exportMethods(MethodTable<Base>& table) { table.add<&Base::who>("who"); }
};
class Middle : public Object<Middle, Base> {};
class Leaf : public Object<Leaf, Middle> {};

std::string whoAtTheBase(Base&) { return "base"; }
std::string whoInTheMiddle(Middle&) { return "middle"; }
std::string whoAtTheLeaf(Leaf&) { return "leaf"; }

TEST(Class, FindsMethodsAddedToASubclassAfterMessagesWereSent) {
  const Ref<Leaf> leaf = make<Leaf>();
  static int round = 0;  // methods stay added: every round asks for another one
  const SEL who = sel("who in round " + std::to_string(++round));
  EXPECT_TRUE(class_addMethod<&whoAtTheBase>(Base::cls(), who));
  EXPECT_EQ(leaf->perform<std::string>(who), "base");
  EXPECT_EQ(class_getInstanceMethod(Leaf::cls(), who), class_getInstanceMethod(Base::cls(), who));
  EXPECT_TRUE(class_addMethod<&whoInTheMiddle>(Middle::cls(), who));
  EXPECT_EQ(leaf->perform<std::string>(who), "middle");
  EXPECT_TRUE(class_addMethod<&whoAtTheLeaf>(Leaf::cls(), who));
  EXPECT_FALSE(class_addMethod<&whoAtTheLeaf>(Leaf::cls(), who)) << "a class has a method once";
  EXPECT_EQ(leaf->perform<std::string>(who), "leaf");
  EXPECT_EQ(make<Middle>()->perform<std::string>(who), "middle");
  EXPECT_EQ(make<Base>()->perform<std::string>(who), "base");
  EXPECT_EQ(Leaf::cls().ownMethod(who)->owner().name(), "Leaf");
}

void ripen(Base&) {}

TEST(Class, AnswersYesOnceASuperclassGainsWhatWasRememberedAsMissing) {
  const Ref<Leaf> leaf = make<Leaf>();
  const Ref<shop::CartScreen> stranger = make<shop::CartScreen>();
  // More questions than the memory has places, so that some share one.
  for (int i = 0; i < 200; ++i) EXPECT_FALSE(leaf->respondsToSelector(sel("unknown" + std::to_string(i) + ":")));
  static int round = 0;
  const SEL ripen = sel("ripen" + std::to_string(round++));
  EXPECT_FALSE(leaf->respondsToSelector(ripen));
  EXPECT_FALSE(stranger->respondsToSelector(ripen));
  EXPECT_TRUE(class_addMethod<&platform::ripen>(Base::cls(), ripen));
  EXPECT_TRUE(leaf->respondsToSelector(ripen));
  EXPECT_FALSE(stranger->respondsToSelector(ripen));
}

TEST(Class, AnswersManyThreadsAndMoreSelectorsThanItCaches) {
  constexpr int count = 500;
  static std::vector<SEL> selectors;
  for (int i = 0; i < count; ++i) {
    selectors.push_back(sel("method" + std::to_string(i)));
    Base::cls().addMethod(selectors.back(), Signature::of<void>(), nullptr);
  }
  std::vector<std::thread> threads;
  std::atomic<int> wrong{0};
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&] {
      for (int round = 0; round < 20; ++round) {
        for (const SEL selector : selectors) {
          const Method* const method = class_getInstanceMethod(Leaf::cls(), selector);
          if (!method || !(method->name() == selector)) ++wrong;
        }
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace platform
