#pragma once

#include "RkUtilities/RkExport.h"

/// The log folder is missing and could not be created. `CrkLogWriter::Log` throws it, by value, after it has released
/// its mutex.
class RK_EXPORT CrkLogException {
public:
    CrkLogException() = default;
    CrkLogException(const CrkLogException&) = default;
    CrkLogException& operator=(const CrkLogException&) = default;
    virtual ~CrkLogException() = default;
};
