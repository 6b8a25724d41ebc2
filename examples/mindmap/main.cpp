#include "mindmap/program/Program.h"

#include <clocale>
#include <iostream>

int main(int count, char** arguments) {
    std::setlocale(LC_ALL, "");  // the log's times are in the user's language
    return mindmap::RunProgram({arguments + 1, arguments + count}, std::cin, std::cout, std::cerr);
}
