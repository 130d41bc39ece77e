#include "examples/teashop/demo/ReportPage.h"

#include <cstdio>
#include <fstream>

#include "examples/teashop/demo/HtmlPage.h"
#include "platform/foundation/JSONValue.h"

namespace teashop {

using htmlPage::escaped;

namespace {

constexpr std::size_t longestBodyShown = 4000;

/// "0.4 ms"
std::string millisecondsText(const platform::JSONValue& exchange) {
  const platform::JSONValue* const value = exchange.find("milliseconds");
  char text[32];
  std::snprintf(text, sizeof text, "%.1f ms", value ? value->asDouble().value_or(0) : 0);
  return text;
}

std::string member(const platform::JSONValue& exchange, std::string_view name) {
  const platform::JSONValue* const value = exchange.find(name);
  if (!value) return "";
  if (const std::string* const text = value->asString()) return *text;
  const auto encoded = value->encode();
  return encoded ? *encoded : "";
}

}  // namespace

const char* const reportPage::style = R"css(
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

std::string reportPage::secondsText(double seconds) {
  char text[32];
  std::snprintf(text, sizeof text, "%.1f s", seconds);
  return text;
}

void reportPage::writeStages(std::ostream& page, const std::vector<DemoReport::Stage>& stages) {
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

void reportPage::writeChecks(std::ostream& page, const std::vector<DemoReport::Check>& checks) {
  page << "<table>\n";
  for (const DemoReport::Check& check : checks) {
    page << "<tr><td class=\"" << (check.holds ? "yes\">holds" : "no\">fails") << "</td><td>" << escaped(check.what)
         << "</td><td>" << escaped(check.found) << "</td></tr>\n";
  }
  page << "</table>\n";
}

void reportPage::writeExchange(std::ostream& page, const std::filesystem::path& file) {
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

}  // namespace teashop
