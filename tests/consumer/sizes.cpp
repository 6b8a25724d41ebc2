// Prints the size of every type that crosses the library's boundary: the same with whatever macros a program is built.
#include <RkUtilities/RkUtilities.h>

#include <iostream>

template <class... Types> void Print() { ((std::cout << sizeof(Types) << ' ' << alignof(Types) << '\n'), ...); }

int main() {
    Print<CString, rk::TextView, StUTF8Buffer, CTime, CTimeSpan, COleDateTime, COleDateTimeSpan, CFile, CFileStatus>();
    Print<CObject, CException, ATL::CAtlException, CFileException, rk::FormatError, rk::LogState, CFUUIDBytes>();
    Print<CAtlArray<CString>, CAtlList<CString>, CAtlMap<CString, int>, CAtlMap<CString, CrkGuid>::CPair, POSITION>();
    Print<CrkGuid, CrkFloatPoint, CrkFloatRect, CrkFloatVector2D, CrkFloatMargin, CrkFloatSize, CGAffineTransform>();
    Print<CrkLogSettings, CrkLogWriter, CrkLogException, CrkBaseColorTable, CrkBaseColorTable::ColorEntry>();
    Print<SECFileSystem, SECRegistry, SECRegistry::Value, CrkRegistry, rk::PreferenceState>();
}
