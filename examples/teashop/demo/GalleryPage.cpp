#include "examples/teashop/demo/GalleryPage.h"

#include <fstream>
#include <utility>

#include "examples/teashop/demo/HtmlPage.h"

namespace teashop {

namespace {

using htmlPage::escaped;

constexpr const char* pictureFolder = "gallery";

constexpr const char* style = R"css(
  main { max-width: 1240px; padding: 72px 40px 120px; }
  h1 { font-size: 44px; line-height: 1.1; margin-bottom: 16px; text-wrap: balance; }
  h2 { font-size: 26px; letter-spacing: -0.01em; margin: 0 0 6px; }
  .lead { margin: 0; max-width: 560px; }
  header .lead { font-size: 18px; }
  nav { display: flex; flex-wrap: wrap; gap: 8px 24px; margin: 32px 0 0; padding: 16px 0 0; border-top: 1px solid var(--line); }
  nav a { color: var(--leaf); text-decoration: none; font-weight: 500; }
  nav a:hover, nav a:focus-visible { text-decoration: underline; text-underline-offset: 4px; }
  section { margin-top: 88px; scroll-margin-top: 32px; }
  .phones { display: grid; grid-template-columns: repeat(auto-fill, minmax(232px, 1fr)); gap: 48px 40px; margin-top: 32px; }
  .phones.sequence { grid-template-columns: repeat(auto-fill, minmax(176px, 1fr)); gap: 40px 28px; }
  .phone { display: block; padding: 7px; border-radius: 14.5% / 6.9%; background: #23272a;
           box-shadow: 0 1px 2px rgba(34,38,31,.18), 0 24px 48px -20px rgba(34,38,31,.34); }
  .phone img { display: block; width: 100%; height: auto; border-radius: 12% / 5.6%; }
  figcaption { padding: 18px 4px 0; font-size: 14px; line-height: 1.45; color: var(--soft); }
  figcaption b { display: block; color: var(--ink); font-size: 16px; font-weight: 600; }
  .sequence figcaption { text-align: center; padding-top: 14px; font-variant-numeric: tabular-nums; }
  .sequence figcaption b { font-size: 15px; font-weight: 500; }
  footer { margin-top: 96px; padding-top: 20px; border-top: 1px solid var(--line); color: var(--soft); font-size: 14px; }
)css";

std::string anchor(const GallerySection& section) {
  std::string id;
  for (const char c : section.title) id += std::isalnum(static_cast<unsigned char>(c)) ? c : '-';
  return id;
}

}  // namespace

GalleryPage::GalleryPage(std::filesystem::path folder) : folder_(std::move(folder)) {
  std::error_code error;
  std::filesystem::create_directories(folder_ / pictureFolder, error);
  isWhole_ = !error;
}

void GalleryPage::add(const GalleryPicture& picture) {
  if (parts_.empty() || parts_.back().section.title != picture.section.title) parts_.push_back({picture.section, {}});
  const std::string file = std::string(pictureFolder) + "/" + picture.name + ".png";
  std::ofstream stream(folder_ / file, std::ios::binary);
  stream << picture.image->pngRepresentation();
  if (!stream.flush()) isWhole_ = false;
  parts_.back().frames.push_back({file, picture.title, picture.caption});
}

void GalleryPage::writePart(std::ostream& page, const Part& part) {
  page << "<section id=\"" << escaped(anchor(part.section)) << "\">\n<h2>" << escaped(part.section.title)
       << "</h2>\n<p class=\"lead\">" << escaped(part.section.lead) << "</p>\n<div class=\"phones"
       << (part.section.isSequence ? " sequence" : "") << "\">\n";
  for (const Frame& frame : part.frames) {
    page << "<figure><a class=\"phone\" href=\"" << escaped(frame.file) << "\"><img src=\"" << escaped(frame.file)
         << "\" alt=\"" << escaped(part.section.title + ": " + frame.title) << "\" loading=\"lazy\"></a><figcaption><b>"
         << escaped(frame.title) << "</b>" << escaped(frame.caption) << "</figcaption></figure>\n";
  }
  page << "</div>\n</section>\n";
}

bool GalleryPage::write() {
  std::ofstream page(folder_ / "gallery.html");
  page
      << htmlPage::head("The assistant, state by state", style)
      << "<header><h1>The assistant, state by state</h1>\n<p class=\"lead\">Everything that a customer of the tea shop "
         "sees of the assistant: the button, the chat, what is shown while it works, and how one becomes the "
         "other.</p>\n<nav>";
  for (const Part& part : parts_) {
    page << "<a href=\"#" << escaped(anchor(part.section)) << "\">" << escaped(part.section.title) << "</a>";
  }
  page << "</nav></header>\n";
  for (const Part& part : parts_) writePart(page, part);
  page << "<footer>Each picture is what the screen showed at that moment, two pixels a point. Choose one to see it in "
          "full size.</footer>\n"
       << htmlPage::foot();
  return page.flush() && isWhole_;
}

}  // namespace teashop
