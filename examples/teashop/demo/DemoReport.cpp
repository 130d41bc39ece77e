#include "examples/teashop/demo/DemoReport.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>

#include "examples/teashop/demo/HtmlPage.h"
#include "platform/foundation/JSONValue.h"

namespace teashop {

namespace {

using htmlPage::escaped;

constexpr std::size_t longestBodyShown = 4000;

/// "0.4 ms"
std::string millisecondsText(const platform::JSONValue& exchange) {
  const platform::JSONValue* const value = exchange.find("milliseconds");
  char text[32];
  std::snprintf(text, sizeof text, "%.1f ms", value ? value->asDouble().value_or(0) : 0);
  return text;
}

std::string secondsText(double seconds) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f s", seconds);
  return text;
}

constexpr const char* style = R"css(
  .request { background: #fff; border: 1px solid var(--line); border-radius: 14px; padding: 16px 20px; font-size: 18px; }
  .stages { margin: 20px 0; display: grid; grid-template-columns: repeat(auto-fill, minmax(230px, 1fr)); gap: 28px 24px; }
  figure img { width: 100%; border-radius: 22px; border: 1px solid var(--line); box-shadow: 0 8px 28px rgba(34,38,31,.10); }
  figcaption { padding: 12px 4px 0; font-size: 14px; }
  figcaption b { display: block; font-size: 15px; }
  figcaption .asked { color: var(--soft); display: block; }
  .time { float: right; color: var(--soft); font-variant-numeric: tabular-nums; }
  table { border-collapse: collapse; width: 100%; background: #fff; border: 1px solid var(--line); font-size: 14px; }
  td, th { text-align: left; padding: 9px 12px; border-bottom: 1px solid var(--line); vertical-align: top; }
  .yes { color: var(--leaf); font-weight: 600; } .no { color: #b3261e; font-weight: 600; }
  details pre { white-space: pre-wrap; word-break: break-word; font-size: 12px; margin: 8px 0 0; }
)css";

void writeStages(std::ostream& page, const std::vector<DemoReport::Stage>& stages) {
  page << "<div class=\"stages\">\n";
  int number = 0;
  for (const DemoReport::Stage& stage : stages) {
    page << "<figure><img src=\"" << escaped(stage.picture) << "\" alt=\"" << escaped(stage.title) << "\"><figcaption>"
         << "<span class=\"time\">" << secondsText(stage.seconds) << "</span><b>" << ++number << ". "
         << escaped(stage.title) << "</b><span class=\"asked\">" << escaped(stage.asked) << "</span>"
         << escaped(stage.done) << "</figcaption></figure>\n";
  }
  page << "</div>\n";
}

void writeChecks(std::ostream& page, const std::vector<DemoReport::Check>& checks) {
  page << "<table>\n";
  for (const DemoReport::Check& check : checks) {
    page << "<tr><td class=\"" << (check.holds ? "yes\">holds" : "no\">fails") << "</td><td>" << escaped(check.what)
         << "</td><td>" << escaped(check.found) << "</td></tr>\n";
  }
  page << "</table>\n";
}

std::string member(const platform::JSONValue& exchange, std::string_view name) {
  const platform::JSONValue* const value = exchange.find(name);
  if (!value) return "";
  if (const std::string* const text = value->asString()) return *text;
  const auto encoded = value->encode();
  return encoded ? *encoded : "";
}

void writeExchange(std::ostream& page, const std::filesystem::path& file) {
  std::ifstream lines(file);
  if (!lines) return;
  page << "<h2>What went over HTTP</h2>\n<table><tr><th>Request</th><th>Status</th><th>Bodies</th></tr>\n";
  for (std::string line; std::getline(lines, line);) {
    const auto exchange = platform::JSONValue::parse(line);
    if (!exchange) continue;
    const std::string path = member(*exchange, "path");
    if (!path.starts_with("/sdk/")) continue;
    page << "<tr><td>" << escaped(member(*exchange, "method") + " " + path) << "</td><td>"
         << escaped(member(*exchange, "status")) << "</td><td><details><summary>" << millisecondsText(*exchange)
         << "</summary><pre>" << escaped(member(*exchange, "requestBody").substr(0, longestBodyShown)) << "\n\n"
         << escaped(member(*exchange, "responseBody").substr(0, longestBodyShown)) << "</pre></details></td></tr>\n";
  }
  page << "</table>\n";
}

}  // namespace

void DemoReport::begin(std::string title, std::string request) {
  parts_.push_back({std::move(title), std::move(request), {}, {}});
}

bool DemoReport::holds() const {
  bool isAnyChecked = false;
  for (const Part& part : parts_) {
    if (!std::ranges::all_of(part.checks, &Check::holds)) return false;
    isAnyChecked = isAnyChecked || !part.checks.empty();
  }
  return isAnyChecked;
}

bool DemoReport::write(const Times& times) const {
  std::ofstream page(folder_ / "report.html");
  page << htmlPage::head("The assistant at work", style) << "<h1>"
       << (holds() ? "Every request was carried out" : "Not every request was carried out")
       << "</h1>\n<p class=\"lead\">A customer opened the chat, said what was wanted, and watched the shop being "
          "operated. "
       << (times.areVirtual ? "Played in virtual time: " : "Played in real time: ") << secondsText(times.seconds)
       << " from the first tap to the last word. Drawing, reading, acting and talking to the service took "
       << secondsText(times.processorSeconds) << " of processor time, these pictures not counted.</p>\n";
  for (const Part& part : parts_) {
    page << "<h2>" << escaped(part.title) << "</h2>\n";
    if (!part.request.empty()) page << "<div class=\"request\">\u201c" << escaped(part.request) << "\u201d</div>\n";
    writeStages(page, part.stages);
    if (!part.checks.empty()) writeChecks(page, part.checks);
  }
  writeExchange(page, folder_ / "http.jsonl");
  page << htmlPage::foot();
  return static_cast<bool>(page.flush());
}

}  // namespace teashop
