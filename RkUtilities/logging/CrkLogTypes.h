#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/CString.h"

/// The names of the predefined log categories, so that all callers write them alike. Any other text is a category too.
/// An entry without a category is in "General", which has no name here.
/// The names need no code to come into being: initialisers of other files may use them.
class RK_EXPORT CrkLogTypes {
public:
    static const CString LogTypeObjectModel;       ///< "ObjectModel"
    static const CString LogTypeCom;               ///< "COM"
    static const CString LogTypeVerboseCom;        ///< "VerboseCOM"
    static const CString LogTypeKestrelDomain;     ///< "KestrelDomain"
    static const CString LogTypeProgressiveLoad;   ///< "ProgressiveLoad"
    static const CString LogTypeAsyncAction;       ///< "AsyncAction"
    static const CString LogTypeCache;             ///< "Cache"
    static const CString LogTypeNotification;      ///< "Notification"
    static const CString LogTypeConnection;        ///< "Connection"
    static const CString LogTypeApplicationStart;  ///< "Application Start", with the space
    static const CString LogTypeApplicationExit;   ///< "Application Exit", with the space
    static const CString LogTypeComAddIn;          ///< "COMAddIn"
};
