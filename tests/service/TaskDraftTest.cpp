#include <gmock/gmock.h>

#include "service/assistant/StepBuilder.h"
#include "service/base/Sha256.h"
#include "service/teaching/SampleReader.h"
#include "service/teaching/SlotNames.h"
#include "service/teaching/TaskDraft.h"
#include "service/teaching/TaughtTask.h"
#include "tests/service/Flow.h"

namespace service {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

Json draftOf(const Flow& flow) {
  std::vector<DemonstratedAction> actions;
  for (const Json& snapshot : flow.snapshots())
    actions.push_back(DemonstratedAction::read(SnapshotRecord::read({snapshot, ""})));
  const DemonstratedAction closing = actions.back();
  actions.pop_back();
  return draftTask("taught-1", foldActions(std::move(actions)), closing, true);
}

/// "type element value @ screen [scrolls] x repeat" of every step.
std::vector<std::string> stepsOf(const Json& draft) {
  std::vector<std::string> lines;
  for (const Json& step : draft["steps"]) {
    std::string line = step["actionType"].get<std::string>().substr(5) + " " + step["elementId"].get<std::string>() +
                       " " + step["value"].get<std::string>() + " @" + step["viewName"].get<std::string>();
    for (const Json& scroll : step["scrollDetails"])
      line += " [" + scroll["viewId"].get<std::string>() + " " + scroll["offsets"]["y"].dump() + "]";
    if (step.contains("repeat")) line += " x" + step["repeat"].get<std::string>();
    lines.push_back(line);
  }
  return lines;
}

std::vector<std::string> slotsOf(const Json& draft) {
  std::vector<std::string> lines;
  for (const Json& slot : draft["slots"])
    lines.push_back(slot["name"].get<std::string>() + ":" + slot["type"].get<std::string>() + "=" +
                    slot["example"].get<std::string>());
  return lines;
}

TEST(TaskDraft, MakesTheStepOfEverySourceOfActions) {
  Flow flow;
  // Neither a list elsewhere on the screen nor a text that can be scrolled has to be put in place for a step.
  flow.on("HomeScreen", {{"grid", "TYPE_DEFAULT", "TYPE_DEFAULT", "0.0 0.0", 0, 800},
                         {"tips", "TYPE_DEFAULT", "TYPE_DEFAULT", "0.0 0.0", 800, 200},
                         {"terms", "TYPE_TEXT", "TYPE_EDIT_TEXT", "long", 0, 800}});
  flow.scrolled("grid", 60).scrolled("tips", 30).scrolled("terms", 10);
  flow.act("tabbar", {"tabs", "TYPE_TABBAR", "TYPE_DEFAULT", "1"});
  flow.act("uiBarButtonItem", {"edit", "TYPE_BAR_BUTTON_ITEM", "TYPE_BAR_BUTTON_ITEM", "Edit"});
  flow.act("UITapGestureRecognizer", {"card", "TYPE_DEFAULT", "TYPE_DEFAULT", ""});
  flow.on("HomeScreen");
  flow.act("Action on Optional(\"pay{now}\")", {"pay{now}", "TYPE_INPUT", "TYPE_TOGGLE", "Pay"});
  flow.act("Action on Optional(\"wifi\")", {"wifi", "TYPE_INPUT", "TYPE_TOGGLE", "true "});
  flow.act("textField", {"cityField", "TYPE_TEXT", "TYPE_EDIT_TEXT", "Leeds"});
  flow.act("textView", {"noteView", "TYPE_TEXT", "TYPE_EDIT_TEXT", "ring twice"});
  flow.act("searchTriggered", {"teaSearch", "TYPE_SEARCH", "TYPE_DEFAULT", "oolong"});
  flow.act("searchCancelled", {"teaSearch", "TYPE_SEARCH_CANCEL", "TYPE_DEFAULT", "oolong"});
  flow.on("HomeScreen", {{"slotField", "TYPE_TEXT", "TYPE_EDIT_TEXT", "Evening"}});
  flow.act("pickerView-2-0", {"slotField", "TYPE_PICKER_VIEW", "TYPE_DEFAULT", "2-0"});
  flow.act("pickerView", {"sizeWheel", "TYPE_PICKER_VIEW", "TYPE_DEFAULT", "1"});
  flow.act("tableView", {"row-SegueIdentifier-more", "TYPE_DEFAULT", "TYPE_DEFAULT", "More"});
  flow.act("LumicorCollectionView-list-0-7", {"leaf7", "TYPE_DEFAULT", "TYPE_DEFAULT", "Leaf"});
  flow.act("collectionView", {"leaf8", "TYPE_DEFAULT", "TYPE_DEFAULT", "Leaf"});
  flow.act("systemBack", {"backButton", "TYPE_SYSTEM_BACK", "TYPE_DEFAULT", ""});
  flow.close();
  EXPECT_THAT(
      stepsOf(draftOf(flow)),
      ElementsAre("TABBAR tabs 1 @HomeScreen", "BAR_BUTTON_ITEM edit  @HomeScreen [HomeScreen-grid 60]",
                  "BUTTON pay{{now}}  @HomeScreen", "TOGGLE wifi  @HomeScreen",
                  "EDIT_TEXT cityField {city} @HomeScreen", "EDIT_TEXT noteView {note} @HomeScreen",
                  "SEARCH teaSearch {tea_search} @HomeScreen", "SEARCH_CANCEL teaSearch  @HomeScreen",
                  "PICKER_VIEW slotField {slot.position} @HomeScreen",
                  "PICKER_VIEW sizeWheel {size.position} @HomeScreen", "DEFAULT {segue_identifier.id}  @HomeScreen",
                  "DEFAULT {leaf.id}  @HomeScreen [HomeScreen-LumicorCollectionView-list-0-7 0]",
                  "DEFAULT {leaf_2.id}  @HomeScreen", "SYSTEM_BACK backButton  @HomeScreen"));
}

TEST(TaskDraft, FoldsWhatCountsOnlyAsALastValueAndKeepsPressesThatAreMeant) {
  Flow flow;
  flow.on("Screen");
  for (int i = 0; i < 18; ++i)
    flow.act("Action on Optional(\"volume\")", {"volume", "TYPE_INPUT", "TYPE_DEFAULT", std::to_string(i) + ".5"});
  flow.type("nameField", "Ad").type("nameField", "Ada").type("otherField", "b").type("nameField", "Ada L");
  for (const auto* text : {"se", "sencha"}) flow.act("searchTriggered", {"find", "TYPE_SEARCH", "TYPE_DEFAULT", text});
  for (const auto* row : {"1-0", "4-0", "2-1"})
    flow.act("pickerView", {"wheel", "TYPE_PICKER_VIEW", "TYPE_DEFAULT", row});
  flow.press("plus", 3).close();
  const Json draft = draftOf(flow);
  EXPECT_THAT(
      stepsOf(draft),
      ElementsAre("INPUT volume  @Screen", "EDIT_TEXT nameField {name} @Screen", "EDIT_TEXT otherField {other} @Screen",
                  "EDIT_TEXT nameField {name_2} @Screen", "SEARCH find {find} @Screen",
                  "PICKER_VIEW wheel {wheel.position} @Screen", "PICKER_VIEW wheel {wheel_2.position} @Screen",
                  "BUTTON plus  @Screen", "BUTTON plus  @Screen", "BUTTON plus  @Screen"));
  EXPECT_THAT(slotsOf(draft), ElementsAre("name:text=Ada", "other:text=b", "name_2:text=Ada L", "find:text=sencha",
                                          "wheel:one-of=row 4", "wheel_2:one-of=row 2"));
  EXPECT_THAT(draft["notes"].dump(), HasSubstr("\\\"volume\\\" can be touched by a step, but not set"));
}

TEST(TaskDraft, RepeatsNothingThatAnActionBringsAboutByItself) {
  const auto press = [](const char* id, const char* doing) {
    return FlowElement{id, "TYPE_INPUT", "TYPE_BUTTON", "", 0, 44, doing};
  };
  const auto back = [](const char* doing) {
    return FlowElement{"backButton", "TYPE_SYSTEM_BACK", "TYPE_DEFAULT", "", 0, 44, doing};
  };
  Flow flow;
  flow.on("HomeScreen").act("Action on Optional(\"tabCart\")", press("tabCart", "0"));
  flow.act("tabbar", {"tabs", "TYPE_TABBAR", "TYPE_DEFAULT", "1", 0, 44, "0"});
  flow.on("EditScreen").act("Action on Optional(\"save\")", press("save", "2")).act("systemBack", back("2"));
  flow.on("NoteScreen").act("Action on Optional(\"heart\")", press("heart", "4")).act("systemBack", back("5"));
  flow.act("systemBack", back("Default")).act("systemBack", back("Default")).close();
  EXPECT_THAT(stepsOf(draftOf(flow)),
              ElementsAre("TABBAR tabs 1 @HomeScreen", "BUTTON save  @EditScreen", "BUTTON heart  @NoteScreen",
                          "SYSTEM_BACK backButton  @NoteScreen", "SYSTEM_BACK backButton  @NoteScreen",
                          "SYSTEM_BACK backButton  @NoteScreen"));
}

TEST(TaskDraft, KeepsNothingOfWhatASecretFieldEverHeld) {
  Flow flow;
  flow.on("LoginScreen").type("userField", "ann").type("password", "\u2022\u2022\u2022").press("eye");
  flow.type("password", "open sesame").press("login").close();
  const Json draft = draftOf(flow);
  EXPECT_THAT(slotsOf(draft), ElementsAre("user:text=ann"));
  EXPECT_THAT(stepsOf(draft), ElementsAre("EDIT_TEXT userField {user} @LoginScreen", "BUTTON eye  @LoginScreen",
                                          "BUTTON login  @LoginScreen"));
  EXPECT_THAT(draft.dump(), testing::Not(HasSubstr("sesame")));
  EXPECT_THAT(draft["notes"].dump(), HasSubstr("secret"));
}

TEST(TaskDraft, ComparesOnlyTheNumbersNearestToAPress) {
  SnapshotRecord snapshot;
  for (int i = 0; i < 5000; ++i)
    snapshot.elements.push_back({"n" + std::to_string(i), "", "7", "TYPE_TEXT", "TYPE_DEFAULT", 0, 5000 - i, 9, 9, ""});
  snapshot.actionElement = {"plus", "Action on Optional(\"plus\")", "", "TYPE_INPUT", "TYPE_BUTTON", 0, 0, 9, 9, "0"};
  const std::vector<ShownNumber> numbers = DemonstratedAction::read(snapshot).numbers;
  ASSERT_EQ(numbers.size(), 200u);
  EXPECT_EQ(numbers.front().elementId, "n4999");
  EXPECT_EQ(numbers.back().elementId, "n4800");
}

TEST(TaskDraft, LearnsFromTheScreenWhatElseCouldBeChosenAndWhatPressesCount) {
  const Json draft = draftOf(orderFlow());
  EXPECT_THAT(stepsOf(draft),
              ElementsAre("TABBAR tabs 0 @ShopScreen", "DEFAULT {tea.id}  @ShopScreen [ShopScreen-teaList 240]",
                          "BUTTON plus  @TeaScreen x{quantity-1}", "BUTTON addToCart  @TeaScreen",
                          "EDIT_TEXT cityField {city} @DeliveryScreen", "BUTTON placeOrder  @DeliveryScreen"));
  EXPECT_THAT(slotsOf(draft), ElementsAre("tea:one-of=Sencha", "quantity:number=4", "city:text=Leeds"));
  std::vector<std::string> choices;
  for (const Json& choice : draft["slots"][0]["choices"])
    choices.push_back(choice["value"].get<std::string>() + "=" + choice["attributes"]["id"].get<std::string>());
  EXPECT_THAT(choices, ElementsAre("Sencha=tea-sencha", "Assam=tea-assam", "milk oolong=tea-milkOolong"));

  // A number that only happens to be there, that moves on afterwards, or goes down counts nothing.
  for (const std::vector<int>& shown : {std::vector{1, 1, 1, 1}, {1, 2, 3, 9}, {4, 3, 2, 2}, {1, 2, 4, 4}}) {
    Flow flow;
    for (std::size_t i = 0; i < shown.size(); ++i) {
      flow.on("Screen", {{"count", "TYPE_TEXT", "TYPE_DEFAULT", std::to_string(shown[i])}});
      i < 2 ? flow.press("plus") : i == 2 ? flow.press("other") : flow.close();
    }
    EXPECT_THAT(slotsOf(draftOf(flow)), ElementsAre());
  }
}

TEST(TaughtTask, AsksForWhatItsSamplesMentionAndKeepsTheRestAsItWasShown) {
  Json draft = draftOf(orderFlow());
  EXPECT_FALSE(isAnswerable(draft));
  nameTask(draft, "Order tea", {"order 4 sencha", "buy {tea}"});
  EXPECT_EQ(draft["samples"], Json({"order {quantity} {tea}", "buy {tea}"}));
  const Task task = answerableTask(draft);
  ASSERT_EQ(task.slots.size(), 2u);
  EXPECT_TRUE(task.findSlot("tea")->isRequired);
  EXPECT_EQ(task.findSlot("quantity")->defaultValue, "1");
  const Json steps = Json::parse(
      buildSteps(task, {{"tea", {"Assam", task.findSlot("tea")->findChoice("Assam")}}, {"quantity", {"3"}}}));
  ASSERT_EQ(steps.size(), 8u);
  EXPECT_EQ(steps[1]["elementId"], "tea-assam");
  EXPECT_EQ(steps[3]["elementId"], "plus");
  EXPECT_EQ(steps[5]["value"], "Leeds");
  EXPECT_EQ(steps[7]["viewName"], "") << "the closing step";

  nameTask(draft, "Order sencha", {});
  const Task fixed = answerableTask(draft);
  EXPECT_TRUE(fixed.slots.empty());
  EXPECT_EQ(Json::parse(buildSteps(fixed, {})).size(), 9u);
}

TEST(TaughtTask, IsCorrectedSlotBySlotAndLeftAloneByAFaultyCorrection) {
  Json draft = draftOf(orderFlow());
  nameTask(draft, "Order tea", {"order {tea} to {city}"});
  correctSlot(draft, "city", {"town", "Which town?", "York", {}});
  correctSlot(draft, "tea", {{}, {}, {}, {"green tea", "Matcha=tea-matcha", "Assam=tea-assam2"}});
  EXPECT_EQ(draft["samples"][0], "order {tea} to {town}");
  EXPECT_EQ(stepsOf(draft)[4], "EDIT_TEXT cityField {town} @DeliveryScreen");
  const Task task = answerableTask(draft);
  EXPECT_EQ(task.findSlot("town")->question, "Which town?");
  EXPECT_THAT(task.findSlot("tea")->findChoice("Sencha")->synonyms, ElementsAre("green tea"));
  EXPECT_EQ(task.findSlot("tea")->findChoice("Matcha")->attributes.at("id"), "tea-matcha");
  EXPECT_EQ(task.findSlot("tea")->findChoice("Assam")->attributes.at("id"), "tea-assam2");

  const Json before = draft;
  EXPECT_THROW(correctSlot(draft, "street", {}), JsonError);
  EXPECT_THROW(correctSlot(draft, "town", {"tea", {}, {}, {}}), JsonError);
  EXPECT_THROW(correctSlot(draft, "town", {"two words", {}, {}, {}}), JsonError);
  EXPECT_THROW(correctSlot(draft, "town", {{}, {}, {}, {"York=1"}}), JsonError);
  EXPECT_THROW(correctSlot(draft, "quantity", {{}, {}, "many", {}}), JsonError);
  EXPECT_THROW(correctSlot(draft, "tea", {{}, {}, {}, {"=tea-x"}}), JsonError);
  EXPECT_THROW(nameTask(draft, "", {"a"}), JsonError);
  EXPECT_THROW(nameTask(draft, "Title", {"order {street}"}), JsonError);
  EXPECT_THROW(nameTask(draft, "Title", {"order {tea"}), JsonError);
  EXPECT_THROW(nameTask(draft, "Title", {"?!"}), JsonError);
  EXPECT_EQ(draft, before);
}

TEST(SampleReader, PutsSlotsWhereDemonstratedValuesStand) {
  const Json slots = {{{"name", "street"}, {"type", "text"}, {"example", "4 Harbour Street"}},
                      {{"name", "count"}, {"type", "number"}, {"example", "4"}},
                      {{"name", "tea"}, {"type", "one-of"}, {"example", "Earl Grey"}}};
  const std::vector<std::pair<std::string, std::string>> table = {
      {"order four earl GREYs to 4 harbour street, please", "order {count} {tea} to {street}, please"},
      {"4 harbour street: 4", "{street}: {count}"},
      {"{count} of earl grey and 4 more", "{count} of {tea} and 4 more"},
      {"earl grey, then earl grey", "{tea}, then earl grey"},
      {"early greyness {{x}}", "early greyness {{x}}"},
      {"", ""},
  };
  for (const auto& [sample, expected] : table) EXPECT_EQ(sampleWithSlots(sample, slots), expected);
}

TEST(SlotNames, ComeFromIdentifiers) {
  const std::vector<std::vector<std::string>> table = {{"deliveryCityField", "DeliveryScreen", "city"},
                                                       {"address", "CheckoutScreen", "address"},
                                                       {"CheckoutScreen-emailTextField", "CheckoutScreen", "email"},
                                                       {"URLField", "WebScreen", "url"},
                                                       {"field", "Screen", "field"},
                                                       {"delivery", "DeliveryScreen", "delivery"},
                                                       {"2ndLine", "Screen", "value2nd_line"},
                                                       {"\u540d", "Screen", "value"},
                                                       {"", "Screen", "value"}};
  for (const auto& row : table) EXPECT_EQ(slotNameFor(row[0], row[1]), row[2]) << row[0];
  EXPECT_EQ(sharedBeginning("tea-sencha", "tea-sansibar"), "tea-");
  EXPECT_EQ(sharedBeginning("teaSencha", "teaSansibar"), "tea");
  EXPECT_EQ(sharedBeginning("sencha", "sansibar"), "");
}

TEST(Sha256, GivesThePublishedDigests) {
  EXPECT_EQ(sha256(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  EXPECT_EQ(sha256("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
  EXPECT_EQ(sha256(std::string(1'000'000, 'a')), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

}  // namespace
}  // namespace service
