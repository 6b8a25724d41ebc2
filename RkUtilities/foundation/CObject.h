#pragma once

#include "RkUtilities/RkExport.h"

/// What an object can tell about its class at run time.
struct CRuntimeClass {
    const char* m_lpszClassName;  ///< the name as written in C++, zero-terminated
    int m_nObjectSize;            ///< sizeof an object of the class, in bytes
};

/// The common base of the library's object classes: they may be deleted through it.
/// The order of the virtual members is part of the interface. Only derived classes construct, copy and assign it.
class RK_EXPORT RK_DESCRIBED CObject {
public:
    /// The record of the object's class; a class that does not override it answers with CObject's. Never null.
    virtual const CRuntimeClass* GetRuntimeClass() const;
    virtual ~CObject();

protected:
    CObject() = default;
    CObject(const CObject&) = default;             ///< Nothing to copy.
    CObject& operator=(const CObject&) = default;  ///< Nothing to copy.
};
