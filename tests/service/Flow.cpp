#include "tests/service/Flow.h"

#include <gtest/gtest.h>

#include "tests/service/Wire.h"

namespace service {

Json FlowElement::json(const std::string& actionName) const {
  return {{"elementId", id},
          {"fragmentId", ""},
          {"x", 0},
          {"y", y},
          {"width", 390},
          {"height", height},
          {"actionName", actionName},
          {"isNavigational", false},
          {"actionId", actionId},
          {"destination", ""},
          {"value", value},
          {"elementDescription", "Default"},
          {"type", type},
          {"inputType", inputType}};
}

Flow& Flow::on(const std::string& viewName, std::vector<FlowElement> elements) {
  viewName_ = viewName;
  elements_ = std::move(elements);
  scrolls_ = Json::object();
  return *this;
}

Flow& Flow::scrolled(const std::string& viewId, std::int64_t y) {
  scrolls_[viewId] = {{"index", 0}, {"scrollOffsetX", 0}, {"scrollOffsetY", y}};
  return *this;
}

Flow& Flow::act(const std::string& actionName, const FlowElement& element) {
  Json elements = Json::array();
  for (const FlowElement& shown : elements_) elements.push_back(shown.json());
  snapshots_.push_back({{"viewName", viewName_},
                        {"viewHeight", 844},
                        {"viewWidth", 390},
                        {"viewOrientation", "PORTRAIT"},
                        {"elements", elements},
                        {"inputs", Json::array()},
                        {"actionElement", element.json(actionName)},
                        {"scrollDetails", scrolls_},
                        {"viewDescription", "Default"},
                        {"screenshotKey", ""},
                        {"index", snapshots_.size()}});
  return *this;
}

Flow& Flow::press(const std::string& id, int times) {
  for (int i = 0; i < times; ++i) act("Action on Optional(\"" + id + "\")", {id, "TYPE_INPUT", "TYPE_BUTTON", "Press"});
  return *this;
}

Flow& Flow::type(const std::string& id, const std::string& text) {
  return act("textField", {id, "TYPE_TEXT", "TYPE_EDIT_TEXT", text});
}

Flow& Flow::close() { return act("Recording Stopped", {""}); }

Flow orderFlow() {
  Flow flow;
  const std::vector<FlowElement> shop = {{"teaList", "TYPE_DEFAULT", "TYPE_DEFAULT", "", 0, 800},
                                         {"tea-assam", "TYPE_DEFAULT", "TYPE_DEFAULT", "", 100},
                                         {"tea-assam-name", "TYPE_TEXT", "TYPE_DEFAULT", "Assam", 110, 20},
                                         {"tea-milkOolong", "TYPE_DEFAULT", "TYPE_DEFAULT", "", 144},
                                         {"tea-sencha", "TYPE_DEFAULT", "TYPE_DEFAULT", "", 188}};
  flow.on("ShopScreen").act("tabbar", {"tabs", "TYPE_TABBAR", "TYPE_DEFAULT", "0"});
  flow.on("ShopScreen", shop).scrolled("teaList", 240);
  flow.act("tableView", {"tea-sencha", "TYPE_DEFAULT", "TYPE_DEFAULT", "Sencha", 188});
  for (int count = 1; count <= 4; ++count) {
    flow.on("TeaScreen", {{"quantityLabel", "TYPE_TEXT", "TYPE_DEFAULT", std::to_string(count)},
                          {"price", "TYPE_TEXT", "TYPE_DEFAULT", std::to_string(count * 5) + " pounds"}});
    if (count < 4) flow.press("plus");
  }
  flow.press("addToCart");
  flow.on("DeliveryScreen").type("cityField", "Lee").type("cityField", "Leeds").press("placeOrder");
  return flow.on("DoneScreen").close();
}

std::string registerTask(int port, const std::string& userId) {
  const Json body = {{"appBundleId", "org.example.shop"},
                     {"taskName", "Default"},
                     {"taskDescription", "Default"},
                     {"recordingKey", ""},
                     {"status", "Action Required"},
                     {"openChatWindow", true},
                     {"triggers", 0}};
  const Json reply = post(port, "/sdk/task/register", body.dump(), userId).json();
  EXPECT_EQ(reply["statusCode"], 200) << reply;
  return reply["data"]["insertedId"];
}

int registerSnapshot(int port, const std::string& taskId, int index, const Json& snapshot, const std::string& userId) {
  const Json body = {{"snapshotName", "Default"},
                     {"snapshotDescription", "Default"},
                     {"taskId", taskId},
                     {"index", index},
                     {"snapshot", snapshot}};
  const WireResponse response = post(port, "/sdk/snapshot/register", body.dump(), userId);
  EXPECT_EQ(response.json()["statusCode"], response.status);
  return response.status;
}

std::string teach(int port, const Flow& flow, const std::string& userId) {
  const std::string id = registerTask(port, userId);
  int index = 0;
  for (const Json& snapshot : flow.snapshots()) EXPECT_EQ(registerSnapshot(port, id, index++, snapshot, userId), 200);
  return id;
}

}  // namespace service
