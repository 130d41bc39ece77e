#include "examples/teashop/demo/HtmlPage.h"

namespace teashop::htmlPage {

namespace {

constexpr const char* commonStyle = R"css(
  :root { --ink: #22261f; --soft: #6b716d; --line: #e6e1d8; --leaf: #1f4d3a; --paper: #faf7f2; }
  body { margin: 0; background: var(--paper); color: var(--ink); font: 16px/1.5 Inter, system-ui, sans-serif; }
  main { max-width: 1080px; margin: 0 auto; padding: 48px 24px 96px; }
  h1 { font-size: 32px; letter-spacing: -0.02em; margin: 0 0 8px; }
  h2 { font-size: 20px; margin: 56px 0 16px; }
  .lead { color: var(--soft); max-width: 640px; margin: 0 0 24px; }
  figure { margin: 0; }
)css";

}  // namespace

std::string escaped(std::string_view text) {
  std::string out;
  for (const char c : text) {
    switch (c) {
      case '&':
        out += "&amp;";
        break;
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '"':
        out += "&quot;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

std::string head(std::string_view title, std::string_view style) {
  return "<!doctype html>\n<html lang=\"en\"><head><meta charset=\"utf-8\"><title>" + escaped(title) +
         "</title><meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"><style>" + commonStyle +
         std::string(style) + "</style></head><body><main>\n";
}

std::string foot() { return "</main></body></html>\n"; }

}  // namespace teashop::htmlPage
