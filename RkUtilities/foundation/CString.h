#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/FormatError.h"
#include "RkUtilities/foundation/TextView.h"
#include "RkUtilities/foundation/detail/FormatArgument.h"
#include "RkUtilities/foundation/detail/TextStorage.h"

#include <compare>
#include <concepts>
#include <cstdarg>
#include <cstddef>
#include <initializer_list>
#include <iosfwd>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

class CString;

namespace rk {

class TextBuilder;

/// What is UTF-16 text without being a `CString`: literals, views and zero-terminated texts of either unit type.
template <class T>
concept Utf16Text =
    std::convertible_to<const T&, std::u16string_view> && !std::derived_from<std::remove_cvref_t<T>, CString>;

/// A single UTF-16 code unit: exactly one of the two unit types, so that no number passes for a unit.
template <class T>
concept CodeUnit = std::same_as<T, char16_t> || std::same_as<T, unsigned short>;

}  // namespace rk

/// A text: a value that holds a sequence of UTF-16 code units.
///
///     CString title = u"  Überfahrt nach Łódź ";        // or UTF-8: CString("Überfahrt")
///     title.Trim().Replace(u"nach", u"to");             // "Überfahrt to Łódź"
///     if (title.FindNoCase(u"ŁÓDŹ") >= 0)
///         title += CString(u", ") + title.Left(9).MakeUpper();
///     std::cout << title;                               // Überfahrt to Łódź, ÜBERFAHRT
///
/// - Lengths and indexes count code units from 0 and are `int`; -1 means not found. A text holds at most INT_MAX - 1
///   units. A member that would make it longer throws `std::length_error`, exhausted memory `std::bad_alloc`, and the
///   text stays as it was.
/// - Code units are taken one by one: a character outside the Basic Multilingual Plane is two units. Any sequence is
///   legal, lone surrogates and the unit 0 included.
/// - Every `int` argument may have any value. A negative count or start counts as 0, a count or start past the end
///   as the end, unless a member says otherwise.
/// - A text may be passed to its own members (`s.Replace(s, t)`, `s += s`, `s.Insert(1, s)`): the argument's value is
///   its value before the call.
/// - Case pairs, letters, digits and white space are Unicode's, unit by unit, in every locale. A change of case keeps
///   the length: "ß", whose upper case is two units, stays.
/// - Texts of up to 11 units are held in the object; longer texts are shared between copies until a copy changes.
///   Copying, moving and destroying never throw. Copies may be used from different threads at once; an object may not
///   be changed while another thread uses it.
class RK_EXPORT CString {
public:
    using value_type = char16_t;             ///< A code unit.
    using const_iterator = const char16_t*;  ///< Walks the units.

    // --- Construction

    constexpr CString() noexcept = default;  ///< The empty text.

    /// The zero-terminated UTF-16 text; null gives the empty text.
    CString(unsigned short const* text) : m_text(ViewOf(text)) {}
    /// The UTF-16 text: a literal, a zero-terminated `char16_t` text (null: empty), a view or a `std::u16string`.
    template <rk::Utf16Text T> CString(const T& text) : m_text(ViewOf(text)) {}
    /// One code unit. Other integers do not convert.
    template <rk::CodeUnit T> CString(const T& unit) : m_text(std::u16string_view(AsUnit(&unit), 1)) {}
    /// An ASCII character; a byte of 0x80 or more is no UTF-8 by itself and gives U+FFFD.
    template <std::same_as<char> T> CString(const T& character) : CString(std::string_view(&character, 1)) {}
    /// The zero-terminated UTF-8 text; null gives the empty text. Wrong bytes as in the constructor from a view.
    CString(char const* utf8) : CString(utf8 != nullptr ? std::string_view(utf8) : std::string_view()) {}
    /// The UTF-8 text. Every maximal part that is no UTF-8 (Unicode, chapter 3, table 3-7) becomes one U+FFFD; nothing
    /// is read past the view.
    CString(std::string_view utf8);
    CString(const std::string& utf8) : CString(std::string_view(utf8)) {}  ///< The same for a `std::string`.
    /// The text of `byteCount` bytes in an encoding: 0x08000100 is UTF-8, any other encoding gives the empty text. With
    /// `skipByteOrderMark` a leading EF BB BF is consumed and not kept.
    CString(char const* bytes, unsigned long byteCount, unsigned int encoding, bool skipByteOrderMark);
    CString(std::nullptr_t) = delete;

    /// A text over a literal, without allocation at any length, and usable in other files' initialisers.
    template <std::size_t N> static consteval CString Literal(const char16_t (&text)[N]) {
        static_assert(N - 1 < INT_MAX);
        return CString(rk::TextStorage(text, N - 1));
    }

