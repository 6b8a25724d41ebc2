// A program that does nothing, built without the library and with it. With an argument it prints the bytes that it has
// written to, which it shares with no other process.
#include <cstdio>
#include <fstream>
#include <string>

int main(int argc, char**) {
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
