#include "RkUtilities/platform/Modules.h"

#include "RkUtilities/platform/ModuleSearch.h"
#include "RkUtilities/platform/Services.h"

#include <cstdio>
#include <cstdlib>

namespace rk::platform {

template <class Services>
std::string Module<Services>::Load()
{
    if (m_services.load(std::memory_order_acquire) != nullptr)
        return {};
    std::string fault;
    const Services* const services = m_find(fault);
    if (services == nullptr)
        return fault;
    m_services.store(services, std::memory_order_release);
    return {};
}

template <class Services>
const Services& Module<Services>::LoadOrAbort()
{
    const std::string fault = Load();
    if (!fault.empty()) {
        std::fprintf(stderr, "RkUtilities: %s\n", fault.c_str());
        std::abort();
    }
    return *m_services.load(std::memory_order_acquire);
}

template class Module<IcuServices>;
template class Module<XmlServices>;
template class Module<StorageServices>;

constinit Module<IcuServices> icuModule(&FindIcu);
constinit Module<XmlServices> xmlModule(&FindXml);
constinit Module<StorageServices> storageModule(&FindStorage);

std::string LoadServices()
{
    std::string fault = icuModule.Load();
    if (fault.empty())
        fault = xmlModule.Load();
    if (fault.empty())
        fault = storageModule.Load();
    return fault;
}

}  // namespace rk::platform
