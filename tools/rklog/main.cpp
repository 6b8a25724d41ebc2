#include "rklog/Program.h"

#include <clocale>
#include <iostream>
#include <unistd.h>

int main(int count, char** arguments) {
    std::setlocale(LC_ALL, "");  // the dates of a log are in its writer's language, who is often the reader
    std::ios::sync_with_stdio(false);
    return rklog::RunProgram({arguments + 1, arguments + count}, isatty(STDOUT_FILENO) == 1, std::cout, std::cerr);
}
