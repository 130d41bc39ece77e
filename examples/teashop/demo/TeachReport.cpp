#include "examples/teashop/demo/TeachReport.h"

#include <fstream>
#include <string>

#include "examples/teashop/demo/HtmlPage.h"
#include "examples/teashop/demo/ReportPage.h"
#include "platform/uikit/device/UIScreen.h"

namespace teashop {

using namespace platform;
using htmlPage::escaped;

namespace {

constexpr const char* style = R"css(
  h3 { font-size: 16px; margin: 32px 0 12px; }
  video { width: 260px; border-radius: 22px; border: 1px solid var(--line); background: #000; }
  .pairs { display: grid; gap: 36px; margin: 20px 0; }
  .pair { display: grid; grid-template-columns: 220px 220px 1fr; gap: 24px; align-items: start; }
  .pair img { display: block; width: 100%; border-radius: 18px; border: 1px solid var(--line); }
  .shot { position: relative; overflow: hidden; border-radius: 18px; }
  .shot svg { position: absolute; inset: 0; width: 100%; height: 100%; }
  .shot rect { fill: rgba(255,87,51,.16); stroke: #ff5733; stroke-width: 3; }
  .none { aspect-ratio: 390 / 844; border: 1px dashed var(--line); border-radius: 18px; color: var(--soft); display: grid;
          place-items: center; font-size: 13px; text-align: center; padding: 0 16px; }
  .pair b { display: block; font-size: 16px; }
  .pair code { font-size: 13px; color: var(--soft); word-break: break-all; }
)css";

/// The picture with the element that was acted on marked in it.
void writeShot(std::ostream& page, const CapturedAction& action) {
  if (action.picture.empty()) {
    page << "<div class=\"none\">no picture</div>";
    return;
  }
  const CGSize screen = UIScreen::main().bounds().size;
  const CGRect& at = action.element;
  page << "<div class=\"shot\"><img src=\"" << escaped(action.picture) << "\" alt=\"" << escaped(action.name)
       << "\"><svg viewBox=\"0 0 " << screen.width << " " << screen.height << "\"><rect x=\"" << at.minX() << "\" y=\""
       << at.minY() << "\" width=\"" << at.width() << "\" height=\"" << at.height() << "\" rx=\"8\"/></svg></div>";
}

void writeReplayed(std::ostream& page, const DemoReport::Stage* stage) {
  if (!stage) {
    page << "<div class=\"none\">nothing to repeat</div>";
    return;
  }
  page << "<img src=\"" << escaped(stage->picture) << "\" alt=\"" << escaped(stage->title) << "\">";
}

/// The stages of the replay that show a step: those named like what was shown, in order.
const DemoReport::Stage* stageOf(const DemoReport::Part& replay, const std::string& title) {
  for (const DemoReport::Stage& stage : replay.stages) {
    if (stage.title == title) return &stage;
  }
  return nullptr;
}

void writePairs(std::ostream& page, const DemoReport::Part& shown, const CapturedTask& captured,
                const DemoReport::Part* replay) {
  page << "<h3>Captured, and done by the assistant</h3>\n<div class=\"pairs\">\n";
  // Behind the recording's beginning every stage of the demonstration is one action.
  for (std::size_t i = 0; i < captured.actions.size(); ++i) {
    const CapturedAction& action = captured.actions[i];
    const DemoReport::Stage* const stage = i + 1 < shown.stages.size() ? &shown.stages[i + 1] : nullptr;
    page << "<div class=\"pair\">";
    writeShot(page, action);
    writeReplayed(page, stage && replay ? stageOf(*replay, stage->title) : nullptr);
    page << "<div><b>" << i + 1 << ". " << escaped(stage ? stage->title : "") << "</b>" << escaped(action.name)
         << "<br><code>" << escaped(action.viewName + " \u00b7 " + action.elementId) << "</code>";
    if (!action.value.empty()) page << "<br>\u201c" << escaped(action.value) << "\u201d";
    page << "</div></div>\n";
  }
  page << "</div>\n";
}

}  // namespace

bool TeachReport::holds() const { return shown_.holds() && replayed_.holds(); }

bool TeachReport::write(const DemoReport::Times& times) const {
  std::ofstream page(replayed_.folder() / "report.html");
  page << htmlPage::head("Shown once, asked for afterwards", std::string(reportPage::style) + style) << "<h1>"
       << (holds() ? "Shown once, done on request" : "Not everything came out as it was shown")
       << "</h1>\n<p class=\"lead\">A person showed the shop's assistant a task while the screen was recorded. Then "
          "somebody else asked for it, in other words and with other values, and the assistant did it. The asking and "
          "doing took "
       << reportPage::secondsText(times.seconds) << (times.areVirtual ? " of virtual time" : "") << ".</p>\n";
  const auto& shown = shown_.parts();
  const auto& replays = replayed_.parts();
  for (std::size_t i = 0; i < shown.size(); ++i) {
    const DemoReport::Part* const replay = i < replays.size() ? &replays[i] : nullptr;
    page << "<h2>" << escaped(shown[i].title) << "</h2>\n";
    const CapturedTask* const captured = i < captured_.size() ? &captured_[i] : nullptr;
    if (captured && !captured->video.empty()) {
      page << "<video controls muted playsinline src=\"" << escaped(captured->video) << "\"></video>\n";
    }
    reportPage::writeStages(page, shown[i].stages);
    reportPage::writeChecks(page, shown[i].checks);
    if (captured) writePairs(page, shown[i], *captured, replay);
    if (!replay) continue;
    page << "<h3>" << escaped(replay->title) << "</h3>\n<div class=\"request\">\u201c" << escaped(replay->request)
         << "\u201d</div>\n";
    reportPage::writeStages(page, replay->stages);
    reportPage::writeChecks(page, replay->checks);
  }
  reportPage::writeExchange(page, replayed_.folder() / "http.jsonl");
  page << htmlPage::foot();
  return static_cast<bool>(page.flush());
}

}  // namespace teashop
