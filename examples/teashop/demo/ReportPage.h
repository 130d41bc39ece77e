#pragma once

#include <filesystem>
#include <iosfwd>
#include <vector>

#include "examples/teashop/demo/DemoReport.h"

namespace teashop {

/// What the reports of the demo are made of, as HTML.
namespace reportPage {

/// CSS, to stand behind the common one.
extern const char* const style;
/// "1.5 s"
std::string secondsText(double seconds);
void writeStages(std::ostream& page, const std::vector<DemoReport::Stage>& stages);
void writeChecks(std::ostream& page, const std::vector<DemoReport::Check>& checks);
/// Every call to the service that the file holds; nothing when there is no file.
void writeExchange(std::ostream& page, const std::filesystem::path& file);

}  // namespace reportPage

}  // namespace teashop
