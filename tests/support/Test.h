// What most tests are written with: the library, the frame, and what a test changes for a while.
#pragma once

#include "RkUtilities/RkUtilities.h"

#include "tests/support/ScopedFolder.h"
#include "tests/support/ScopedVariable.h"

#include <algorithm>
#include <array>
#include <climits>
#include <clocale>
#include <cmath>
#include <gmock/gmock.h>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <string_view>
#include <thread>
#include <tuple>
#include <utility>
#include <vector>

/// Fewer than `end` units of the alphabet.
inline std::u16string AnyText(std::mt19937& random, std::u16string_view alphabet, std::size_t end) {
    std::u16string text(random() % end, u'\0');
    for (char16_t& unit : text)
        unit = alphabet[random() % alphabet.size()];
    return text;
}

inline CTime At(std::time_t utcSeconds) { return CTime::FromTimeT(utcSeconds); }

/// The user has this locale meanwhile ("de_DE"); "" is the process's own.
class ScopedUserLocale {
public:
    explicit ScopedUserLocale(const char* name) { rk::SetUserLocale(name); }
    ~ScopedUserLocale() { rk::SetUserLocale(""); }
    ScopedUserLocale& operator=(ScopedUserLocale&&) = delete;  // nor a copy
};

/// The C library speaks German in a category meanwhile: the build makes this locale, and LOCPATH leads to it.
class ScopedGermanProcess {
public:
    explicit ScopedGermanProcess(int category = LC_ALL) { Add(category); }
    ~ScopedGermanProcess() { std::setlocale(LC_ALL, "C"); }
    ScopedGermanProcess& operator=(ScopedGermanProcess&&) = delete;  // nor a copy
    static void Add(int category) { EXPECT_NE(std::setlocale(category, "de_DE.UTF-8"), nullptr); }
};
