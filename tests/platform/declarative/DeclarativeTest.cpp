#include "platform/declarative/UIHostingController.h"
#include "platform/declarative/View.h"
#include "platform/uikit/controllers/UINavigationController.h"
#include "platform/uikit/controls/UIButton.h"
#include "platform/uikit/controls/UISwitch.h"
#include "platform/uikit/lists/UIScrollView.h"
#include "platform/uikit/views/UILabel.h"
#include "tests/support/AppFixture.h"

namespace platform::declarative {

namespace {

View block(const std::string& name, double width, double height) {
  return Color(UIColor::systemRed()).frame(width, height).accessibilityIdentifier(name);
}

/// A hosting controller fills the screen of 390 by 844 points with a safe area of 47 above and 34 below.
class DeclarativeTest : public test::AppFixture {
 protected:
  void host(const std::function<View()>& body) {
    controller_ = make<UIHostingController>(body);
    show(controller_);
    advance(0.1);
  }
  void update() {
    controller_->setNeedsUpdate();
    advance(0.1);
  }
  CGRect frameOf(const std::string& identifier) {
    const auto view = find(identifier);
    return view ? view->convertRect(view->bounds(), nullptr) : CGRect{};
  }
  CGSize sizeOf(const std::string& identifier) { return frameOf(identifier).size; }
  /// The first label that reads so.
  Ref<UILabel> label(const std::string& text, const Ref<UIView>& in = nullptr) {
    for (const Ref<UIView>& view : (in ? in : controller_->view())->subviews()) {
      const auto candidate = as<UILabel>(view);
      if (candidate && candidate->text() == text) return candidate;
      if (auto found = label(text, view)) return found;
    }
    return nullptr;
  }

