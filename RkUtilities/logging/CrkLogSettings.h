#pragma once

#include "RkUtilities/RkExport.h"
#include "RkUtilities/foundation/CAtlMap.h"
#include "RkUtilities/foundation/CObject.h"
#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/logging/ErkLogLevel.h"

#include <string>

/// What the log writer writes, as read from a settings file.
///
///     <settings>
///         <ls:Enable>true</ls:Enable>
///         <ls:Level>LogWarning</ls:Level>
///         <ls:IncludeCategory>*</ls:IncludeCategory>
///         <ls:ExcludeCategory>VerboseCOM</ls:ExcludeCategory>
///     </settings>
///
/// An XML document. Only children of the root element count, which may have any name; they are told by their name as
/// written, "ls:" included, and need no namespace declaration. Their text, that of elements inside them included, is
/// compared exactly: upper and lower case differ and white space counts (" true" is not "true").
///
/// - "ls:Enable", "ls:StdOut", "ls:Level": the first element of each name decides.
/// - "ls:IncludeCategory", "ls:ExcludeCategory": all elements. The text "*" includes every category; as an excluded
///   category it is a name like any other.
///
/// An entry is written when logging is enabled, its level is at most `m_level`, its category is not excluded, and its
/// category is included or "*" is. So a file without "ls:IncludeCategory" lets nothing through.
///
/// A file that cannot be read to its end as well-formed XML leaves logging off, and `Fault` says why. That goes for a
/// missing file, a folder or a pipe too; for a file of more than 8 MiB (8,388,608 bytes); for an encoding other than
/// UTF-8, UTF-16, ISO-8859-1 and US-ASCII; and for a document that declares entities or uses any beyond XML's own five,
/// that nests elements more than 1,000 deep, that declares more than 100 attributes, or that includes or excludes more
/// than 10,000 categories. The time of reading grows with the file's length only.
///
/// The settings do not change after construction; different threads may use one object.
class RK_EXPORT RK_DESCRIBED CrkLogSettings : public CObject {
public:
    /// Reads the file. Throws `CAtlException` or `std::bad_alloc` when memory runs out, and nothing else.
    explicit CrkLogSettings(const CString& settingsPath);
    CrkLogSettings& operator=(CrkLogSettings&&) = delete;
    ~CrkLogSettings() override;

    /// Whether the category itself is listed as included; "*" does not count.
    [[nodiscard]] bool IsIncluded(const CString& category) const { return Lists(m_includeCategories, category); }
    /// Whether the category is listed as excluded.
    [[nodiscard]] bool IsExcluded(const CString& category) const { return Lists(m_excludeCategories, category); }

    [[nodiscard]] const CString& Path() const { return m_path; }  ///< The path as given to the constructor.
    /// Why nothing of the file was applied, in UTF-8: "line 3: mismatched tag"; "" when it was.
    [[nodiscard]] const std::string& Fault() const { return m_fault; }

    bool m_enable = false;                       ///< "ls:Enable": logging is on
    bool m_stdOut = false;                       ///< "ls:StdOut": each message is also written to standard error
    bool m_includeAll = false;                   ///< "*" is an included category
    CAtlMap<CString, bool> m_includeCategories;  ///< "ls:IncludeCategory": the included categories but "*"
    CAtlMap<CString, bool> m_excludeCategories;  ///< "ls:ExcludeCategory": the excluded categories
    rk::ErkLogLevel m_level = rk::LogDebug;      ///< "ls:Level": the least severe level that is written

private:
    [[nodiscard]] static bool Lists(const CAtlMap<CString, bool>& categories, const CString& category) {
        const auto* const entry = categories.Lookup(category);
        return entry != nullptr && entry->m_value;
    }

    CString m_path;
    std::string m_fault;
};
