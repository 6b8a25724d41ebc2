#pragma once

#include "RkUtilities/foundation/UserLocale.h"

/// The user has this locale meanwhile ("de_DE"); "" is the process's own.
class ScopedUserLocale {
public:
    explicit ScopedUserLocale(const char* name) { rk::SetUserLocale(name); }
    ~ScopedUserLocale() { rk::SetUserLocale(""); }
    ScopedUserLocale& operator=(ScopedUserLocale&&) = delete;  // nor a copy
};
