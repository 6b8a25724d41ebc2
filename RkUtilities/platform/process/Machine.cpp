#include "RkUtilities/platform/process/Machine.h"

#include <sys/utsname.h>
#include <unistd.h>

namespace rk::platform {

namespace {

utsname Names() noexcept {
    utsname names{};
    uname(&names);
    return names;
}

}  // namespace

int ProcessId() noexcept { return getpid(); }

std::string HostName() { return Names().nodename; }

std::string SystemName() {
    const utsname names = Names();
    return std::string(names.sysname) + ' ' + names.release + ' ' + names.machine;
}

}  // namespace rk::platform
