// A program that does nothing, built without the library, with it, and to load its services at once. Asked to, it tells in
// bytes the memory that it has written to and shares with nobody.
#ifdef LOADS_SERVICES
#    include "RkUtilities/platform/Services.h"
#endif

#include <cstdio>
#include <fstream>
#include <string>

int main(int argc, char**)
{
#ifdef LOADS_SERVICES
    if (!rk::platform::LoadServices().empty())
        return 1;
#endif
    if (argc < 2)
        return 0;
    std::ifstream map("/proc/self/smaps_rollup");
    long kilobytes = 0;
    for (std::string line; std::getline(map, line);) {
        if (line.starts_with("Private_Dirty"))
            kilobytes += std::stol(line.substr(line.find(':') + 1));
    }
    std::printf("%ld\n", kilobytes * 1024);
}
