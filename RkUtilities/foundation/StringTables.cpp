#include "RkUtilities/foundation/StringTables.h"

#include "RkUtilities/platform/locale/StringTables.h"

namespace rk {

void SetStringTables(std::string_view folder)
{
    platform::NameStringTables(folder);
}

}  // namespace rk
