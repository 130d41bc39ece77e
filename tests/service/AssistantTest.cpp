#include <gmock/gmock.h>

#include "service/assistant/Assistant.h"
#include "service/assistant/TaskFile.h"
#include "service/assistant/WordForms.h"
#include "service/base/Json.h"
#include "tests/service/TemporaryFolder.h"

namespace service {
namespace {

using testing::HasSubstr;
using testing::Not;

const std::vector<Task>& bakeryTasks() {
  static const std::vector<Task> tasks = TaskFile::load(dataFolder() / "tasks.json");
  return tasks;
}

/// "order-bread address=1 Mill Lane quantity=2", or "" when nothing matches well.
std::string summaryOf(std::string_view query) {
  static const TaskMatcher matcher(bakeryTasks());
  const auto match = matcher.find(query);
  if (!match) return "";
  std::string summary = match->task->task->id;
  for (const auto& [name, value] : match->filling.values) summary += " " + name + "=" + value.text;
  if (match->filling.outOfRange != nullptr) summary += " (" + match->filling.outOfRange->name + " not allowed)";
  if (match->filling.contradicted != nullptr) summary += " (" + match->filling.contradicted->name + " contradicted)";
  return summary;
}

TEST(TaskMatcher, FindsTheTaskAndItsSlotsInManyPhrasings) {
  const std::vector<std::pair<std::string, std::string>> table = {
      {"order 2 rye loaf to 1 Mill Lane", "order-bread address=1 Mill Lane product=Rye Loaf quantity=2"},
      {"Order two baguettes to 12 Baker Street", "order-bread address=12 Baker Street product=Baguette quantity=2"},
      {"Hi! Could you please order 3x rye to Zoë's café, thank you",
       "order-bread address=Zoë's café product=Rye Loaf quantity=3"},
      {"ORDER A CREME BRIOCHE TO 5 TO HILL", "order-bread address=5 TO HILL product=Crème Brioche"},
      {"order a cre\xCC\x80me brioche", "order-bread product=Crème Brioche"},
      {"i want to order twelve cinnamon rolls", "order-bread product=Cinnamon Roll quantity=12"},
      {"order a dozen rolls", "order-bread product=Cinnamon Roll quantity=12"},
      {"I want a french bread", "order-bread product=Baguette"},
      {"buy baguettes, four of them please", "order-bread product=Baguette quantity=4"},
      {"please send some rye bread to my mother's house at 3 Oak Road please",
       "order-bread address=my mother's house at 3 Oak Road product=Rye Loaf"},
      {"oder two baguetes to 12 Baker Street", "order-bread address=12 Baker Street product=Baguette quantity=2"},
      {"order rye to 12 Baker Street", "order-bread address=12 Baker Street product=Rye Loaf"},
      {"to 12 Baker Street please order two baguettes",
       "order-bread address=12 Baker Street product=Baguette quantity=2"},
      {"order bread", "order-bread"},
      {"order bread to 1 Mill Lane", "order-bread address=1 Mill Lane"},
      {"order 50 baguettes", "order-bread product=Baguette quantity=50 (quantity not allowed)"},
      {"order two rye loaves and three baguettes", "order-bread product=Rye Loaf quantity=2 (product contradicted)"},
      {"order rye to 1 Mill Lane with the note: Ring twice!",
       "order-bread address=1 Mill Lane note=Ring twice product=Rye Loaf"},
      {"search for plum cake with walnuts", "search-recipes words=plum cake with walnuts"},
      {"Look up: Königsberger Klopse!", "search-recipes words=Königsberger Klopse"},
      {"can you find a recipe for baguettes", "search-recipes words=baguettes"},
      {"show my orders", "show-orders"},
      {"please show me all of my past orders", "show-orders"},
      {"what did I order?", "show-orders"},
      {"go back please", "go-back"},
      {"When do you open?", "opening-hours"},
      {"what are the opening hours", "opening-hours"},
      {"add two more rolls to the basket", "extra-rolls extra=2"},
      {"add more rolls to the basket", "extra-rolls"},
  };
  for (const auto& [query, expected] : table) EXPECT_EQ(summaryOf(query), expected) << query;
}

TEST(TaskMatcher, LeavesAloneWhatNoTaskIsMeantBy) {
  for (const std::string query :
       {"", "   ", "?!", "hello", "please", "the of to", "what is the weather in Paris tomorrow", "tell me a joke",
        "cancel my order", "tell me about rye", "is the baguette vegan", "baguette", "12", "call my mother",
        "how do i change my password", "asdf qwer", "open the pod bay doors", "\xff\xfe", "\" OR words MATCH \"order"})
    EXPECT_EQ(summaryOf(query), "") << query;
}

TEST(TaskMatcher, StaysQuickAndSafeOnAbsurdlyLongQueries) {
  std::string query = "order two baguettes to";
  for (int i = 0; i < 3000; ++i) query += " word" + std::to_string(i);
  EXPECT_THAT(summaryOf(query), HasSubstr("order-bread address=word0 word1 "));
}

TEST(WordForms, GivesSingularAndPluralOneKey) {
  for (const auto& [plural, singular] : std::vector<std::pair<std::string, std::string>>{{"cups", "cup"},
                                                                                         {"berries", "berry"},
                                                                                         {"boxes", "box"},
                                                                                         {"cookies", "cookie"},
                                                                                         {"glasses", "glass"},
                                                                                         {"dishes", "dish"},
                                                                                         {"teas", "tea"},
                                                                                         {"tomatoes", "tomato"},
                                                                                         {"buses", "bus"},
                                                                                         {"sizes", "size"}})
    EXPECT_EQ(wordKey(plural), wordKey(singular)) << plural;
  EXPECT_NE(wordKey("glass"), wordKey("gla"));
  EXPECT_NE(wordKey("this"), wordKey("thi"));
}

TEST(WordForms, ReadsNumbersInDigitsAndWords) {
  const std::vector<std::string> words{
      "one",    "two",    "three",    "four",     "five",    "six",     "seven",     "eight",    "nine",     "ten",
      "eleven", "twelve", "thirteen", "fourteen", "fifteen", "sixteen", "seventeen", "eighteen", "nineteen", "twenty"};
  for (std::size_t i = 0; i < words.size(); ++i) EXPECT_EQ(numberWord(words[i]), static_cast<std::int64_t>(i + 1));
  for (const auto* text : {"7", "07", "7x", "x7"}) EXPECT_EQ(numberWord(text), 7) << text;
  for (const auto* text : {"", "x", "7y", "1234567890", "many"}) EXPECT_EQ(numberWord(text), std::nullopt) << text;
}

TEST(TokenText, FoldsCaseAndAccentsAndKeepsThePlaces) {
  const std::string text = "Ça, STRAßE\xE2\x80\x94Łódź Ωmega\xCC\x81!";
  std::vector<std::string> words;
  for (const Token& token : tokenise(text)) {
    words.push_back(token.word);
    EXPECT_EQ(tokenise(text.substr(token.begin, token.end - token.begin)).at(0).word, token.word);
  }
  EXPECT_THAT(words, testing::ElementsAre("ca", "strasse", "lodz", "ωmega"));
}

TEST(TextSlots, EndWhereTheNextPartOfTheSampleBegins) {
  const std::vector<Task> tasks = TaskFile::parse(R"json({"tasks": [{"id": "tell", "title": "Tell somebody",
    "samples": ["tell {person} that {message}"], "answer": "Told.",
    "slots": [{"name": "person", "type": "text"}, {"name": "message", "type": "text"}]}]})json");
  const TaskMatcher matcher(tasks);
  const auto match = matcher.find("please tell Aunt Mary of Hill House that the bread is baked, thanks");
  ASSERT_TRUE(match);
  EXPECT_EQ(match->filling.values.at("person").text, "Aunt Mary of Hill House");
  EXPECT_EQ(match->filling.values.at("message").text, "the bread is baked");
}

