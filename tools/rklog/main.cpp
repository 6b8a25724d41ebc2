#include "rklog/Program.h"

#include <clocale>
#include <iostream>
#include <unistd.h>

int main(int count, char** arguments) {
    std::setlocale(LC_ALL, "");  // a log's dates are in the language of its writer, who often is its reader too
    std::ios::sync_with_stdio(false);
    return rklog::RunProgram({arguments + 1, arguments + count}, isatty(STDOUT_FILENO) == 1, std::cout, std::cerr);
}
