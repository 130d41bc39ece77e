#include "examples/teashop/demo/DemoReport.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <sstream>

#include "examples/teashop/demo/HtmlPage.h"
#include "examples/teashop/demo/ReportPage.h"

namespace teashop {

namespace {

using htmlPage::escaped;

constexpr const char* partsFile = "parts.json";

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

bool DemoReport::save() const {
  const auto json = platform::encodeJSON(parts_);
  std::ofstream file(folder_ / partsFile, std::ios::binary);
  if (json) file << *json;
  return json && file.flush();
}

bool DemoReport::resume() {
  std::ostringstream text;
  text << std::ifstream(folder_ / partsFile, std::ios::binary).rdbuf();
  auto parts = platform::decodeJSON<std::vector<Part>>(text.str());
  if (!parts) return false;
  parts_ = std::move(*parts);
  return true;
}

bool DemoReport::write(const Times& times) const {
  std::ofstream page(folder_ / "report.html");
  page << htmlPage::head("The assistant at work", reportPage::style) << "<h1>"
       << (holds() ? "Every request was carried out" : "Not every request was carried out")
       << "</h1>\n<p class=\"lead\">A customer opened the chat, said what was wanted, and watched the shop being "
          "operated. "
       << (times.areVirtual ? "Played in virtual time: " : "Played in real time: ")
       << reportPage::secondsText(times.seconds)
       << " from the first tap to the last word. Drawing, reading, acting and talking to the service took "
       << reportPage::secondsText(times.processorSeconds) << " of processor time, these pictures not counted.</p>\n";
  for (const Part& part : parts_) {
    page << "<h2>" << escaped(part.title) << "</h2>\n";
    if (!part.request.empty()) page << "<div class=\"request\">\u201c" << escaped(part.request) << "\u201d</div>\n";
    reportPage::writeStages(page, part.stages);
    if (!part.checks.empty()) reportPage::writeChecks(page, part.checks);
  }
  reportPage::writeExchange(page, folder_ / "http.jsonl");
  page << htmlPage::foot();
  return static_cast<bool>(page.flush());
}

}  // namespace teashop
