#include "platform/runtime/Exchangeable.h"
#include "platform/uikit/touch/UILongPressGestureRecognizer.h"
#include "platform/uikit/touch/UIPanGestureRecognizer.h"
#include "platform/uikit/touch/UISwipeGestureRecognizer.h"
#include "platform/uikit/touch/UITapGestureRecognizer.h"
#include "tests/platform/uikit/touch/TouchLog.h"

namespace platform::test {

namespace {

class GestureTest : public TouchTest {
 protected:
  GestureTest() { box = addBox("box", {100, 100, 100, 100}); }
  Ref<TouchedView> box;
  Log taken_;  // what the views heard, where it does not matter
};

/// Answers what a recogniser's delegate may be asked.
class GestureDelegate : public Object<GestureDelegate, NSObject> {
 public:
  bool shouldBegin(const Ref<NSObject>&) { return begins; }
  bool shouldReceive(const Ref<NSObject>&, const Ref<NSObject>&) { return receives; }
  bool together(const Ref<NSObject>&, const Ref<NSObject>&) { return runsTogether; }
  static void exportMethods(MethodTable<GestureDelegate>& table) {
    table.add<&GestureDelegate::shouldBegin>("gestureRecognizerShouldBegin:")
        .add<&GestureDelegate::shouldReceive>("gestureRecognizer:shouldReceiveTouch:")
        .add<&GestureDelegate::together>("gestureRecognizer:shouldRecognizeSimultaneouslyWithGestureRecognizer:");
  }
  bool begins = true;
  bool receives = true;
  bool runsTogether = false;
};

}  // namespace

// What one finger does, and which of the recognisers on one view takes it for its gesture.
TEST_F(GestureTest, TellsStrokesApart) {
  struct Stroke {
    const char* name;
    std::function<void()> perform;
    Log expected;
  };
  const std::vector<Stroke> strokes = {
      {"a short touch", [this] { tapAt(150, 150); }, {"tap ended"}},
      {"a touch that trembles", [this] { down(150, 150), move(156, 157), up(156, 157); }, {"tap ended"}},
      {"a touch that strays", [this] { down(150, 150), up(150, 161); }, {}},
      {"a touch that ends outside the view", [this] { down(198, 150), up(203, 150); }, {"tap ended"}},
      {"a touch beside the view", [this] { tapAt(99, 99); }, {}},
      {"a resting finger",
       [this] { down(150, 150), advance(0.49), taken(), advance(0.02), up(150, 150); },
       {"press began", "press ended"}},
      {"a slow drag",
       [this] {
         down(150, 150), slide({150, 150}, {150, 179}, 0.03), up(150, 179);
       },
       {"pan began", "pan changed", "pan ended"}},
      {"a drag after a rest",
       [this] {
         down(150, 150), advance(0.6), slide({150, 150}, {180, 150}, 0.01), up(180, 150);
       },
       {"press began", "press changed", "press ended"}},
  };
  watch<UITapGestureRecognizer>("tap", box);
  watch<UILongPressGestureRecognizer>("press", box);
  watch<UIPanGestureRecognizer>("pan", box);
  for (const Stroke& stroke : strokes) {
    SCOPED_TRACE(stroke.name);
    log.clear();
    stroke.perform();
    advance(1);
    std::erase_if(log, [](const std::string& line) { return line.starts_with("box"); });
    EXPECT_EQ(log, stroke.expected);
  }
}

TEST_F(GestureTest, TakesAQuickStraightStrokeForASwipeInItsDirection) {
  struct Stroke {
    CGPoint to;
    double seconds;
    Log expected;
  };
  using Direction = UISwipeGestureRecognizerDirection;
  watch<UISwipeGestureRecognizer>("across", box)->setDirection(Direction::left | Direction::right);
  watch<UISwipeGestureRecognizer>("up", box)->setDirection(Direction::up);
  box->log = &taken_;
  const std::vector<Stroke> strokes = {{{210, 155}, 0.2, {"across ended"}},
                                       {{90, 145}, 0.2, {"across ended"}},
                                       {{150, 80}, 0.2, {"up ended"}},
                                       {{150, 220}, 0.2, {}},
                                       {{195, 150}, 0.2, {}},
                                       {{210, 195}, 0.2, {}},
                                       {{210, 150}, 0.9, {}}};
  for (const Stroke& stroke : strokes) {
    SCOPED_TRACE(testing::Message() << "to " << stroke.to.x << "," << stroke.to.y << " in " << stroke.seconds);
    down(150, 150);
    slide({150, 150}, stroke.to, stroke.seconds);
    up(stroke.to.x, stroke.to.y);
    EXPECT_EQ(taken(), stroke.expected);
    advance(1);
  }
}

TEST_F(GestureTest, CountsTaps) {
  box->log = &taken_;
  const auto single = watch<UITapGestureRecognizer>("single", box);
  const auto twice = watch<UITapGestureRecognizer>("double", box);
  twice->setNumberOfTapsRequired(2);

  tapAt(150, 150);
  EXPECT_THAT(taken(), ElementsAre("single ended")) << "nothing makes it wait";
  advance(0.1);
  tapAt(152, 150);
  EXPECT_THAT(taken(), ElementsAre("double ended")) << "more taps win over fewer";
  advance(1);

  single->requireGestureRecognizerToFail(twice);
  tapAt(150, 150);
  advance(0.34);
  EXPECT_THAT(log, IsEmpty()) << "there could be a second tap";
  advance(0.02);
  EXPECT_THAT(taken(), ElementsAre("single ended"));

  tapAt(150, 150);
  advance(0.2);
  tapAt(150, 150);
  advance(1);
  EXPECT_THAT(taken(), ElementsAre("double ended"));

  tapAt(105, 105);
  advance(0.1);
  tapAt(195, 195);
  advance(1);
  EXPECT_THAT(taken(), ElementsAre("single ended")) << "two taps far apart are no double tap";
}

TEST_F(GestureTest, WantsAsManyFingersAsItWasTold) {
  box->log = &taken_;
  watch<UITapGestureRecognizer>("two", box)->setNumberOfTouchesRequired(2);
  const auto pan = watch<UIPanGestureRecognizer>("pan", box);
  pan->setMaximumNumberOfTouches(1);
  tapAt(150, 150);
  EXPECT_THAT(taken(), IsEmpty());
  down(140, 150, 1);
  down(160, 150, 2);
  up(140, 150, 1);
  up(160, 150, 2);
  EXPECT_THAT(taken(), ElementsAre("two ended"));
  down(140, 150, 1);
  down(160, 150, 2);
  slide({140, 150}, {140, 190}, 0.05);
  up(140, 190, 1);
  up(160, 150, 2);
  EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(GestureTest, EndsWhenTooFewFingersAreLeft) {
  box->log = &taken_;
  watch<UIPanGestureRecognizer>("pan", box)->setMinimumNumberOfTouches(2);
  down(140, 150, 1);
  down(160, 150, 2);
  slide({140, 150}, {140, 190}, 0.05);
  taken();
  up(160, 150, 2);
  EXPECT_THAT(taken(), ElementsAre("pan ended"));
  slide({140, 190}, {140, 150}, 0.05);
  up(140, 150, 1);
  EXPECT_THAT(taken(), IsEmpty());

  watch<UILongPressGestureRecognizer>("press", box);
  down(140, 150, 1);
  advance(0.6);
  down(160, 150, 2);
  up(160, 150, 2);
  EXPECT_THAT(taken(), ElementsAre("press began")) << "the finger that presses is still there";
  up(140, 150, 1);
  EXPECT_THAT(taken(), ElementsAre("press ended"));
}

TEST_F(GestureTest, MeasuresAPanFromWhereItBegan) {
  const auto pan = watch<UIPanGestureRecognizer>("pan", box);
  box->setTransform(CGAffineTransform::scale(2, 2));
  down(150, 150);
  slide({150, 150}, {150, 160}, 0.1);
  EXPECT_EQ(pan->translationInView(nullptr), (CGPoint{0, 0}));
  slide({150, 160}, {150, 190}, 0.3);
  EXPECT_EQ(pan->translationInView(nullptr), (CGPoint{0, 30}));
  EXPECT_EQ(pan->translationInView(box.get()), (CGPoint{0, 15})) << "the view shows everything twice as large";
  EXPECT_NEAR(pan->velocityInView(nullptr).y, 100, 1);
  EXPECT_EQ(pan->locationInView(content().get()), (CGPoint{150, 190}));

  pan->setTranslation({0, 0}, nullptr);
  slide({150, 190}, {140, 190}, 0.1);
  EXPECT_EQ(pan->translationInView(nullptr), (CGPoint{-10, 0}));
  down(200, 100, 2);
  EXPECT_EQ(pan->translationInView(nullptr), (CGPoint{-10, 0})) << "a second finger moves nothing by coming";
  up(200, 100, 2);
  EXPECT_EQ(pan->state(), UIGestureRecognizerState::changed);

  advance(0.2);
  up(140, 190);
  EXPECT_EQ(pan->velocityInView(nullptr), (CGPoint{0, 0})) << "the finger rested before it lifted";
}

TEST_F(GestureTest, GivesTheInnerViewPrecedence) {
  const auto inner = addBox("inner", {10, 10, 40, 40}, box);
  const auto outerTap = watch<UITapGestureRecognizer>("outer", box);
  const auto innerTap = watch<UITapGestureRecognizer>("inner tap", inner);
  inner->log = &taken_;
  tapAt(120, 120);
  EXPECT_THAT(taken(), ElementsAre("inner tap ended"));

  const auto delegate = make<GestureDelegate>();
  innerTap->setDelegate(delegate);
  delegate->runsTogether = true;
  tapAt(120, 120);
  EXPECT_THAT(taken(), ElementsAre("inner tap ended", "outer ended"));
  delegate->begins = false;
  tapAt(120, 120);
  EXPECT_THAT(taken(), ElementsAre("outer ended"));
  delegate->begins = true;
  delegate->receives = false;
  tapAt(120, 120);
  EXPECT_THAT(taken(), ElementsAre("outer ended"));
  outerTap->setEnabled(false);
  tapAt(120, 120);
  EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(GestureTest, KeepsTargetsWeaklyAndOnce) {
  const auto tap = watch<UITapGestureRecognizer>("tap", box);
  box->log = &taken_;
  tap->addTarget(targets[0], sel("fired:"));
  tap->addTarget(targets[0], sel("firedAlone"));
  tapAt(150, 150);
  EXPECT_THAT(taken(), ElementsAre("tap ended", "tap alone"));
  tap->removeTarget(targets[0], sel("fired:"));
  tapAt(150, 150);
  EXPECT_THAT(taken(), ElementsAre("tap alone"));
  targets.clear();
  tapAt(150, 150);
  EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(GestureTest, LetsAnActionTakeTheRecogniserAndTheViewAway) {
  auto tap = watch<UITapGestureRecognizer>("tap", box);
  const auto other = watch<UILongPressGestureRecognizer>("press", box);
  const Weak<UIView> watched = box;
  targets[0]->onFired = [&] {
    box->removeGestureRecognizer(tap);
    tap.reset();
    box->removeFromSuperview();
    box.reset();
  };
  tapAt(150, 150);
  EXPECT_THAT(taken(), ElementsAre("box began 50,50", "box cancelled 50,50", "tap ended"));
  EXPECT_TRUE(watched.expired());
  EXPECT_EQ(other->view(), nullptr);
  tapAt(150, 150);
  EXPECT_THAT(taken(), IsEmpty());
}

TEST_F(GestureTest, CancelsWhatIsUnderWayWhenItIsSwitchedOff) {
  box->log = &taken_;
  const auto pan = watch<UIPanGestureRecognizer>("pan", box);
  down(150, 150);
  slide({150, 150}, {190, 150}, 0.02);
  taken();
  pan->setEnabled(false);
  EXPECT_THAT(taken(), ElementsAre("pan cancelled"));
  move(195, 150);
  up(195, 150);
  EXPECT_THAT(taken(), IsEmpty());
  pan->setEnabled(true);
  down(150, 150);
  slide({150, 150}, {190, 150}, 0.02);
  EXPECT_THAT(taken(), ElementsAre("pan began", "pan changed"));
  box->removeFromSuperview();
  EXPECT_THAT(taken(), ElementsAre("pan cancelled")) << "its view left the window";
}

namespace {

/// What a library would hook in.
void replacedInit(UIGestureRecognizer& self, Ref<NSObject> target, SEL action) {
  self.perform(sel("replacedInit:action:"), target, action);  // the platform's own, once exchanged
  self.addTarget(target, sel("firedAlone"));
}

}  // namespace

TEST_F(GestureTest, MakesEveryRecogniserThroughItsExchangeableInitialiser) {
  class_addMethod<&replacedInit>(UIGestureRecognizer::cls(), sel("replacedInit:action:"));
  Method* const original = class_getInstanceMethod(UIGestureRecognizer::cls(), sel("initWithTarget:action:"));
  Method* const replacement = class_getInstanceMethod(UIGestureRecognizer::cls(), sel("replacedInit:action:"));
  ASSERT_TRUE(original && replacement);
  method_exchangeImplementations(original, replacement);
  watch<UITapGestureRecognizer>("tap", box);
  method_exchangeImplementations(original, replacement);
  box->log = &taken_;
  tapAt(150, 150);
  EXPECT_THAT(taken(), ElementsAre("tap ended", "tap alone"));
}

}  // namespace platform::test
