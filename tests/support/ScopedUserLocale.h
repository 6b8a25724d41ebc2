#pragma once

#include "RkUtilities/platform/UserLocale.h"

/// The user has this locale meanwhile ("de_DE"); "" is the process's own.
class ScopedUserLocale {
public:
    explicit ScopedUserLocale(const char* name) { rk::platform::SetUserLocale(name); }
    ~ScopedUserLocale() { rk::platform::SetUserLocale(""); }
    ScopedUserLocale& operator=(ScopedUserLocale&&) = delete;  // nor a copy
};
