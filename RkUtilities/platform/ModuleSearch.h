#pragma once

#include <string>

/// Where the services of a module come from: `LoadedModules.cpp` looks for its file, `LinkedModules.cpp` is for the static
/// library, which holds them. Null with the reason when there are none.
namespace rk::platform {

struct IcuServices;
struct XmlServices;
struct StorageServices;

const IcuServices* FindIcu(std::string& fault);
const XmlServices* FindXml(std::string& fault);
const StorageServices* FindStorage(std::string& fault);

}  // namespace rk::platform
