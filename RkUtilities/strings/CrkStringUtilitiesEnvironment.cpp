#include "RkUtilities/strings/CrkStringUtilities.h"

#include "RkUtilities/foundation/TextBuilder.h"
#include "RkUtilities/foundation/TextSearch.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace {

constexpr std::size_t kNone = std::u16string_view::npos;

CString ValueOf(const CString& placeholder)
{
    CString name(placeholder);
    name.Remove(u'%');
    CString value;
    value.GetEnvironmentVariable(name);
    return value;
}

/// Placeholders replaced until there is none.
///
/// Every unit knows which expansion brought it in, so that a placeholder that stands whole in what its own expansion brought in is
/// seen: it alone could go on without end, since expansions inside one another then have different names, and the set
/// variables are finite.
class Expansion {
public:
    explicit Expansion(std::u16string_view text) : m_text(text), m_origins(text.size(), kOriginal)
    {
        CountPieces(0, m_text.size());
    }

    CString Expanded()
    {
        for (std::size_t first = m_text.find(u'%', m_done); first != kNone; first = m_text.find(u'%', m_done)) {
            const std::size_t second = m_text.find(u'%', first + 1);
            if (second == kNone)
                break;
            Finish(first);
            const std::size_t length = second + 1 - first;
            if (IsEndless(first, length))
                Finish(second + 1);
            else if (!Replace(length))
                break;
        }
        Finish(m_text.size());
        return m_result.Take();
    }

private:
    static constexpr std::uint32_t kOriginal = 0;
    static constexpr std::size_t kMostUnits = 4194304;

    /// An expansion: what it replaced, and the expansion that had brought all of that in.
    struct Origin {
        std::uint32_t parent;
        std::uint32_t placeholder;  // an index
    };

    /// Moves everything before `end` to the result.
    void Finish(std::size_t end)
    {
        m_result.Append(std::u16string_view(m_text).substr(m_done, end - m_done));
        m_done = end;
    }

    [[nodiscard]] std::size_t DepthOf(std::uint32_t origin) const
    {
        std::size_t depth = 0;
        for (; origin != kOriginal; origin = m_expansions[origin].parent)
            ++depth;
        return depth;
    }

    /// The innermost expansion that brought in all of these units.
    [[nodiscard]] std::uint32_t CommonOrigin(std::size_t start, std::size_t length) const
    {
        std::uint32_t common = m_origins[start];
        for (std::size_t i = start + 1; i < start + length && common != kOriginal; ++i) {
            std::uint32_t other = m_origins[i];
            if (other == common)
                continue;
            std::size_t commonDepth = DepthOf(common);
            std::size_t otherDepth = DepthOf(other);
            while (common != other) {
                const bool commonIsDeeper = commonDepth >= otherDepth;
                if (commonDepth <= otherDepth) {
                    other = m_expansions[other].parent;
                    --otherDepth;
                }
                if (commonIsDeeper) {
                    common = m_expansions[common].parent;
                    --commonDepth;
                }
            }
        }
        return common;
    }

    [[nodiscard]] bool IsEndless(std::size_t start, std::size_t length) const
    {
        const std::u16string_view placeholder = std::u16string_view(m_text).substr(start, length);
        for (std::uint32_t origin = CommonOrigin(start, length); origin != kOriginal;
             origin = m_expansions[origin].parent) {
            if (m_placeholders[m_expansions[origin].placeholder] == placeholder)
                return true;
        }
        return false;
    }

    /// Replaces the placeholder that begins what is not done, and its other occurrences. False when the text would grow too long.
    bool Replace(std::size_t length)
    {
        const std::u16string placeholder = m_text.substr(m_done, length);
        m_placeholders.push_back(placeholder);
        const CString value = ValueOf(CString(placeholder));
        const std::vector<std::size_t> places = PlacesOf(placeholder);
        const std::size_t units = value.View().size();
        if (m_result.Length() + (m_text.size() - m_done) + places.size() * units > kMostUnits + places.size() * length)
            return false;
        if (places.size() == 1 && units <= m_done + length)
            ReplaceInPlace(placeholder, value.View());
        else
            ReplaceAll(placeholder, places, value.View());
        return true;
    }

