#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/CAtlArray.h"
#include "RkUtilities/foundation/CAtlList.h"
#include "RkUtilities/foundation/CAtlMap.h"
#include "RkUtilities/foundation/CElementTraits.h"
#include "RkUtilities/foundation/CString.h"

#include <concepts>
#include <initializer_list>
#include <string_view>

/// What an application asks of topic texts, names and lists of names, and makes of them.
///
/// - Texts are sequences of UTF-16 code units; an index counts units from 0 and -1 means not found. A negative start
///   counts as 0; a start past the end of the text finds nothing.
/// - Mind the order of two texts: `FindSubstring` and `FindInString` take the text searched first,
///   `FindCaseInsensitive` and `Find` the text sought.
/// - Without regard to case, the members compare what `CString::MakeUpper` (`FindSubstring`, `FindInString`),
///   `CString::MakeLower` (`FindCaseInsensitive`, search form) or `CString::CompareNoCase` (the others) make of the
///   texts, unit by unit.
/// - A word is made of letters and digits (`IsCharAlphaNumeric`); everything else, "_" included, ends it.
/// - Nothing is kept: safe from any thread, as long as no other thread changes an argument meanwhile. Nothing throws
///   but `std::bad_alloc`, `ATL::CAtlException` where a container is filled, and `std::length_error` for a result that
///   a `CString` cannot hold.
class RK_EXPORT CrkStringUtilities {
public:
    // --- Searching in a text

    /// Where `sought` stands in `text`. With `wholeWord`, a match counts only between other units than word characters.
    /// The unit before a match at the very start of a pass is not looked at; the first pass starts at `start`, each
    /// later pass at the end of the match that was rejected:
    ///
    ///     "cat" in "concatenate cat"  ->  12
    ///     "cat" in "cat_s"            ->  0
    ///     "cat" in "bobcat", start 3  ->  3
    ///     "ab" in "abab"              ->  2
    ///
    /// An empty text is found at `start`. With `wholeWord` it is found there only if no word character follows, else
    /// nowhere.
    static int FindSubstring(rk::TextView text, rk::TextView sought, bool matchCase, bool wholeWord, int start);
    /// Whether `FindSubstring` finds `sought` in `text`.
    static bool FindInString(CString text, CString sought, bool matchCase, bool wholeWord, int start);
    /// Where `sought` stands in `text` at or after `start`, in any case.
    static int FindCaseInsensitive(const CString& sought, const CString& text, int start);

    // --- Searching in lists: a null pointer is an empty list

    /// The position of the first element that equals `sought` in any case; null without such an element.
    static POSITION FindCaseInsensitive(const CString& sought, const CAtlList<CString>* list);
    /// The index of the first element that equals `sought` exactly.
    static int Find(const CString& sought, const CAtlArray<CString>* array);

    // --- Beginnings and ends

    /// Whether the text begins with `prefix`. Every text begins and ends with the empty text.
    static bool BeginsWith(const CString& text, const CString& prefix, bool ignoreCase);
    /// Whether the text ends with `suffix`.
    static bool EndsWith(const CString& text, const CString& suffix, bool ignoreCase);
    /// The text without `prefix`; unchanged when it does not begin with it exactly.
    static CString RemovePrefix(const CString& text, const CString& prefix);
    /// The first unit, after `CString::Trim` when asked for; 0 for an empty text.
    static unsigned short GetFirstChar(CString text, bool trimFirst);
    /// The last unit, as `GetFirstChar` gives the first.
    static unsigned short GetLastChar(CString text, bool trimFirst);

    // --- Single units

    /// How many units of the text equal `unit`.
    static int CountOccurrences(const CString& text, unsigned short unit);
    /// The index of the last unit that occurs in `set`.
    static int ReverseFindOneOf(const CString& text, const CString& set);
    /// Whether all units are 0x20 or less, as in the empty text. A no-break space (0xA0) and DEL (0x7F) are not blank.
    static bool IsBlank(const CString& text);

    // --- Making texts safe to show and to store

