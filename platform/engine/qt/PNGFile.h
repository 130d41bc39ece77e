#pragma once

#include <string_view>

namespace platform {

/// True when a PNG file is all there: every part has a name, and those that the picture needs are what their checksums
/// say, up to the last one. A file that is not gives no picture anyway; but libpng, which Qt reads with, tells so on
/// the host's standard error, past everything that could keep it from that.
bool isWholePNG(std::string_view data);

}  // namespace platform
