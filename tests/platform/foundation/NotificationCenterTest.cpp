#include "platform/foundation/NotificationCenter.h"
#include "platform/runtime/Object.h"

namespace platform {
namespace {

using testing::ElementsAre;

class Listener : public Object<Listener, NSObject> {
 public:
  explicit Listener(std::vector<std::string>* log = nullptr, std::string name = "")
      : log_(log), name_(std::move(name)) {}
  void onChange() { log_->push_back(name_); }
  void onChangeOf(const Notification& notification) { log_->push_back(name_ + " " + notification.name()); }
  static void exportMethods(MethodTable<Listener>& table) {
    table.add<&Listener::onChange>("onChange");
    table.add<&Listener::onChangeOf>("onChangeOf:");
  }

 private:
  std::vector<std::string>* log_;
  std::string name_;
};

class NotificationCenterTest : public testing::Test {
 protected:
  Ref<Listener> listener(const std::string& name) { return make<Listener>(&log_, name); }
  NotificationCenter center_;
  std::vector<std::string> log_;
};

TEST_F(NotificationCenterTest, TellsObserversInTheOrderTheyAsked) {
  const Ref<Listener> a = listener("a");
  const Ref<Listener> b = listener("b");
  center_.addObserver(b, sel("onChangeOf:"), "Changed");
  center_.addObserver(a, sel("onChange"), "Changed");
  const auto token = center_.addObserver("Changed", nullptr, [this](const Notification&) { log_.push_back("block"); });
  center_.addObserver(a, sel("onChange"), "Other");
  center_.post("Changed");
  EXPECT_THAT(log_, ElementsAre("b Changed", "a", "block"));
}

TEST_F(NotificationCenterTest, CarriesTypedValues) {
  std::optional<double> duration;
  bool hasWrongType = true;
  const auto token = center_.addObserver("Shown", nullptr, [&](const Notification& notification) {
    if (const double* const value = notification.value<double>("duration")) duration = *value;
    hasWrongType = notification.value<int>("duration") || notification.value<double>("absent");
  });
  center_.post("Shown", nullptr, {{"duration", 0.25}});
  EXPECT_EQ(duration, 0.25);
  EXPECT_FALSE(hasWrongType);
}

TEST_F(NotificationCenterTest, TellsOnlyOfTheObjectThatWasAskedFor) {
  const Ref<Listener> observer = listener("observer");
  const Ref<Listener> field = listener("field");
  center_.addObserver(observer, sel("onChange"), "Changed", field);
  center_.post("Changed");
  center_.post("Changed", observer);
  EXPECT_THAT(log_, ElementsAre());
  center_.post("Changed", field);
  EXPECT_THAT(log_, ElementsAre("observer"));
}

TEST_F(NotificationCenterTest, ForgetsObserversThatDieOrAreRemoved) {
  Ref<Listener> dies = listener("dies");
  const Ref<Listener> goes = listener("goes");
  const Ref<Listener> stays = listener("stays");
  auto token = center_.addObserver("Changed", nullptr, [this](const Notification&) { log_.push_back("block"); });
  for (const Ref<Listener>& one : {dies, goes, stays}) center_.addObserver(one, sel("onChange"), "Changed");
  center_.addObserver(stays, sel("onChange"), "Other");
  dies = nullptr;
  token = nullptr;
  center_.removeObserver(goes);
  center_.removeObserver(stays, "Other");
  center_.post("Changed");
  center_.post("Other");
  EXPECT_THAT(log_, ElementsAre("stays"));
}

TEST_F(NotificationCenterTest, MayBeChangedWhileItTells) {
  const Ref<Listener> later = listener("later");
  Ref<NotificationCenter::Token> own;
  own = center_.addObserver("Changed", nullptr, [&, held = std::make_shared<int>(1)](const Notification&) {
    own = nullptr;  // ends its own observation, and must live on to its end
    center_.removeObserver(later);
    center_.addObserver(later, sel("onChangeOf:"), "Changed");
    log_.push_back("first " + std::to_string(*held));
  });
  center_.addObserver(later, sel("onChange"), "Changed");
  center_.post("Changed");
  EXPECT_THAT(log_, ElementsAre("first 1"));
  center_.post("Changed");
  EXPECT_THAT(log_, ElementsAre("first 1", "later Changed"));
}

}  // namespace
}  // namespace platform
