#pragma once

#include <string>

/// Floating-point numbers as C's printf writes them, with "." as decimal point whatever `setlocale` says.
namespace rk::platform {

/// `conversion` is a whole conversion with "*" for width and precision and, for `long double`, "L": "%-+*.*e". A
/// negative precision counts as none. The result is exact: C's digits, rounding of ties included. Safe from any thread.
std::string FormatNumber(const std::string& conversion, int width, int precision, double value);
std::string FormatNumber(const std::string& conversion, int width, int precision, long double value);

}  // namespace rk::platform
