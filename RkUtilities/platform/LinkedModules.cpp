#include "RkUtilities/platform/ModuleSearch.h"
#include "RkUtilities/platform/icu/IcuServices.h"
#include "RkUtilities/platform/storage/StorageServices.h"
#include "RkUtilities/platform/xml/XmlServices.h"

namespace rk::platform {

const IcuServices* FindIcu(std::string& /*fault*/)
{
    return RkUtilitiesIcu();
}

const XmlServices* FindXml(std::string& /*fault*/)
{
    return RkUtilitiesXml();
}

const StorageServices* FindStorage(std::string& /*fault*/)
{
    return RkUtilitiesStorage();
}

}  // namespace rk::platform