    // --- Looking at the text

    [[nodiscard]] int GetLength() const noexcept { return m_text.Length(); }      ///< The number of code units.
    [[nodiscard]] bool IsEmpty() const noexcept { return m_text.Length() == 0; }  ///< Whether there are no units.
    /// The code unit at `index`; 0 outside the text.
    [[nodiscard]] unsigned short GetAt(long index) const noexcept {
        return index >= 0 && index < GetLength() ? Units()[index] : static_cast<unsigned short>(0);
    }
    /// The code unit at `index`; 0 outside the text. No unit can be assigned to: `SetAt` changes a unit.
    template <std::integral T> [[nodiscard]] char16_t operator[](T index) const noexcept {
        return GetAt(static_cast<long>(index));
    }
    /// The zero-terminated text, valid while this text is neither changed nor destroyed.
    [[nodiscard]] unsigned short const* GetUTF16Ptr() const noexcept RK_LIFETIMEBOUND {
        return rk::AsUnsignedShort(Units());
    }
    /// The units, valid while this text is neither changed nor destroyed. Zero-terminated.
    [[nodiscard]] std::u16string_view View() const noexcept RK_LIFETIMEBOUND {
        return {Units(), static_cast<std::size_t>(GetLength())};
    }
    operator std::u16string_view() const noexcept RK_LIFETIMEBOUND { return View(); }         ///< `View()`.
    [[nodiscard]] const_iterator begin() const noexcept RK_LIFETIMEBOUND { return Units(); }  ///< The first unit.
    /// Behind the last unit.
    [[nodiscard]] const_iterator end() const noexcept RK_LIFETIMEBOUND { return Units() + GetLength(); }
    // As the standard's algorithms and containers name them.
    [[nodiscard]] std::size_t size() const noexcept { return View().size(); }  ///< The number of code units.
    [[nodiscard]] bool empty() const noexcept { return IsEmpty(); }            ///< `IsEmpty`.
    [[nodiscard]] const char16_t* data() const noexcept RK_LIFETIMEBOUND { return Units(); }  ///< `View().data()`.
    [[nodiscard]] std::string ToUtf8() const;     ///< The UTF-8 bytes; a lone surrogate becomes U+FFFD (EF BF BD).
    void AppendUtf8To(std::string& bytes) const;  ///< Appends the UTF-8 bytes to `bytes`.

    // --- Substrings

    [[nodiscard]] CString Left(int unitCount) const;   ///< The first `unitCount` units, or all there are.
    [[nodiscard]] CString Right(int unitCount) const;  ///< The last `unitCount` units, or all there are.
    /// The units from `start` on; "" at or past the end. A negative start counts as 0.
    [[nodiscard]] CString Mid(int start) const { return Mid(start, INT_MAX); }
    [[nodiscard]] CString Mid(int start, int unitCount) const;  ///< The same, at most `unitCount` units.
    /// The leading part before the first unit that occurs in `set`; the whole text when no unit does.
    [[nodiscard]] CString SpanExcluding(const CString& set) const;
    [[nodiscard]] CString SpanIncluding(const CString& set) const;  ///< The leading part of units that occur in `set`.
    /// The next run of units that are not in `delimiters`, from `position` on; `position` moves past the delimiter that
    /// ends it, or to the end.
    ///
    ///     "a,,b" with "," from 0  ->  "a" (position 2), "b" (position 4), "" (position -1)
    ///
    /// "" with `position` -1 when nothing is left or `position` is negative, so a walk ends at the first empty token.
    CString Tokenize(const CString& delimiters, int& position) const;

    // --- Searching

    /// The first occurrence of `sought` at or after `start`. An empty text is found at `start`; a start past the end
    /// finds nothing. Time is linear in both texts together.
    [[nodiscard]] int Find(const CString& sought, int start = 0) const;
    /// The same, two units being alike when Unicode's simple case folding makes them equal.
    [[nodiscard]] int FindNoCase(const CString& sought, int start = 0) const;
    /// The first unit at or after `start` that occurs in `set`.
    [[nodiscard]] int FindOneOf(const CString& set, int start = 0) const noexcept;
    /// The last occurrence that begins at or before `start`; a negative start (-1) asks for the last of all. An
    /// empty text is found at `start` or, there, at the end. Linear as `Find` is.
    [[nodiscard]] int ReverseFind(const CString& sought, int start = -1) const;

    // --- Comparing

