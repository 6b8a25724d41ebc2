#pragma once

#include "RkUtilities/foundation/CAtlArray.h"
#include "RkUtilities/foundation/CAtlList.h"
#include "RkUtilities/foundation/CAtlMap.h"
#include "RkUtilities/foundation/CString.h"

#include <cstdint>

/// Type names that older code on class interfaces uses, for moving such code here. The umbrella leaves this header out:
/// the names are short and global, and new code does without them. `docs/migrating.md` tells what has the same name
/// and another result.

using BOOL = int;                      ///< A truth as an integer; `bool` converts to it and back.
using BYTE = std::uint8_t;             ///< 8 bits without a sign.
using WORD = std::uint16_t;            ///< 16 bits without a sign. No code unit: see `TCHAR`.
using DWORD = std::uint32_t;           ///< 32 bits without a sign.
using UINT = unsigned int;             ///< 32 bits without a sign.
using INT = int;                       ///< 32 bits.
using LONG = std::int32_t;             ///< 32 bits, where C's `long` has 64.
using ULONG = std::uint32_t;           ///< 32 bits without a sign, where C's `unsigned long` has 64.
using LONGLONG = long long;            ///< 64 bits.
using ULONGLONG = unsigned long long;  ///< 64 bits without a sign.
using INT_PTR = std::intptr_t;         ///< An integer as wide as a pointer.
using UINT_PTR = std::uintptr_t;       ///< The same without a sign.
using DWORD_PTR = std::uintptr_t;      ///< The same without a sign.

using TCHAR = char16_t;           ///< A code unit of a text; always of 16 bits.
using LPTSTR = TCHAR*;            ///< A zero-terminated text that may be changed.
using LPCTSTR = const TCHAR*;     ///< A zero-terminated text.
using LPCWSTR = const char16_t*;  ///< A zero-terminated text; no `wchar_t`, which has 32 bits here.
using LPSTR = char*;              ///< A zero-terminated UTF-8 text that may be changed.
using LPCSTR = const char*;       ///< A zero-terminated UTF-8 text, where older systems had a code page.
using LPVOID = void*;             ///< Memory.
using LPCVOID = const void*;      ///< Memory that is only read.

using CStringArray = CAtlArray<CString>;               ///< Texts by index.
using CStringList = CAtlList<CString>;                 ///< Texts, linked.
using CByteArray = CAtlArray<BYTE>;                    ///< Bytes by index.
using CDWordArray = CAtlArray<DWORD>;                  ///< Numbers by index.
using CUIntArray = CAtlArray<UINT>;                    ///< Numbers by index.
using CMapStringToString = CAtlMap<CString, CString>;  ///< Texts by their names.
using CMapStringToPtr = CAtlMap<CString, void*>;       ///< Pointers by their names.

#ifndef TRUE
#    define TRUE 1   ///< Truth as a `BOOL`.
#    define FALSE 0  ///< Its opposite.
#endif

/// The literal as a UTF-16 text: `_T("name")` is `u"name"`.
#define _T(literal) RK_UNITS_OF(literal)    // NOLINT(bugprone-reserved-identifier): the name is given
#define TEXT(literal) RK_UNITS_OF(literal)  ///< The same as `_T`.
#define RK_UNITS_OF(literal) u##literal     ///< What `_T` and `TEXT` are made with.