TEST(WordForms, TakesOneSlipForAMistypedWord) {
  for (const auto* slip : {"ordr", "oorder", "ordar", "oredr", "orde"})
    EXPECT_TRUE(differByOneSlip(slip, "order")) << slip;
  for (const auto* other : {"order", "ord", "redro", "orders2"}) EXPECT_FALSE(differByOneSlip(other, "order")) << other;
}

TEST(TaskDocument, ShowsAnExampleThatDoesWhatItSays) {
  const std::string text = readFile(std::string(SERVICE_DOCUMENTS) + "/tasks.md");
  const std::size_t begin = text.find("```json\n") + 8;
  const Assistant assistant(TaskFile::parse(text.substr(begin, text.find("```", begin) - begin)));
  const Reply order = assistant.answer("Could you order two cups of green tea to 12 Baker Street, please?", {});
  ASSERT_EQ(order.kind, Reply::Kind::Steps);
  const Json steps = Json::parse(order.answer);
  ASSERT_EQ(steps.size(), 7u);
  EXPECT_EQ(steps[1]["elementId"], "productSencha");
  EXPECT_EQ(steps[2]["elementId"], "plusButton");
  EXPECT_EQ(steps[3]["elementId"], "addButton");
  EXPECT_EQ(steps[4]["value"], "12 Baker Street");
  EXPECT_EQ(assistant.answer("order sencha", {}).answer, "Where shall we send it?");
}

class DialogueTest : public testing::Test {
 protected:
  /// Says something and hears the answer; both go into the chat.
  Reply say(const std::string& text) {
    Reply reply = assistant_.answer(text, chat_);
    chat_.push_back({text, false, 0});
    chat_.push_back({reply.answer, true, 0});
    return reply;
  }

  Assistant assistant_{TaskFile::load(dataFolder() / "tasks.json")};
  std::vector<ChatMessage> chat_;
};

