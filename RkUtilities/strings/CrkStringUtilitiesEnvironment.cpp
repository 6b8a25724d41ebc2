#include "RkUtilities/strings/CrkStringUtilities.h"

#include "RkUtilities/foundation/detail/TextBuilder.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace {

constexpr std::size_t kNone = std::u16string_view::npos;

CString ValueOf(const CString& name)
{
    CString value;
    value.GetEnvironmentVariable(name);
    return value;
}

/// Placeholders replaced until there is none, on a text taken apart at its marks ("%").
///
/// Every mark knows which expansion brought it in. What an expansion brings in stays together, so the two marks of a placeholder
/// tell where the whole of it comes from, and one that stands in what its own expansion brought in is seen: it alone could go on
/// without end, since expansions inside one another then have different names, and the set variables are finite.
class Expansion {
public:
    explicit Expansion(std::u16string_view text)
    {
        m_marks.reserve(static_cast<std::size_t>(std::count(text.begin(), text.end(), u'%')) + 1);
        m_marks.emplace_back();
        InsertBehind(kStart, text, kOriginal);
        for (Index mark = m_marks[kStart].next; mark != kStart; mark = m_marks[mark].next)
            Register(mark);
    }

    CString Expanded()
    {
        for (;;) {
            const Index first = m_marks[kStart].next;
            if (first == kStart || m_marks[first].next == kStart)
                return Joined();
            if (IsEndless(first))
                KeepFirst();
            else if (!Replace(first))
                return Joined();
        }
    }

private:
    using Index = std::uint32_t;
    static constexpr Index kStart = 0;     // no mark: what stands before the first one, and the end of the ring
    static constexpr Index kOriginal = 0;  // the expansion that brought in the text itself
    static constexpr std::size_t kMostUnits = 4194304;

    struct Mark {
        std::u16string text;  // up to the next mark: the name, if there is one
        Index origin = kOriginal;
        Index previous = kStart;
        Index next = kStart;
        Index pass = 0;  // the last one that looked at it
        bool isGone = false;
    };
    /// An expansion: of which name, and the expansion that had brought in what it replaced.
    struct Origin {
        Index parent = kOriginal;
        Index depth = 0;
        Index name = 0;
    };

    /// Names are told apart by their ends; what they have in common there is compared.
    static std::size_t HashOf(std::u16string_view name)
    {
        constexpr std::size_t kEndUnits = 32;
        const std::hash<std::u16string_view> hash;
        if (name.size() <= 2 * kEndUnits)
            return hash(name);
        return hash(name.substr(0, kEndUnits)) * 31 + hash(name.substr(name.size() - kEndUnits)) + name.size();
    }
    void Register(Index mark) { m_marksByName[HashOf(m_marks[mark].text)].push_back(mark); }

    [[nodiscard]] bool IsNamed(Index mark, std::u16string_view name) const
    {
        return mark != kStart && m_marks[mark].next != kStart && m_marks[mark].text == name;
    }

    /// Appends units to what follows a mark; their own marks become new ones. Returns the last mark.
    Index InsertBehind(Index mark, std::u16string_view units, Index origin)
    {
        std::size_t end = units.find(u'%');
        m_marks[mark].text.append(units.substr(0, end));
        while (end != kNone) {
            units.remove_prefix(end + 1);
            end = units.find(u'%');
            const auto added = static_cast<Index>(m_marks.size());
            const Index next = m_marks[mark].next;
            m_marks.push_back(
                {.text = std::u16string(units.substr(0, end)), .origin = origin, .previous = mark, .next = next});
            m_marks[next].previous = added;
            m_marks[mark].next = added;
            mark = added;
        }
        return mark;
    }
    void Remove(Index mark)
    {
        Mark& removed = m_marks[mark];
        m_marks[removed.previous].next = removed.next;
        m_marks[removed.next].previous = removed.previous;
        removed.isGone = true;
    }

    /// Makes the first placeholder plain text.
    void KeepFirst()
    {
        std::u16string& done = m_marks[kStart].text;
        for (int i = 0; i < 2; ++i) {
            const Index mark = m_marks[kStart].next;
            done.append(1, u'%').append(m_marks[mark].text);
            Remove(mark);
        }
    }