    /// Counts what stands between neighbouring "%" of a part of the text: another place of a placeholder is among these.
    void CountPieces(std::size_t start, std::size_t end)
    {
        for (std::size_t mark = m_text.find(u'%', start); mark < end;) {
            const std::size_t next = m_text.find(u'%', mark + 1);
            if (next == kNone)
                return;
            ++m_pieceCounts[HashOf(mark + 1, next)];
            mark = next;
        }
    }
    [[nodiscard]] std::size_t HashOf(std::size_t start, std::size_t end) const
    {
        return std::hash<std::u16string_view>()(std::u16string_view(m_text).substr(start, end - start));
    }

    [[nodiscard]] std::vector<std::size_t> PlacesOf(const std::u16string& placeholder) const
    {
        std::vector<std::size_t> places{m_done};
        const auto count = m_pieceCounts.find(HashOf(m_done + 1, m_done + placeholder.size() - 1));
        if (count != m_pieceCounts.end() && count->second == 1)
            return places;
        for (std::size_t at = rk::FindUnits(m_text, placeholder, m_done + placeholder.size()); at != kNone;
             at = rk::FindUnits(m_text, placeholder, at + placeholder.size())) {
            if (!IsEndless(at, placeholder.size()))
                places.push_back(at);
        }
        return places;
    }

    /// The origin of what replaces the newest placeholder at one place; neighbours of the same parent share it.
    std::uint32_t OriginOf(std::size_t place, std::size_t length)
    {
        const Origin wanted{CommonOrigin(place, length), static_cast<std::uint32_t>(m_placeholders.size() - 1)};
        const Origin& last = m_expansions.back();
        if (last.parent != wanted.parent || last.placeholder != wanted.placeholder)
            m_expansions.push_back(wanted);
        return static_cast<std::uint32_t>(m_expansions.size() - 1);
    }

    /// The usual case: the value goes where what is done has stood.
    void ReplaceInPlace(const std::u16string& placeholder, std::u16string_view value)
    {
        const std::uint32_t origin = OriginOf(m_done, placeholder.size());
        const std::size_t start = m_done + placeholder.size() - value.size();
        std::copy(value.begin(), value.end(), m_text.begin() + static_cast<std::ptrdiff_t>(start));
        std::fill_n(m_origins.begin() + static_cast<std::ptrdiff_t>(start), value.size(), origin);
        m_done = start;
        CountPieces(start, start + value.size());
    }

    void ReplaceAll(const std::u16string& placeholder, const std::vector<std::size_t>& places,
                    std::u16string_view value)
    {
        std::u16string text;
        std::vector<std::uint32_t> origins;
        std::size_t done = m_done;
        const auto copyUpTo = [&](std::size_t end) {
            text.append(m_text, done, end - done);
            origins.insert(origins.end(), m_origins.begin() + static_cast<std::ptrdiff_t>(done),
                           m_origins.begin() + static_cast<std::ptrdiff_t>(end));
        };
        for (const std::size_t place : places) {
            copyUpTo(place);
            text.append(value);
            origins.insert(origins.end(), value.size(), OriginOf(place, placeholder.size()));
            done = place + placeholder.size();
        }
        copyUpTo(m_text.size());
        m_text = std::move(text);
        m_origins = std::move(origins);
        m_done = 0;
        m_pieceCounts.clear();
        CountPieces(0, m_text.size());
    }

    std::u16string m_text;
    std::vector<std::uint32_t> m_origins;  // of each unit: an index among the expansions
    std::vector<std::u16string> m_placeholders;
    std::vector<Origin> m_expansions{{kOriginal, UINT32_MAX}};
    std::unordered_map<std::size_t, std::size_t> m_pieceCounts;  // by hash; what is gone may still be counted
    std::size_t m_done = 0;
    rk::TextBuilder m_result;
};

}  // namespace

int CrkStringUtilities::FindEnvironmentVariable(const CString& text, CString* placeholder)
{
    const int first = text.Find(u"%");
    if (first < 0)
        return -1;
    const int second = text.Find(u"%", first + 1);
    if (placeholder != nullptr)
        *placeholder = second < 0 ? CString() : text.Mid(first, second - first + 1);
    return second < 0 ? -1 : first;
}

void CrkStringUtilities::ReplaceEnvironmentVariable(CString* text, const CString& placeholder)
{
    if (text != nullptr)
        text->Replace(placeholder, ValueOf(placeholder));
}

void CrkStringUtilities::ReplaceEnvironmentVariables(CString* text)
{
    if (text != nullptr && text->View().find(u'%') != std::u16string_view::npos)
        *text = Expansion(text->View()).Expanded();
}