TEST_F(DialogueTest, AsksForEveryMissingSlotInTurnAndThenActs) {
  Reply reply = say("order bread");
  EXPECT_EQ(reply.kind, Reply::Kind::Question);
  EXPECT_EQ(reply.answer, "Which bread would you like? I know Rye Loaf, Baguette, Cinnamon Roll or Crème Brioche.");
  EXPECT_EQ(reply.taskId, "order-bread");
  EXPECT_EQ(say("the baguete please").answer, "Where shall it go?");
  reply = say("to 12 Baker Street, please");
  EXPECT_EQ(reply.kind, Reply::Kind::Steps);
  EXPECT_THAT(reply.answer, HasSubstr(R"("value":"12 Baker Street")"));
  EXPECT_THAT(reply.answer, HasSubstr("cell-baguette"));
}

TEST_F(DialogueTest, AsksAgainWhenANumberIsNotAllowed) {
  EXPECT_EQ(say("order 50 rolls to 1 Mill Lane").answer, "The quantity can be from 1 to 12. Which shall it be?");
  EXPECT_EQ(say("thirteen").answer, "The quantity can be from 1 to 12. Which shall it be?");
  EXPECT_EQ(say("then three").kind, Reply::Kind::Steps);
}

TEST_F(DialogueTest, TakesOneChoiceAtATime) {
  EXPECT_THAT(say("order rye and a baguette to 1 Mill Lane").answer, HasSubstr("only one product at a time"));
  EXPECT_THAT(say("rye").answer, HasSubstr("cell-rye"));
}

TEST_F(DialogueTest, LetsAUserChangeTheSubjectOrCallItOff) {
  say("order a baguette");
  EXPECT_EQ(say("show my orders").taskId, "show-orders");
  say("order a baguette");
  EXPECT_EQ(say("Never mind!").kind, Reply::Kind::NoMatch);
  // Only a question that is the last thing said is answered.
  EXPECT_EQ(say("12 Baker Street").kind, Reply::Kind::NoMatch);
}

TEST_F(DialogueTest, AnswersInWordsWhereATaskHasNoSteps) {
  const Reply hours = say("when do you open");
  EXPECT_EQ(hours.kind, Reply::Kind::Text);
  EXPECT_EQ(hours.answer, "We bake from 6 to 14 o'clock, on Sundays from 8.");
  EXPECT_EQ(hours.taskId, "opening-hours");
  // An application that is sent no real step would wait for ever.
  const Reply nothing = say("add 0 more rolls to the basket");
  EXPECT_EQ(nothing.kind, Reply::Kind::Text);
  EXPECT_EQ(nothing.answer, "There is nothing to do for that.");
}

TEST_F(DialogueTest, ListsWhatItCanDoWhenNothingMatches) {
  const Reply reply = say("sing a song");
  EXPECT_EQ(reply.kind, Reply::Kind::NoMatch);
  EXPECT_THAT(reply.answer, HasSubstr(R"(- Order bread, for example "order 2 Rye Loaf to 1 Mill Lane")"));
  EXPECT_EQ(reply.taskId, "");
}

TEST_F(DialogueTest, MakesAStepOfAnOptionalSlotOnlyWhenItHasAValue) {
  EXPECT_THAT(say("order rye to 1 Mill Lane with the note Ring twice").answer,
              HasSubstr(R"({"elementId":"note","index":3,"value":"Ring twice")"));
  EXPECT_THAT(say("order rye to 1 Mill Lane").answer, Not(HasSubstr("note")));
}

TEST_F(DialogueTest, WritesEveryStepInFullCountsThemAndClosesTheList) {
  const Json steps = Json::parse(say("order three rye to 1 \"Mill\" Lane").answer);
  const Json expected = Json::parse(R"json([
    {"elementId": "tabs", "index": 0, "value": "0", "scrollDetails": [], "viewName": "HomeScreen", "actionType": "TYPE_TABBAR"},
    {"elementId": "cell-rye", "index": 1, "value": "", "scrollDetails": [{"viewId": "ShelfScreen-shelf", "offsets": {"x": 0, "y": 0}}],
     "viewName": "ShelfScreen", "actionType": "TYPE_DEFAULT"},
    {"elementId": "plus", "index": 2, "value": "", "scrollDetails": [], "viewName": "BreadScreen", "actionType": "TYPE_BUTTON"},
    {"elementId": "plus", "index": 3, "value": "", "scrollDetails": [], "viewName": "BreadScreen", "actionType": "TYPE_BUTTON"},
    {"elementId": "address", "index": 4, "value": "1 \"Mill\" Lane", "scrollDetails": [], "viewName": "BasketScreen", "actionType": "TYPE_EDIT_TEXT"},
    {"elementId": "send-{order}", "index": 5, "value": "", "scrollDetails": [], "viewName": "BasketScreen", "actionType": "TYPE_BUTTON"},
    {"elementId": "", "index": 6, "value": "", "scrollDetails": [], "viewName": "", "actionType": "TYPE_DEFAULT"}
  ])json");
  EXPECT_EQ(steps, expected);
}

}  // namespace
}  // namespace service
