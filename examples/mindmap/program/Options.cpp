#include "mindmap/program/Options.h"

#include "mindmap/read/Placeholders.h"

#include <RkUtilities/foundation/NativePath.h>

#include <algorithm>
#include <array>

namespace mindmap {

const char kHelp[] = R"(mindmap: draws an outline as a mind map

Usage: mindmap OUTLINE [-o MAP.svg] [--replace] [--log FOLDER] [--locale NAME]
               [--expand]
       mindmap --set NAME=VALUE | --settings

  OUTLINE        OPML 2.0, Markdown or indented lines; "-" for standard input.
                 One not here is looked for in the last outline's folder
  -o MAP.svg     the map, MAP.html for one that folds in a browser, "-" for
                 standard output; otherwise beside the outline
  --replace      may replace a map that is there; without it the new one gets
                 the next free name, such as "plan (2).svg"
  --log FOLDER   for messages.xml, the log, and settings.xml, what is logged;
                 otherwise beside the map, with its name and .log
  --locale NAME  the language and its formats, as de_DE; otherwise the shell's
  --expand       puts environment variables for %NAME% in the outline's links:
                 the map then tells their values to all who see it
  --set          remembers theme=light or dark, shapes=rounded, square or pill,
                 folder=FOLDER, the last outline's
  --settings     shows what is remembered, and where

OPML topics may have _note, url, date, amount. Paths may hold %NAME%, too.
Exit status: 0; 1 when something cannot be read or written; 2 for a wrong usage
)";

namespace {

/// An option with a text after it; it may be given once.
struct TextOption {
    std::string_view name;
    CString Options::* value;
};
constexpr std::array<TextOption, 3> kTextOptions = {{
    {"-o", &Options::mapPath},
    {"--log", &Options::logFolder},
    {"--locale", &Options::locale},
}};

constexpr std::string_view kSet = "--set";  // with a text after it, as often as wanted

struct Switch {
    std::string_view name;
    bool Options::* value;
};
constexpr std::array<Switch, 4> kSwitches = {{
    {"--replace", &Options::mayReplaceMap},
    {"--settings", &Options::wantsSettings},
    {"--expand", &Options::expandsLinks},
    {"--help", &Options::wantsHelp},
}};

template <class Table> auto Find(const Table& table, std::string_view name) {
    const auto* const found = std::find_if(table.begin(), table.end(), [&](const auto& o) { return o.name == name; });
    return found == table.end() ? nullptr : found;
}

class Reader {
public:
    explicit Reader(const std::vector<std::string_view>& arguments) : m_arguments(arguments) {}

    Options Read() {
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
        const bool hasOtherWork = m_options.wantsHelp || m_options.wantsSettings || !m_options.assignments.empty();
        if (m_options.outlinePath.IsEmpty() && !hasOtherWork)
            throw UsageError{u"which outline?"};
        return m_options;
    }

private:
    void TakeOption(std::string_view name) {
        if (const Switch* const found = Find(kSwitches, name)) {
            m_options.*(found->value) = true;
            return;
        }
        const TextOption* const found = Find(kTextOptions, name);
        if (found == nullptr && name != kSet)
            throw UsageError{CString(u"unknown option ") + rk::PathText(name)};
        if (m_next == m_arguments.size())
            throw UsageError{CString(name) + u" needs a text after it"};
        const std::string_view argument = m_arguments[m_next++];
        if (found != nullptr)
            Take(m_options.*(found->value), argument);
        else
            m_options.assignments.push_back(rk::PathText(argument));
    }

    static void Take(CString& value, std::string_view argument) {
        if (!value.IsEmpty())
            throw UsageError{CString(u"one too many: ") + rk::PathText(argument)};
        value = ExpandPlaceholders(rk::PathText(argument));
    }

    const std::vector<std::string_view>& m_arguments;
    std::size_t m_next = 0;
    Options m_options;
};

}  // namespace

Options ReadOptions(const std::vector<std::string_view>& arguments) { return Reader(arguments).Read(); }

}  // namespace mindmap
