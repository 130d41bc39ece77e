#include "platform/runtime/FatalError.h"
#include "platform/runtime/NSObject.h"
#include "platform/runtime/Object.h"

namespace platform {
namespace {

class Thing : public Object<Thing, NSObject> {
 public:
  void initWithFriend(const Ref<Thing>& other) { friend_ = other; }
  Ref<Thing> myself() { return self(); }
  Weak<Thing> friend_;
};

char key;
char otherKey;

TEST(AssociatedObjects, LiveAsLongAsTheirOwnerOrAsLongAsOthersHoldThem) {
  Ref<Thing> owner = make<Thing>();
  Ref<Thing> kept = make<Thing>();
  Ref<Thing> seen = make<Thing>();
  const Weak<Thing> keptLater = kept;
  owner->setAssociatedObject(&key, kept, AssociationPolicy::retain);
  owner->setAssociatedObject(&otherKey, seen, AssociationPolicy::assignWeak);
  kept = nullptr;
  EXPECT_EQ(owner->associatedObject(&key), keptLater.lock());
  EXPECT_FALSE(keptLater.expired());
  EXPECT_EQ(owner->associatedObject(&otherKey), seen);
  seen = nullptr;
  EXPECT_EQ(owner->associatedObject(&otherKey), nullptr);
  owner = nullptr;
  EXPECT_TRUE(keptLater.expired());
}

TEST(AssociatedObjects, AreReplacedAndRemovedByKey) {
  const Ref<Thing> owner = make<Thing>();
  const Ref<Thing> first = make<Thing>();
  const Ref<Thing> second = make<Thing>();
  EXPECT_EQ(owner->associatedObject(&key), nullptr);
  owner->setAssociatedObject(&key, nullptr, AssociationPolicy::retain);
  owner->setAssociatedObject(&key, first, AssociationPolicy::retain);
  owner->setAssociatedObject(&otherKey, first, AssociationPolicy::retain);
  owner->setAssociatedObject(&key, second, AssociationPolicy::assignWeak);
  EXPECT_EQ(owner->associatedObject(&key), second);
  EXPECT_EQ(first.use_count(), 2) << "the first is held under the other key only";
  owner->setAssociatedObject(&otherKey, nullptr, AssociationPolicy::retain);
  EXPECT_EQ(owner->associatedObject(&otherKey), nullptr);
  EXPECT_EQ(first.use_count(), 1);
}

TEST(AssociatedValues, AreReadAsTheTypeTheyWereGiven) {
  const Ref<Thing> owner = make<Thing>();
  EXPECT_EQ(owner->associatedValue<SEL>(&key), std::nullopt);
  owner->setAssociatedValue(&key, sel("checkout:"));
  owner->setAssociatedValue(&otherKey, std::int64_t{7});
  EXPECT_EQ(owner->associatedValue<SEL>(&key), sel("checkout:"));
  EXPECT_EQ(owner->associatedValue<std::int64_t>(&otherKey), 7);
  EXPECT_EQ(owner->associatedValue<bool>(&otherKey), std::nullopt);
  owner->setAssociatedValue(&key, SEL());
  EXPECT_EQ(owner->associatedValue<SEL>(&key), SEL()) << "a selector that names nothing is a value too";
  owner->setAssociatedObject(&key, make<Thing>(), AssociationPolicy::retain);
  EXPECT_EQ(owner->associatedValue<SEL>(&key), std::nullopt);
  owner->setAssociatedObject(&otherKey, nullptr, AssociationPolicy::retain);
  EXPECT_EQ(owner->associatedValue<std::int64_t>(&otherKey), std::nullopt);
}

TEST(AssociatedValues, MayReferToAnObjectWithoutHoldingItAndEndWithTheirOwner) {
  Ref<Thing> owner = make<Thing>();
  Ref<Thing> target = make<Thing>();
  const auto counted = std::make_shared<int>(3);
  owner->setAssociatedValue(&key, Weak<Thing>(target));
  owner->setAssociatedValue(&otherKey, counted);
  EXPECT_EQ(owner->associatedValue<Weak<Thing>>(&key)->lock(), target);
  target = nullptr;
  EXPECT_TRUE(owner->associatedValue<Weak<Thing>>(&key)->expired());
  owner = nullptr;
  EXPECT_EQ(counted.use_count(), 1);
}

/// Looks at its owner while it dies with it.
class Observer : public Object<Observer, NSObject> {
 public:
  ~Observer() override {
    if (owner_) isGone = owner_->associatedObject(&key) == nullptr;
  }
  static inline bool isGone = false;
  NSObject* owner_ = nullptr;
};

TEST(AssociatedObjects, MayBeReplacedByOneWhoseOldValueLooksAtTheOwnerWhileItDies) {
  const Ref<Thing> owner = make<Thing>();
  Ref<Observer> observer = make<Observer>();
  observer->owner_ = owner.get();
  owner->setAssociatedObject(&key, std::move(observer), AssociationPolicy::retain);
  owner->setAssociatedObject(&key, nullptr, AssociationPolicy::retain);
  EXPECT_TRUE(Observer::isGone);
}

/// Tells of which class it is while it is made, and may have something attached to it by then.
class Early : public Object<Early, NSObject> {
 public:
  explicit Early(bool attaches) : knownBefore_(knownClass().name()) {
    if (attaches) setAssociatedObject(&key, make<Thing>(), AssociationPolicy::retain);
  }
  static void exportMethods(MethodTable<Early>& table) { table.add<&Early::knownBefore>("knownBefore"); }
  virtual std::string knownBefore() const { return knownBefore_; }

 private:
  const std::string knownBefore_;
};

class Late : public Object<Late, Early> {
 public:
  using Object::Object;
  static void exportMethods(MethodTable<Late>& table) { table.add<&Late::isLate>("isLate"); }
  bool isLate() const { return true; }
};

TEST(Make, TellsTheObjectItsClassWhateverIsAttachedToIt) {
  for (const bool attaches : {false, true}) {
    SCOPED_TRACE(attaches);
    for (const Ref<Late>& late : {make<Late>(attaches), std::make_shared<Late>(attaches)}) {
      const Ref<NSObject> attached = late->associatedObject(&key);
      EXPECT_EQ(attached != nullptr, attaches);
      for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(&late->knownClass(), &Late::cls());
        EXPECT_TRUE(late->respondsToSelector(sel("isLate")));
        EXPECT_TRUE(late->perform<bool>(sel("isLate")));
        EXPECT_EQ(late->perform<std::string>(sel("knownBefore")), "Early");
        late->setAssociatedObject(&otherKey, late, AssociationPolicy::assignWeak);
      }
      EXPECT_EQ(late->associatedObject(&key), attached);
    }
  }
}

TEST(Make, GivesAnObjectThatKnowsItself) {
  const Ref<Thing> thing = make<Thing>();
  EXPECT_EQ(thing->myself(), thing);
  EXPECT_EQ(as<Thing>(Ref<NSObject>(thing)), thing);
  EXPECT_EQ(as<Observer>(Ref<NSObject>(thing)), nullptr);
}

TEST(FatalErrorDeath, IsOneLine) {
  EXPECT_DEATH(fatalError("first\nsecond\r\nthird"), "^fatal error: first second  third\n$");
}

}  // namespace
}  // namespace platform
