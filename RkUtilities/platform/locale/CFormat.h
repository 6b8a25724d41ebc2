#pragma once

#include <string>

/// Numbers as C's printf writes them, with "." as decimal point whatever `setlocale` says.
namespace rk::platform {

/// `conversion` is a whole conversion with "*" for width and precision and the length of `Number`: "%-+*.*Le". A
/// negative precision counts as no precision. The result is exact: C's digits and ties. Safe from any thread.
template <class Number>
std::string FormatNumber(const std::string& conversion, int width, int precision, Number number);

extern template std::string FormatNumber(const std::string&, int, int, double);
extern template std::string FormatNumber(const std::string&, int, int, long double);
extern template std::string FormatNumber(const std::string&, int, int, long long);
extern template std::string FormatNumber(const std::string&, int, int, unsigned long long);
extern template std::string FormatNumber(const std::string&, int, int, const void*);

}  // namespace rk::platform
