#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/CString.h"

/// The application's table of named colors. The application derives a table and sets it, so that a color can be shown
/// by its name in the user's language. The library neither copies nor deletes the table; the application keeps it alive
/// while it is set, sets it before threads ask for texts, and does not change it while they do.
class RK_EXPORT CrkBaseColorTable {
public:
    /// A color with the name of its text.
    struct ColorEntry {
        unsigned int argb;  ///< 0xAARRGGBB, compared exactly, alpha included
        char const* key;    ///< of the text in the application's string tables (`CString::LoadString`); null: no text
    };

    virtual ColorEntry const* GetColorEntries() = 0;  ///< The first of the entries, which the table owns.
    virtual int GetColorCount() = 0;  ///< The number of entries; 0 or less when the table has no entries.

    /// The table that is set; null when no table is set, as at the start.
    static void Set(CrkBaseColorTable* table) noexcept;
    static CrkBaseColorTable* Get() noexcept;  ///< The table that is set, or null.
    /// The text for a `COLORREF`: the text of the first entry with the same opaque ARGB value, in the user's language.
    /// Without a table, an entry or a text: the red, green and blue byte in hexadecimal digits, "{FF,80,00}".
    static CString GetColorText(unsigned int color);

protected:
    CrkBaseColorTable() = default;
    CrkBaseColorTable(const CrkBaseColorTable&) = default;  ///< Copies nothing: a table has no state of its own.
    CrkBaseColorTable& operator=(const CrkBaseColorTable&) = default;  ///< Copies nothing.
    ~CrkBaseColorTable() = default;
};
