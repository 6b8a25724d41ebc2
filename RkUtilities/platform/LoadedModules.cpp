#include "RkUtilities/platform/ModuleSearch.h"
#include "RkUtilities/platform/icu/IcuServices.h"
#include "RkUtilities/platform/storage/StorageServices.h"
#include "RkUtilities/platform/xml/XmlServices.h"

#include <array>
#include <climits>
#include <dlfcn.h>
#include <filesystem>
#include <link.h>
#include <system_error>

namespace rk::platform {

namespace {

/// The folder in which the loader found the library's own file, and the one of the file that a link there leads to. Both
/// are absolute, wherever the current folder is by now; what the environment says about libraries plays no part.
std::array<std::string, 2> OwnFolders()
{
    static const char inThisFile = 0;
    Dl_info own{};
    void* file = nullptr;
    std::array<char, 4UL * PATH_MAX> folder{};
    if (dladdr1(&inThisFile, &own, &file, RTLD_DL_LINKMAP) == 0 || dlinfo(file, RTLD_DI_ORIGIN, folder.data()) != 0)
        return {};
    const std::filesystem::path found(folder.data());
    std::error_code ignored;
    const std::filesystem::path real =
        std::filesystem::canonical(found / std::filesystem::path(own.dli_fname).filename(), ignored).parent_path();
    return {found.string(), real == found ? std::string() : real.string()};
}

/// The entry of a module; null with the reason when there is none.
void* LoadEntry(const std::string& file, const std::string& entry, std::string& fault)
{
    void* const module = dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    void* const address = module != nullptr ? dlsym(module, entry.c_str()) : nullptr;
    if (address == nullptr) {
        const char* const reason = dlerror();
        fault = reason != nullptr ? reason : "unknown error";
        if (!fault.starts_with(file))
            fault.insert(0, file + ": ");
    }
    return address;
}

template <class Services>
const Services* Find(const std::string& name, std::string& fault)
{
    fault = "the library's own folder is not known";
    for (const std::string& folder : OwnFolders()) {
        if (folder.empty())
            continue;
        const std::string file = std::string(folder).append("/lib").append(name).append(RKUTILITIES_MODULE_SUFFIX);
        void* const entry = LoadEntry(file, name, fault);
        if (entry == nullptr)
            continue;
        const Services* const services = reinterpret_cast<const Services* (*)() noexcept>(entry)();
        if (services->stamp == ModuleStamp{.servicesByteCount = sizeof(Services)})
            return services;
        fault = file + ": does not belong to version " RKUTILITIES_VERSION;
    }
    return nullptr;
}

}  // namespace

const IcuServices* FindIcu(std::string& fault)
{
    return Find<IcuServices>("RkUtilitiesIcu", fault);
}

const XmlServices* FindXml(std::string& fault)
{
    return Find<XmlServices>("RkUtilitiesXml", fault);
}

const StorageServices* FindStorage(std::string& fault)
{
    return Find<StorageServices>("RkUtilitiesStorage", fault);
}

}  // namespace rk::platform