    /// A note, in place: keeps tab, LF and CR, removes every other control character (0x00 to 0x1F) and DEL (0x7F).
    static void RemoveInvalidNotesCharacters(CString& text);
    /// A formatted tooltip, in place: "<br>" (exactly so) becomes LF, a tab four spaces, 0x18 a space; CR, every other
    /// control character but LF, and DEL are removed.
    static void RemoveInvalidTooltipCharacters(CString& text);
    /// A plain tooltip, in place: "<" becomes "<<", a tab four spaces, 0x18 a space. Nothing else changes.
    static void FixInvalidUnformattedTooltipCharacters(CString& text);
    /// A topic's text: keeps tab, LF and CR; a form feed becomes CR LF; every other control character, DEL and whatever
    /// is no `CrkXmlUtilities::IsChar` becomes a space. Other planes' characters become two spaces.
    static CString ReplaceInvalidTopicTextCharacters(const CString& text);
    /// The text with CR LF in the place of each LF that has no CR before it; a lone CR stays.
    static CString ConvertLFsToCRLFPairs(const CString& text);
    static CString RemoveCRLF(const CString& text);  ///< The text without CR and LF.
    /// Whether a unit is neither 0x00 to 0x1F nor DEL. C1 controls and surrogates count as printable.
    static bool IsCharPrintable(unsigned short unit);
    /// What stands before the first space, tab, CR or LF, and "..." when more follows: "Hello..." for "Hello world".
    static CString CondenseString(const CString& text);

    // --- Formatting

    /// The text that `CString::Format` makes; "" when the format cannot be carried out (a missing or wrong argument,
    /// "%n", memory exhausted): nothing is thrown.
    template <class... Arguments> static CString Format(rk::TextView format, const Arguments&... arguments) noexcept {
        try {
            const std::initializer_list<rk::FormatArgument> list{rk::FormatArgument(arguments)...};
            return rk::FormattedText(format, list.begin(), list.size());
        } catch (...) {
            return {};
        }
    }
    /// The same as `Format`.
    template <class... Arguments>
    static CString FormatOrdered(rk::TextView format, const Arguments&... arguments) noexcept {
        return Format(format, arguments...);
    }
    /// The text, in which a lone surrogate becomes U+FFFD, followed by the number: "Topic-2".
    static CString AppendInt(rk::TextView text, int value);
    /// A byte count for people: "999 bytes", "1.50 KB", "100 KB". A unit is 1024 of the unit below and is used from
    /// 1000 of that unit on: 1000 bytes are "0.97 KB". Three digits are shown, cut from six decimals and not rounded;
    /// the decimal point is "." in every locale. 2^40 bytes and more give "".
    static CString MakeByteString(unsigned long byteCount);
    /// The text; a text of more than `maximumLength` units is cut to that length, "..." at its end included.
    ///
    ///     "abcdefgh" to 5  ->  "ab..."        below 3 for full stops only: to 2 -> "..", to 0 or less -> ""
    static CString ShortenString(const CString& text, int maximumLength);

    // --- Lines

    /// Wraps the text in place into at most `maximumLines` lines of at most `width` units, with the separator at every
    /// line end and "..." on the last line when text is left over.
    ///
    ///     "hello world foo bar", "/", 8, 10  ->  "hello /world /foo bar"
    ///     "hello world foo bar", "/", 8, 2   ->  "hello /world..."
    ///     "abcdefghijkl", "/", 5, 3          ->  "abcde/fghi/jkl"
    ///     "abc\ndef", "/", 10, 5             ->  "abc/\ndef"
    ///
    /// - Blank lines at the start are removed, white space at the end too; a blank text becomes "".
    /// - A line ends before an LF, which stays and opens the next line, or where it is too long: after the last space
    ///   among its first `width` units (its very first unit does not count), else after `width` units.
    /// - After a break, the separator counts into the width of the next line; before an LF it does not, nor does "...".
    /// - On a last line that is too long "..." stands before the unit at which the line breaks.
    /// - No line is broken for its width when that is not above the separator's length, since a line would have no room
    ///   for text; LFs still end lines. 0 lines or less give "".
    /// - A separator with a space in it may itself be broken there; after 1,000 lines that took up nothing of the text,
    ///   the wrap ends.
    static void InsertLineSeparators(CString* text, const CString& separator, int width, int maximumLines);
    static int GetLinesCount(const CString& text);  ///< The number of lines that are not empty; CR and LF end lines.

    // --- Joining, sorting, measuring