  Ref<UIHostingController> controller_;
  std::vector<std::string> told_;  ///< also while the screen is put away
};

TEST_F(DeclarativeTest, StacksPutTheirChildrenInARowAndCentreThemselves) {
  host([] {
    return VStack({block("a", 100, 40), HStack({block("b", 50, 20), block("c", 30, 60)}, 10)}, 20,
                  HorizontalAlignment::leading);
  });
  // 120 high and 100 wide, in the middle of the safe area: 390 by 763 from 47 on.
  EXPECT_EQ(frameOf("a"), (CGRect{145, 368.5, 100, 40}));
  EXPECT_EQ(frameOf("b"), (CGRect{145, 448.5, 50, 20}));
  EXPECT_EQ(frameOf("c"), (CGRect{205, 428.5, 30, 60}));
}

TEST_F(DeclarativeTest, ModifiersMakeRoomGiveSizeAndAlign) {
  host([] {
    return VStack({block("padded", 20, 20).padding(UIEdgeInsets{1, 2, 3, 4}).accessibilityIdentifier("room"),
                   block("small", 10, 10)
                       .frame(100, 50, {HorizontalAlignment::trailing, VerticalAlignment::bottom})
                       .accessibilityIdentifier("box"),
                   block("wide", 10, 10)
                       .expand(true, false, {HorizontalAlignment::leading, VerticalAlignment::center})
                       .accessibilityIdentifier("row")},
                  0);
  });
  EXPECT_EQ(sizeOf("room"), (CGSize{26, 24}));
  EXPECT_EQ(frameOf("padded").minX() - frameOf("room").minX(), 2);
  EXPECT_EQ(sizeOf("box"), (CGSize{100, 50}));
  EXPECT_EQ(frameOf("small").maxX(), frameOf("box").maxX());
  EXPECT_EQ(frameOf("small").maxY(), frameOf("box").maxY());
  EXPECT_EQ(sizeOf("row").width, 390);
  EXPECT_EQ(frameOf("wide").minX(), 0);
}

TEST_F(DeclarativeTest, SpacersTakeWhatOthersLeaveAndTextKeepsItsLine) {
  host([] {
    return HStack({Text("A line of some length"), Spacer(), block("end", 51, 31)}).accessibilityIdentifier("row");
  });
  EXPECT_EQ(frameOf("end").maxX(), 390);
  EXPECT_LT(label("A line of some length")->bounds().size.height, 30) << "it did not have to wrap";
  host([] { return HStack({Text("mild"), Text("medium"), Text("strong")}, 8); });
  for (const char* word : {"mild", "medium", "strong"}) {
    EXPECT_LT(label(word)->bounds().size.height, 30) << word;
  }
}

TEST_F(DeclarativeTest, ALongTextWrapsInTheRoomItIsGiven) {
  host([] { return Text("One two three four five six seven eight nine ten").frame(80, std::nullopt); });
  const CGSize size = label("One two three four five six seven eight nine ten")->bounds().size;
  EXPECT_LE(size.width, 80);
  EXPECT_GT(size.height, 100);
}

TEST_F(DeclarativeTest, BackgroundsAreAsLargeAsTheirContentAndLieBehind) {
  host([] {
    return block("content", 80, 40)
        .background(Color(UIColor::systemGreen()).accessibilityIdentifier("behind"))
        .overlay(Color(UIColor::systemBlue()).accessibilityIdentifier("above"));
  });
  EXPECT_EQ(frameOf("behind"), frameOf("content"));
  EXPECT_EQ(frameOf("above"), frameOf("content"));
  std::vector<std::string> order;
  for (const Ref<UIView>& view : controller_->view()->subviews()) {
    order.push_back(view->accessibilityIdentifier().value_or(""));
  }
  EXPECT_EQ(order, (std::vector<std::string>{"behind", "content", "above"}));
}

TEST_F(DeclarativeTest, FontsAndColoursReachEverythingThatHasNoneOfItsOwn) {
  host([] {
    return VStack({Text("inherits"), Text("own").foregroundColor(UIColor::systemBlue()), Button("press", nullptr)})
        .font(UIFont::systemFont(31))
        .foregroundColor(UIColor::systemRed());
  });
  EXPECT_EQ(label("inherits")->textColor(), UIColor::systemRed());
  EXPECT_EQ(label("inherits")->font().pointSize(), 31);
  EXPECT_EQ(label("own")->textColor(), UIColor::systemBlue());
  EXPECT_EQ(label("own")->font().pointSize(), 31);
  EXPECT_EQ(label("press")->textColor(), UIColor::systemRed());
}

TEST_F(DeclarativeTest, AnUpdateKeepsTheViewsThatStayAndReplacesOthers) {
  std::string word = "one";
  bool shows = true;
  host([&] {
    std::vector<View> children = {Text(word).accessibilityIdentifier("word")};
    children.push_back(shows ? Text("optional") : Color(UIColor::systemRed()));
    return VStack(std::move(children));
  });
  const auto kept = label("one");
  word = "two";
  shows = false;
  update();
  EXPECT_EQ(label("two"), kept);
  EXPECT_EQ(label("optional"), nullptr);
}

TEST_F(DeclarativeTest, ControlsAndTapsRunTheirActions) {
  int taps = 0;
  bool isOn = false;
  std::vector<bool> heard;
  host([&] {
    return VStack({Text("tap me").padding(10).accessibilityIdentifier("target").onTapGesture([&] { ++taps; }),
                   Button("press", [&] { taps += 10; }).accessibilityIdentifier("button"),
                   Toggle(isOn, [&](bool on) { heard.push_back(isOn = on); }).accessibilityIdentifier("toggle")});
  });
  tap("target");
  tap("button");
  tap("toggle");
  EXPECT_EQ(taps, 11);
  EXPECT_EQ(heard, std::vector{true});
  isOn = false;
  update();
  const auto toggle = as<UISwitch>(find("toggle")->subviews().empty() ? find("toggle") : find("toggle")->subviews()[0]);
  ASSERT_NE(toggle, nullptr);
  EXPECT_FALSE(toggle->isOn()) << "the description decides";
}

TEST_F(DeclarativeTest, AGeometryReaderKnowsWhereItIsAlsoWhenScrolled) {
  std::vector<CGRect> seen;
  host([&] {
    return ScrollView(VStack({block("top", 390, 300), GeometryReader([&](const GeometryProxy& proxy) {
                                                        seen.push_back(proxy.frame(CoordinateSpace::global));
                                                        return Color(UIColor::systemBlue());
                                                      }).frame(200, 100),
                              block("bottom", 390, 1500)},
                             0));
  });
  ASSERT_FALSE(seen.empty());
  EXPECT_EQ(seen.back(), (CGRect{95, 347, 200, 100}));
  Ref<UIScrollView> scroll;
  for (const Ref<UIView>& view : controller_->view()->subviews()) {
    if (auto found = as<UIScrollView>(view)) scroll = found;
  }
  ASSERT_NE(scroll, nullptr);
  scroll->setContentOffset({0, 60}, false);
  advance(0.1);
  EXPECT_EQ(seen.back().origin.y, 287);
}

TEST_F(DeclarativeTest, AGeometryReaderKnowsItsPlaceFromTheFirstTimeOn) {
  std::vector<CGRect> frames;
  const View reader = GeometryReader([&](const GeometryProxy& proxy) {
                        frames.push_back(proxy.frame(CoordinateSpace::global));
                        return Color(UIColor::clear());
                      }).frame(50, 40);
  host([&] { return VStack({block("above", 390, 100), reader.cornerRadius(8), Spacer()}, 0); });
  ASSERT_FALSE(frames.empty());
  EXPECT_EQ(frames.front(), (CGRect{170, 147, 50, 40}));
}

TEST_F(DeclarativeTest, ScrolledContentLosesWhatIsDescribedNoMore) {
  int rows = 5;
  host([&] {
    std::vector<View> all;
    for (int i = 0; i < rows; ++i) all.push_back(block("row" + std::to_string(i), 100, 40));
    return ScrollView(VStack(all, 0));
  });
  EXPECT_EQ(find("row4")->superview()->subviews().size(), 5u);
  rows = 3;
  update();
  EXPECT_EQ(find("row0")->superview()->subviews().size(), 3u);
}

TEST_F(DeclarativeTest, AppearanceIsToldOnceEachTimeItChanges) {
  const auto body = [&] {
    return Text("x").onAppear([this] { told_.push_back("+"); }).onDisappear([this] { told_.push_back("-"); });
  };
  controller_ = make<UIHostingController>(body);
  const auto navigation = make<UINavigationController>(controller_);
  show(navigation);
  advance(1);
  update();
  EXPECT_EQ(told_, std::vector<std::string>{"+"});
  navigation->pushViewController(make<UIViewController>(), true);
  advance(1);
  navigation->popViewControllerAnimated(true);
  advance(1);
  EXPECT_EQ(told_, (std::vector<std::string>{"+", "-", "+"}));
}

TEST_F(DeclarativeTest, WhatIsTakenOutOfTheDescriptionDisappears) {
  bool shows = true;
  host([&] {
    const View text =
        Text("x").onAppear([this] { told_.push_back("+"); }).onDisappear([this] { told_.push_back("-"); });
    return shows ? VStack({text}) : VStack({});
  });
  shows = false;
  update();
  EXPECT_EQ(told_, (std::vector<std::string>{"+", "-"}));
}

}  // namespace

}  // namespace platform::declarative
