#pragma once

#include <atomic>
#include <string>

/// What stands on ICU, expat and SQLite is in modules, one for each, which the shared library loads when a call first
/// needs them: a program that does not, or not yet, does not pay for loading those libraries. The static library holds
/// the modules itself.
///
/// A module that is not there, of another version, or cannot be loaded for lack of memory, ends the program (`std::abort`)
/// with a line on standard error, as a missing shared library does.
///
/// Loading takes the lock of the system's loader, and whoever holds that may be in a static initialiser that calls us:
/// so no lock of ours, nor the guard of a local static, may be held when a module is asked for the first time.
/// Everything is safe from any thread.
namespace rk::platform {

struct IcuServices;
struct XmlServices;
struct StorageServices;

template <class Services>
class Module {
public:
    /// `find` gives the services that are there, else null with the reason.
    explicit constexpr Module(const Services* (*find)(std::string& fault)) noexcept : m_find(find) {}

    /// The services of the module, loaded by the first call. The others cost one atomic load.
    const Services& Get()
    {
        const Services* const services = m_services.load(std::memory_order_acquire);
        return services != nullptr ? *services : LoadOrAbort();
    }

    /// Why the module cannot be loaded; "" when it is.
    [[nodiscard]] std::string Load();

private:
    const Services& LoadOrAbort();

    const Services* (*m_find)(std::string& fault);
    std::atomic<const Services*> m_services = nullptr;  // each thread that loads it stores the same
};

extern Module<IcuServices> icuModule;
extern Module<XmlServices> xmlModule;
extern Module<StorageServices> storageModule;

inline const IcuServices& Icu()
{
    return icuModule.Get();
}
inline const XmlServices& Xml()
{
    return xmlModule.Get();
}
inline const StorageServices& Storage()
{
    return storageModule.Get();
}

}  // namespace rk::platform