    /// Below 0, 0 or above 0: by code units, exactly. `==` and `<=>` compare the same way.
    [[nodiscard]] int Compare(const CString& other) const noexcept { return View().compare(other.View()); }
    /// Below 0, 0 or above 0: by code units after Unicode's simple case folding. The same in every locale.
    [[nodiscard]] int CompareNoCase(const CString& other) const;
    /// Below 0, 0 or above 0: in the order of names of the user's language, without regard to case. Texts alike in
    /// that order compare by code units, so that 0 means the same text. Throws `std::bad_alloc` without memory.
    [[nodiscard]] int Collate(const CString& other) const;

    /// The same units.
    friend bool operator==(const CString& a, const CString& b) noexcept { return a.View() == b.View(); }
    /// By code units.
    friend auto operator<=>(const CString& a, const CString& b) noexcept { return a.View() <=> b.View(); }
    /// The same units.
    template <rk::Utf16Text T> friend bool operator==(const CString& a, const T& b) { return a.View() == ViewOf(b); }
    /// By code units.
    template <rk::Utf16Text T> friend auto operator<=>(const CString& a, const T& b) { return a.View() <=> ViewOf(b); }
    /// The same units.
    friend bool operator==(const CString& a, unsigned short const* b) noexcept { return a.View() == ViewOf(b); }
    /// By code units.
    friend auto operator<=>(const CString& a, unsigned short const* b) noexcept { return a.View() <=> ViewOf(b); }

    // --- Changing the text in place

    /// Makes the text empty and gives its memory back.
    void Empty() noexcept {
        CString empty;
        swap(*this, empty);
    }
    void SetAt(int index, unsigned short unit);  ///< Replaces the unit at `index`; outside the text nothing happens.
    /// Inserts before `index` (clamped to 0 .. length); returns the new length.
    int Insert(int index, const CString& text);
    /// Removes up to `unitCount` units from `index` on; returns the new length. Nothing happens for an index outside
    /// the text.
    int Delete(int index, int unitCount = 1);
    /// Replaces every occurrence, left to right and not overlapping; the new text is not searched again. Returns the
    /// number of replacements. Nothing happens for an empty `before`. Linear in the length of the old and the new text.
    int Replace(const CString& before, const CString& after);
    int Remove(unsigned short unit);                    ///< Removes every occurrence of a unit; returns their number.
    void RemoveLineFeeds();                             ///< Removes carriage returns and line feeds.
    CString& MakeUpper();                               ///< Upper case, unit by unit.
    CString& MakeLower();                               ///< Lower case, unit by unit.
    CString& MakeReverse();                             ///< The units in reverse order, surrogate pairs kept.
    CString& Trim() { return TrimLeft().TrimRight(); }  ///< Removes white space (Unicode's White_Space) at both ends.
    CString& TrimLeft();                                ///< Removes white space at the start.
    CString& TrimRight();                               ///< Removes white space at the end.
    /// Removes the units that occur in `set` at both ends.
    CString& Trim(const CString& set) { return TrimLeft(set).TrimRight(set); }
    CString& TrimLeft(const CString& set);   ///< Removes the units that occur in `set` at the start.
    CString& TrimRight(const CString& set);  ///< Removes the units that occur in `set` at the end.

    CString& Append(const CString& text);                               ///< Adds a text at the end.
    CString& AppendChar(unsigned short unit) { return *this += unit; }  ///< Adds a unit at the end.
    CString& operator+=(const CString& text) { return Append(text); }   ///< `Append`.
    /// Appends any text.
    template <rk::Utf16Text T> CString& operator+=(const T& text) { return AppendUnits(ViewOf(text)); }
    /// Appends one unit.
    template <rk::CodeUnit T> CString& operator+=(const T& unit) { return AppendUnits({AsUnit(&unit), 1}); }

    /// `a` followed by `b`.
    friend CString operator+(const CString& a, const CString& b) { return Joined(a.View(), b.View()); }
    /// `a` followed by `b`.
    template <rk::Utf16Text T> friend CString operator+(const CString& a, const T& b) {
        return Joined(a.View(), ViewOf(b));
    }
    /// `a` followed by `b`.
    template <rk::Utf16Text T> friend CString operator+(const T& a, const CString& b) {
        return Joined(ViewOf(a), b.View());
    }
    /// The text followed by a unit.
    template <rk::CodeUnit T> friend CString operator+(const CString& a, const T& unit) {
        return Joined(a.View(), {AsUnit(&unit), 1});
    }
    /// A unit followed by the text.
    template <rk::CodeUnit T> friend CString operator+(const T& unit, const CString& b) {
        return Joined({AsUnit(&unit), 1}, b.View());
    }

