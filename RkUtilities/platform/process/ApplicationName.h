#pragma once

#include <string>
#include <string_view>

/// The application's name, under which it keeps preferences and writes its log. Safe from any thread.
namespace rk::platform {

/// Names the application; "" names it after its executable. A byte 0 reads as "_".
void NameApplication(std::string_view name);

/// The name that was set, else the file name of the executable; "" while that cannot be read.
std::string ApplicationName();

}  // namespace rk::platform
