#include "RkUtilities/foundation/StringTables.h"

#include "RkUtilities/platform/locale/StringTables.h"

namespace rk {

bool SetStringTables(std::string_view folder) { return platform::NameStringTables(folder); }

}  // namespace rk
