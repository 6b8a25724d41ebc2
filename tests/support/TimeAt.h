#pragma once

#include "RkUtilities/foundation/CTime.h"

#include <ctime>

inline CTime At(std::time_t utcSeconds) {
    return CTime::FromCFAbsoluteTime(static_cast<double>(utcSeconds - 978307200));
}
