#pragma once

#include "RkUtilities/RkExport.h"

#include <stdexcept>
#include <string>

/// The log folder is missing and could not be created. `CrkLogWriter::Log` throws it, by value, after it has released
/// its mutex.
class RK_EXPORT RK_DESCRIBED CrkLogException : public std::runtime_error {
public:
    CrkLogException() : std::runtime_error("The log folder cannot be made") {}
    /// `what()` names the folder, in UTF-8.
    explicit CrkLogException(const std::string& folder)
        : std::runtime_error("The log folder cannot be made: " + folder) {}
};
