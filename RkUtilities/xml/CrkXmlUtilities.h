#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/CString.h"

/// Which code units and texts may stand in an XML document or an XML name, and texts repaired until they may.
/// - The classes are those of XML 1.0, first to fourth edition, Appendix B, and the NCName of Namespaces in XML; the
///   wider names of the fifth edition are not accepted.
/// - They are classes of single UTF-16 code units. A character outside the Basic Multilingual Plane is two surrogates,
///   which are in no class and become two replacement units.
/// - Every text is legal input, the empty text and U+0000 included. Nothing is kept: safe from any thread.
///   Nothing throws but `std::bad_alloc`, and what a member names.
class RK_EXPORT CrkXmlUtilities {
public:
    // --- Classes of a code unit

    /// Production Char: tab, LF, CR, U+0020 to U+D7FF, U+E000 to U+FFFD.
    static bool IsChar(unsigned short unit) noexcept;
    static bool IsLetter(unsigned short unit) noexcept;         ///< BaseChar or Ideographic.
    static bool IsBaseChar(unsigned short unit) noexcept;       ///< Production BaseChar.
    static bool IsIdeographic(unsigned short unit) noexcept;    ///< Production Ideographic.
    static bool IsCombiningChar(unsigned short unit) noexcept;  ///< Production CombiningChar.
    static bool IsDigit(unsigned short unit) noexcept;          ///< Production Digit.
    static bool IsExtender(unsigned short unit) noexcept;       ///< Production Extender.
    /// Letter, Digit, CombiningChar, Extender, ".", "-" or "_".
    static bool IsNCNameChar(unsigned short unit) noexcept;
    static bool IsNameChar(unsigned short unit) noexcept;  ///< NCNameChar or ":".

    // --- Whole texts

    /// A Letter, "_" or ":", then NameChars. False for the empty text.
    static bool IsValidName(const CString& text) noexcept;
    /// A Letter or "_", then NCNameChars. False for the empty text.
    static bool IsValidNCName(const CString& text) noexcept;
    static bool IsValidUri(const CString& text) noexcept;  ///< Not empty and without U+0020.

    // --- Repair

    /// The text with every unit that is no Char replaced. The replacement is taken as it is.
    static CString StringToXmlString(const CString& text, unsigned short replacement);
    /// The text made into an NCName / a Name: every unit that may not stand where it stands is replaced, but a wrong
    /// first unit gets "_" before it (`insertUnderscore`) or becomes "_".
    ///
    ///     "1abc" inserting  ->  "_1abc"        "a:b" with "-"  ->  "a-b" (NCName), "a:b" (Name)
    ///     "1abc"            ->  "_abc"         ""              ->  "_" inserting, else ""
    ///
    /// A valid name comes back as it is. A replacement that is a name character (usually "_") makes a valid result.
    static CString StringToNCName(const CString& text, unsigned short replacement, bool insertUnderscore);
    /// The text made into a Name.
    static CString StringToName(const CString& text, unsigned short replacement, bool insertUnderscore);

    /// A new random UUID (RFC 4122, version 4) in 36 upper-case characters, without braces or scheme. Throws
    /// `std::system_error` when the system gives no random bytes.
    static CString GenerateUniqueUri();
};
