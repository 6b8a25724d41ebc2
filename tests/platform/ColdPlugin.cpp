// A plug-in whose static initialiser calls into ColdProgram; under the name of a module, one of another version.
#include <cstddef>
#include <string_view>

extern "C" void RkPluginIsLoading();

namespace {

const bool wasCalled = (RkPluginIsLoading(), true);

}  // namespace

namespace rk::platform {

struct IcuServices {
    std::string_view version = "0.0.1";
    std::size_t servicesByteCount = 0;
};

}  // namespace rk::platform

extern "C" __attribute__((visibility("default"))) const rk::platform::IcuServices* RkUtilitiesIcu() noexcept
{
    static constexpr rk::platform::IcuServices kServices;
    return wasCalled ? &kServices : nullptr;
}
