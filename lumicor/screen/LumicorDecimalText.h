#pragma once

#include <string>

namespace lumicor {

/// The shortest decimal text that reads back as the same number, always with a fraction or an exponent: "120.0", "0.5",
/// "1e+16". Numbers that are none or infinite read "nan", "inf" and "-inf".
std::string decimalText(double value);
std::string decimalText(float value);

}  // namespace lumicor
