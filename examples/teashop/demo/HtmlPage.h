#pragma once

#include <string>
#include <string_view>

namespace teashop {

/// What the pages that the demo writes have in common: their look, and how text gets into them. They hold no scripts
/// and ask nobody for anything, so that they work from a disk.
namespace htmlPage {

/// Text as it may stand in an element or in a quoted attribute.
std::string escaped(std::string_view text);
/// From the first line to the open <main>; `style` is CSS that comes behind the common one.
std::string head(std::string_view title, std::string_view style);
/// What closes the page.
std::string foot();

}  // namespace htmlPage

}  // namespace teashop
