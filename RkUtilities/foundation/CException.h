#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/CObject.h"

/// The base of the exceptions that are thrown as pointers to objects made with `new`, as `CFileException` shows.
class RK_EXPORT RK_DESCRIBED CException : public CObject {
public:
    ~CException() override;

    /// Disposes of an exception that was caught as a pointer; it must not be used afterwards.
    /// Only for objects made with `new`: an exception in a variable goes with its scope.
    void Delete();

protected:
    CException() = default;
    CException(const CException&) = default;             ///< Nothing to copy.
    CException& operator=(const CException&) = default;  ///< Nothing to copy.
};