    /// The innermost expansion that brought in the whole placeholder.
    [[nodiscard]] Index OriginOf(Index placeholder) const
    {
        Index a = m_marks[placeholder].origin;
        Index b = m_marks[m_marks[placeholder].next].origin;
        while (a != b) {
            Index& deeper = m_origins[a].depth >= m_origins[b].depth ? a : b;
            deeper = m_origins[deeper].parent;
        }
        return a;
    }
    [[nodiscard]] bool IsEndless(Index placeholder) const
    {
        for (Index origin = OriginOf(placeholder); origin != kOriginal; origin = m_origins[origin].parent) {
            if (m_names[m_origins[origin].name] == m_marks[placeholder].text)
                return true;
        }
        return false;
    }

    /// Replaces a placeholder wherever it stands. False when the values would bring in too much.
    bool Replace(Index placeholder)
    {
        const std::u16string name = m_marks[placeholder].text;
        const CString value = ValueOf(name);
        const std::vector<Index> places = PlacesOf(placeholder, name);
        if (value.View().size() > (kMostUnits - m_unitsBroughtIn) / places.size())
            return false;
        m_unitsBroughtIn += value.View().size() * places.size();
        m_names.push_back(name);
        for (const Index place : places)
            ReplaceAt(place, value.View());
        return true;
    }

    void ReplaceAt(Index open, std::u16string_view value)
    {
        const Index parent = OriginOf(open);
        m_origins.push_back({parent, m_origins[parent].depth + 1, static_cast<Index>(m_names.size() - 1)});
        const Index close = m_marks[open].next;
        const Index before = m_marks[open].previous;
        Remove(open);
        Remove(close);
        const Index last = InsertBehind(before, value, static_cast<Index>(m_origins.size() - 1));
        m_marks[last].text.append(m_marks[close].text);
        for (Index mark = last;; mark = m_marks[mark].previous) {
            if (mark != kStart)
                Register(mark);
            if (mark == before)
                return;
        }
    }

    /// Where the first placeholder and those of the same name stand.
    std::vector<Index> PlacesOf(Index first, const std::u16string& name)
    {
        std::vector<Index> places;
        ++m_pass;
        AddRun(first, name, places);
        const std::vector<Index> known = std::exchange(m_marksByName[HashOf(name)], {});
        for (const Index mark : known) {
            if (m_marks[mark].isGone || m_marks[mark].pass == m_pass)
                continue;
            if (IsNamed(mark, name))
                AddRun(mark, name, places);
            else if (HashOf(m_marks[mark].text) == HashOf(name))
                Register(mark);  // another name, or none yet
        }
        return places;
    }
    /// Neighbours of one name share a mark: from the first on, every other one is a place.
    void AddRun(Index mark, const std::u16string& name, std::vector<Index>& places)
    {
        while (IsNamed(m_marks[mark].previous, name))
            mark = m_marks[mark].previous;
        for (bool isPlace = true; IsNamed(mark, name); mark = m_marks[mark].next, isPlace = !isPlace) {
            m_marks[mark].pass = m_pass;
            if (!isPlace)
                Register(mark);
            else if (!IsEndless(mark))
                places.push_back(mark);
        }
    }

    CString Joined() const
    {
        rk::TextBuilder result;
        result.Append(m_marks[kStart].text);
        for (Index mark = m_marks[kStart].next; mark != kStart; mark = m_marks[mark].next) {
            result.Append(u'%');
            result.Append(m_marks[mark].text);
        }
        return result.Take();
    }

    std::vector<Mark> m_marks;
    std::vector<Origin> m_origins{1};
    std::vector<std::u16string> m_names;
    std::unordered_map<std::size_t, std::vector<Index>>
        m_marksByName;  // by hash; some are gone or have other names by now
    std::size_t m_unitsBroughtIn = 0;
    Index m_pass = 0;
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
    if (text == nullptr)
        return;
    CString name(placeholder);
    name.Remove(u'%');
    text->Replace(placeholder, ValueOf(name));
}

void CrkStringUtilities::ReplaceEnvironmentVariables(CString* text)
{
    if (text != nullptr && text->View().find(u'%') != std::u16string_view::npos)
        *text = Expansion(text->View()).Expanded();
}
