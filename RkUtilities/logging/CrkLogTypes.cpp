#include "RkUtilities/logging/CrkLogTypes.h"

constinit const CString CrkLogTypes::LogTypeObjectModel = CString::Literal(u"ObjectModel");
constinit const CString CrkLogTypes::LogTypeCom = CString::Literal(u"COM");
constinit const CString CrkLogTypes::LogTypeVerboseCom = CString::Literal(u"VerboseCOM");
constinit const CString CrkLogTypes::LogTypeKestrelDomain = CString::Literal(u"KestrelDomain");
constinit const CString CrkLogTypes::LogTypeProgressiveLoad = CString::Literal(u"ProgressiveLoad");
constinit const CString CrkLogTypes::LogTypeAsyncAction = CString::Literal(u"AsyncAction");
constinit const CString CrkLogTypes::LogTypeCache = CString::Literal(u"Cache");
constinit const CString CrkLogTypes::LogTypeNotification = CString::Literal(u"Notification");
constinit const CString CrkLogTypes::LogTypeConnection = CString::Literal(u"Connection");
constinit const CString CrkLogTypes::LogTypeApplicationStart = CString::Literal(u"Application Start");
constinit const CString CrkLogTypes::LogTypeApplicationExit = CString::Literal(u"Application Exit");
constinit const CString CrkLogTypes::LogTypeComAddIn = CString::Literal(u"COMAddIn");
