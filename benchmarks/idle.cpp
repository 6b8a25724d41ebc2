// A program that does nothing, built with the library and without it. Asked to, it tells its private memory in bytes.
#include <cstdio>
#include <fstream>
#include <string>

int main(int argc, char**)
{
    if (argc < 2)
        return 0;
    std::ifstream map("/proc/self/smaps_rollup");
    long kilobytes = 0;
    for (std::string line; std::getline(map, line);) {
        if (line.starts_with("Private_"))
            kilobytes += std::stol(line.substr(line.find(':') + 1));
    }
    std::printf("%ld\n", kilobytes * 1024);
}