    /// Joins parts by the separator; null or no parts give "". With `skipEmptyParts` an empty part brings no separator.
    static CString Combine(const CString& separator, CString const* parts, unsigned long count, bool skipEmptyParts);
    /// Two parts.
    static CString Combine(const CString& separator, const CString& first, const CString& second, bool skipEmptyParts);
    /// Three or four parts.
    static CString Combine(const CString& separator, const CString& first, const CString& second, const CString& third,
                           bool skipEmptyParts);
    static CString Combine(const CString& separator, const CString& first, const CString& second, const CString& third,
                           const CString& fourth, bool skipEmptyParts);  ///< Four parts.
    template <class... Texts>
        requires(sizeof...(Texts) > 0 && (std::convertible_to<const Texts&, CString> && ...))
    static CString Combine(const CString& separator, const CString& first, const CString& second,
                           const Texts&... further) = delete;  ///< A text in the place of `skipEmptyParts` is refused.
    /// Sorts the list in place by `CString::CompareNoCase`. Ascending, elements that compare equal keep their order;
    /// descending, they are reversed. Earlier positions are no longer valid. After an exception the list is as it was.
    static void SortStringList(CAtlList<CString>& list, bool ascending);
    /// The bytes that the text takes when stored: a 3-byte mark, its length in 1, 3 or 7 bytes (below 255 units, up to
    /// 65,533, from there on), and 2 a unit. INT_MAX where it is more.
    static int StringSerializeSize(const CString& text);

    // --- Numbers and encodings: the same in every locale

    static CString LongToString(long value);  ///< ASCII digits, "-" before negative numbers.
    /// The integer at the start of the text, after white space and a sign, else 0. Beyond 32 bits 2147483647 or
    /// -2147483647. Its namesake `CrkStringConversionUtilities::StringToLong` reads the whole text as the user's locale
    /// writes numbers, up to 64 bits, and tells whether it is a number.
    static long StringToLong(const CString& text);
    /// The decimal number at the start of the text, after white space and a sign, with "." and an exponent, else 0.
    /// Correctly rounded; infinite when it is too large. "inf", "nan" and hexadecimal digits are no numbers.
    static double StringToDouble(const CString& text);
    /// Whether the text is "true" in any case, or `StringToLong` of it is not 0.
    static bool StringToBool(const CString& text);
    /// The text read back from its UTF-8 bytes up to the first U+0000: a lone surrogate becomes U+FFFD.
    static CString UnicodeToUtf8(const CString& text);
    /// The zero-terminated UTF-8 text; null gives "". With `externalRepresentation` a leading U+FEFF is dropped.
    static CString Utf8ToUnicode(char const* utf8, bool externalRepresentation);

    // --- Links, addresses, environment variables

    /// Names and values of a link's parameters.
    using ParameterMap = CAtlMap<CString, CString, CStringElementTraits<CString>>;

    /// Adds the name-value pairs of a link to the map; a name that it holds gets the new value. The pairs stand after
    /// the first "#", or without "#" after the first "&", or else are the whole link. "&" and "=" separate names and
    /// values in turn; runs of them count once. A name without a value at the end is dropped.
    ///
    ///     "app:open#id=7&mode=edit"  ->  id: 7, mode: edit
    ///     "#a=&b=2"                  ->  a: b            an empty value shifts the pieces
    static void ExtractUrlParameters(const CString& link, ParameterMap& parameters);
    /// The value of the parameter with exactly that name, else "".
    static CString ExtractUrlValue(const CString& link, const CString& name);
    /// The link when it begins with "http"; else the format with the link for its "%s", a lone surrogate as U+FFFD. ""
    /// with other conversions.
    static CString GetUrlString(CString link, CString format);
    /// Whether something stands before the first "@", between that and the last ".", and after the last ".".
    static bool IsValidEmail(const CString& address);

    /// The index of the first placeholder: a "%", any text, and the next "%".
    ///
    /// @param[out] placeholder  the placeholder with both "%"; "" with a single "%", untouched without "%".
    static int FindEnvironmentVariable(const CString& text, CString* placeholder);
    /// Replaces every occurrence of the placeholder by the value of the variable it names, "" when that is not set.
    static void ReplaceEnvironmentVariable(CString* text, const CString& placeholder);
    /// Replaces the first placeholder with all its occurrences until no placeholder is left, also of those that values
    /// bring in. When that does not end after 64 placeholders, as where a value holds its own name, or would bring in
    /// more than 4,194,304 units, the text is expanded once instead: placeholders from left to right, values as they
    /// are, as far as they bring in that many units. Linear time.
    static void ReplaceEnvironmentVariables(CString* text);
};
