#include "mindmap/Options.h"

#include "mindmap/Placeholders.h"

#include <RkUtilities/foundation/NativePath.h>

#include <algorithm>
#include <array>

namespace mindmap {

const char kHelp[] = R"(mindmap: draws an outline as a mind map

Usage: mindmap OUTLINE [-o MAP.svg] [--replace] [--log FOLDER]
               [--locale NAME]

  OUTLINE        OPML 2.0, Markdown headings and lists, or indented lines
  -o MAP.svg     the map; otherwise beside the outline, with its name and .svg
  --replace      may take the place of a map that is there; without it the new
                 one gets the next free name, such as "plan (2).svg"
  --log FOLDER   for messages.xml, the log, and settings.xml, which says what is
                 logged; otherwise beside the map, with its name and .log
  --locale NAME  the language and its formats, as de_DE; otherwise the shell's
  --help         this text

The first topic is the centre when all others are below it, otherwise the title
or file name. OPML topics may have _note, url, date and amount.
Paths may hold %NAME% for an environment variable.
Exit status: 0 when all is done; 1 when an outline, map or setting cannot be
read or written, with the reason; 2 when the command is not understood.
)";

namespace {

/// An option with a text after it; it may be given once.
struct TextOption {
    std::string_view name;
    CString Options::*value;
};
constexpr std::array<TextOption, 3> kTextOptions = {{
    {"-o", &Options::mapPath},
    {"--log", &Options::logFolder},
    {"--locale", &Options::locale},
}};

struct Switch {
    std::string_view name;
    bool Options::*value;
};
constexpr std::array<Switch, 2> kSwitches = {{
    {"--replace", &Options::mayReplaceMap},
    {"--help", &Options::wantsHelp},
}};

template <class Table>
auto Find(const Table& table, std::string_view name)
{
    const auto* const found = std::find_if(table.begin(), table.end(), [&](const auto& o) { return o.name == name; });
    return found == table.end() ? nullptr : found;
}

class Reader {
public:
    explicit Reader(const std::vector<std::string_view>& arguments) : m_arguments(arguments) {}

    Options Read()
    {
        bool takesOptions = true;
        while (m_next < m_arguments.size() && !m_options.wantsHelp) {
            const std::string_view argument = m_arguments[m_next++];
            if (takesOptions && argument == "--")
                takesOptions = false;
            else if (takesOptions && argument.size() > 1 && argument[0] == '-')
                TakeOption(argument);
            else
                Take(m_options.outlinePath, argument);
        }
        if (m_options.outlinePath.IsEmpty() && !m_options.wantsHelp)
            throw UsageError{u"which outline?"};
        return m_options;
    }

private:
    void TakeOption(std::string_view name)
    {
        if (const Switch* const found = Find(kSwitches, name)) {
            m_options.*(found->value) = true;
            return;
        }
        const TextOption* const found = Find(kTextOptions, name);
        if (found == nullptr)
            throw UsageError{CString(u"unknown option ") + rk::PathText(name)};
        if (m_next == m_arguments.size())
            throw UsageError{CString(name) + u" needs a text after it"};
        Take(m_options.*(found->value), m_arguments[m_next++]);
    }

    static void Take(CString& value, std::string_view argument)
    {
        if (!value.IsEmpty())
            throw UsageError{CString(u"one too many: ") + rk::PathText(argument)};
        value = ExpandPlaceholders(rk::PathText(argument));
    }

    const std::vector<std::string_view>& m_arguments;
    std::size_t m_next = 0;
    Options m_options;
};

}  // namespace

Options ReadOptions(const std::vector<std::string_view>& arguments)
{
    return Reader(arguments).Read();
}

}  // namespace mindmap
