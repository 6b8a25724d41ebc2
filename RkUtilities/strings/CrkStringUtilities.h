#pragma once

#include "RkUtilities/foundation/CAtlArray.h"
#include "RkUtilities/foundation/CAtlList.h"
#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/foundation/RkExport.h"

/// Questions that topic texts, names and lists of names are asked.
///
/// - Texts are sequences of UTF-16 code units; an index counts units from 0 and -1 means not found. A negative start
/// counts
///   as 0; a start past the end of the text finds nothing.
/// - Mind the order of two texts: `FindSubstring` and `FindInString` take the text searched first,
/// `FindCaseInsensitive` and
///   `Find` the text sought.
/// - Without regard to case, the members compare what `CString::MakeUpper` (`FindSubstring`, `FindInString`),
///   `CString::MakeLower` (`FindCaseInsensitive`, search form) or `CString::CompareNoCase` (the others) make of the
///   texts, unit by unit.
/// - A word is made of letters and digits (`IsCharAlphaNumeric`); everything else, "_" included, ends it.
/// - Nothing is kept and no argument is changed: safe from any thread, as long as no other thread changes a list or
/// array
///   meanwhile. Memory exhausted is `std::bad_alloc`; nothing else is thrown.
class RK_EXPORT CrkStringUtilities {
public:
    // --- Searching in a text
    // ----------------------------------------------------------------------------------------------

    /// Where `sought` stands in `text`, both zero-terminated; null counts as the empty text.
    ///
    /// With `wholeWord`, a match counts only between units that are no word characters. The unit before a match at the
    /// very start of a pass is not looked at; the first pass starts at `start`, and one that follows a rejected match
    /// at its end:
    ///
    ///     "cat" in "concatenate cat"  ->  12
    ///     "cat" in "cat_s"            ->  0
    ///     "cat" in "bobcat", start 3  ->  3
    ///     "ab" in "abab"              ->  2
    ///
    /// An empty text is found at `start`. With `wholeWord` it is found there only if no word character follows, else
    /// nowhere.
    static int FindSubstring(unsigned short const* text, unsigned short const* sought, bool matchCase, bool wholeWord,
                             int start);
    /// Whether `FindSubstring` finds `sought` in `text`.
    static bool FindInString(CString text, CString sought, bool matchCase, bool wholeWord, int start);
    /// Where `sought` stands in `text` at or after `start`, in any case.
    static int FindCaseInsensitive(const CString& sought, const CString& text, int start);

    // --- Searching in lists
    // -------------------------------------------------------------------------------------------------

    /// The position of the first element that equals `sought` in any case; a null position when there is none.
    static POSITION FindCaseInsensitive(const CString& sought, const CAtlList<CString>* list);
    /// The index of the first element that equals `sought` exactly.
    static int Find(const CString& sought, const CAtlArray<CString>* array);

    // --- Beginnings and ends
    // ------------------------------------------------------------------------------------------------

    /// Whether the text begins / ends with another one. Every text begins and ends with the empty text.
    static bool BeginsWith(const CString& text, const CString& prefix, bool ignoreCase);
    static bool EndsWith(const CString& text, const CString& suffix, bool ignoreCase);
    /// The text without `prefix`; unchanged when it does not begin with it exactly.
    static CString RemovePrefix(const CString& text, const CString& prefix);
    /// The first / the last unit, after `CString::Trim` when asked for; 0 when there is none.
    static unsigned short GetFirstChar(CString text, bool trimFirst);
    static unsigned short GetLastChar(CString text, bool trimFirst);

    // --- Single units
    // -------------------------------------------------------------------------------------------------------

    /// How many units of the text equal `unit`.
    static int CountOccurrences(const CString& text, unsigned short unit);
    /// The index of the last unit that occurs in `set`.
    static int ReverseFindOneOf(const CString& text, const CString& set);
    /// Whether all units are 0x20 or less, as in the empty text. A no-break space (0xA0) and DEL (0x7F) are not blank.
    static bool IsBlank(const CString& text);
};
