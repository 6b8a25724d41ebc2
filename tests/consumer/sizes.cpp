// Prints the size of every type that crosses the library's boundary: the same with whatever macros a program is built.
#include <RkUtilities/RkUtilities.h>

#include <iostream>

template <class... Types> void Print() { ((std::cout << sizeof(Types) << ' ' << alignof(Types) << '\n'), ...); }

int main() {
    Print<CString, StUTF8Buffer, CTime, CTimeSpan, COleDateTime, COleDateTimeSpan, CFile, CFileStatus,
          CFileException>();
    Print<CAtlArray<CString>, CAtlList<CString>, CAtlMap<CString, int>, CAtlMap<CString, CrkGuid>::CPair, POSITION>();
    Print<CrkGuid, CrkFloatPoint, CrkFloatRect, CrkFloatVector2D, CrkLogSettings, CrkLogWriter, CrkLogException>();
    Print<SECFileSystem, SECRegistry, CrkRegistry, rk::PreferenceState, rk::FormatError>();
}