    /// The text's units for a call that fills a buffer, with room for the length and for `unitCount` units or more. The
    /// units behind the length are 0, and so is the unit behind the room, which is not to be written to.
    ///
    ///     const int count = FillTitle(title.GetBuffer(100), 100);
    ///     title.ReleaseBuffer(count);
    ///
    /// The pointer serves until the text is next used in any way. Throws `std::length_error`, `std::bad_alloc`.
    [[nodiscard]] char16_t* GetBuffer(int unitCount = 0) RK_LIFETIMEBOUND;
    /// Ends the text after `unitCount` units of the buffer (the whole room at most) or, for a negative count, before
    /// the first unit 0. Only after `GetBuffer`.
    void ReleaseBuffer(int unitCount = -1);

    // --- Texts from elsewhere

    /// Takes the value of the process's environment variable, read as UTF-8; empty when it is not set.
    void GetEnvironmentVariable(const CString& name);

    /// Formats as C's printf does, whatever `setlocale` says: "." is the decimal point.
    /// - Conversions d i u o x X c s p f F e E g G a A and %%, flags "-", "+", " ", "#", "0", width, precision, "*",
    ///   lengths hh h l ll j z t L, and positions ("%2$s", "%1$*2$d").
    /// - "%s" takes a UTF-16 text (`CString`, `u"..."`, a view), or a UTF-8 text, zero-terminated or a
    ///   `std::string_view`. Width and precision count the text's own units, UTF-8's bytes as in C; a precision cuts
    ///   between characters only. Null prints "(null)".
    /// - "%c" takes a code unit 0 to 0xFFFF, "%lc" a code point; -128 to -1, a `char` beyond ASCII, give U+FFFD.
    /// - An integer argument serves every integer conversion: converted as C does when its type is no wider than the
    ///   conversion's (`int` for hh and h), else it must fit that type.
    ///
    /// Throws `rk::FormatError` and leaves the text as it was: a missing argument, an argument of another kind, "%n",
    /// an unknown or unfinished conversion, positions mixed with plain conversions, a width or precision above
    /// 1,048,576 or below -1,048,576. Surplus arguments are ignored.
    template <class... Arguments> void Format(const CString& format, const Arguments&... arguments) {
        const std::initializer_list<rk::FormatArgument> list{rk::FormatArgument(arguments)...};
        *this = rk::FormattedText(format.View(), list.begin(), list.size());
    }
    /// Formats as `Format` does and adds the result at the end.
    template <class... Arguments> void AppendFormat(const CString& format, const Arguments&... arguments) {
        CString added;
        added.Format(format, arguments...);
        Append(added);
    }
    /// The same with C's argument list, whose kinds must be those that the conversions name. A position that is left
    /// out below a used position, or used for two kinds, is a failure.
    void FormatV(const CString& format, std::va_list arguments);

    /// The text for `key` in the application's string tables, in the user's language by ICU's fallback; "" without a
    /// text. A bundle is a folder of compiled ICU resource files (en.res, de.res, root.res ...); null means the folder
    /// named with `rk::SetStringTables`.
    void LoadString(char const* key, char const* bundle = nullptr);

    /// Exchanges two texts; never throws.
    friend void swap(CString& a, CString& b) noexcept { std::swap(a.m_text, b.m_text); }

private:
    friend class rk::TextBuilder;

    explicit constexpr CString(rk::TextStorage&& text) noexcept : m_text(std::move(text)) {}
    /// A text of `unitCount` units, all to be written at once.
    CString(std::in_place_t, std::size_t unitCount) : m_text(unitCount) {}

    static const char16_t* AsUnit(const char16_t* unit) noexcept { return unit; }
    static const char16_t* AsUnit(unsigned short const* unit) noexcept { return rk::AsChar16(unit); }
    static std::u16string_view ViewOf(rk::TextView text) noexcept { return {text.data(), text.size()}; }

    static CString Joined(std::u16string_view a, std::u16string_view b);
    /// `unitCount` units from `start` on, all of them in the text.
    [[nodiscard]] CString Part(std::size_t start, std::size_t unitCount) const;
    [[nodiscard]] const char16_t* Units() const noexcept { return m_text.Units(); }
    CString& AppendUnits(std::u16string_view text);

    rk::TextStorage m_text;
};

/// Writes the text as UTF-8; a lone surrogate becomes U+FFFD. Width and fill of the stream apply to the bytes.
RK_EXPORT std::ostream& operator<<(std::ostream& stream, const CString& text);

/// By the code units, as the hash of `std::u16string_view`.
template <> struct std::hash<CString> {
    /// By the code units, as the hash of `std::u16string_view`.
    std::size_t operator()(const CString& text) const noexcept { return std::hash<std::u16string_view>()(text.View()); }
};
