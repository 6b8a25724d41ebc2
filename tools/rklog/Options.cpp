#include "rklog/Options.h"

#include "rklog/Levels.h"
#include "rklog/PointInTime.h"

#include <RkUtilities/foundation/CString.h>

#include <algorithm>
#include <charconv>
#include <stdexcept>

namespace rklog {

const std::string_view kHelp = R"(rklog: reads message logs

Usage: rklog [OPTION]... [FILE or FOLDER]...

A folder stands for its log with all backups; "-" and no argument for standard
input. Several logs are merged by time.

Which entries:
  --level LEVEL      of this level and worse: Emergency, Critical, Error,
                     Warning, Notice, Info, Debug
  --category NAME    of this category; may be repeated, as may --id, --thread
  --text TEXT        with this text in message or description
  --regex PATTERN    with a match of this extended regular expression
  -i, --ignore-case  for --text and --regex
  --id GUID          about this object
  --thread HEX       from this thread
  --since TIME       from then on: 2026-11-16, 2026-11-16T21:52, 21:52 (today),
  --until TIME       up to then    30m, 2h, 7d (ago)
  --last N           the last N of them
How:
  --format FORMAT    text, json (an object a line), csv, html (a page), xml
  --count            only how many
  --stats            counts by level, category, process and minute, the longest
                     gap, the most frequent messages
  --follow           waits for what comes
  --locale NAME      how the log's dates are written, as en_US; else recognised
  --color WHEN       always, never or auto (on a terminal)
  --version, --help

Exit status: 0 when entries were found, 1 when none, 2 when something failed.
)";

namespace {

using Value = std::string_view;

struct Reader {
    Options options;
    Seconds nowUtc;
    std::vector<std::string> patterns;
};

[[noreturn]] void Refuse(std::string_view reason, Value value) {
    throw std::invalid_argument(std::string(reason) + ": " + std::string(value));
}

template <class Choice, std::size_t N>
Choice ChoiceOf(const std::pair<std::string_view, Choice> (&choices)[N], std::string_view what, Value value) {
    for (const auto& [name, choice] : choices) {
        if (name == value)
            return choice;
    }
    Refuse(what, value);
}

void SetLevel(Reader& reader, Value value) {
    reader.options.filter.level = LevelOfArgument(value);
    if (!reader.options.filter.level)
        Refuse("no level", value);
}

void AddId(Reader& reader, Value value) {
    const std::vector<std::string> texts = LogTextsOfId(CString(value));
    if (texts.empty())
        Refuse("no GUID", value);
    auto& ids = reader.options.filter.ids;
    ids.insert(ids.end(), texts.begin(), texts.end());
}

void AddThread(Reader& reader, Value value) {
    if (value.starts_with("0x"))
        value.remove_prefix(2);
    CString digits(value);
    reader.options.filter.threads.push_back(digits.MakeLower().ToUtf8());
}

Stretch StretchOf(const Reader& reader, Value value) {
    const std::optional<Stretch> stretch = ReadPointInTime(value, reader.nowUtc);
    if (!stretch)
        Refuse("no time", value);
    return *stretch;
}

void SetLast(Reader& reader, Value value) {
    std::size_t count = 0;
    const char* const end = value.data() + value.size();
    const auto [read, error] = std::from_chars(value.data(), end, count);
    if (error != std::errc() || read != end)
        Refuse("no number", value);
    reader.options.last = count;
}

void SetFormat(Reader& reader, Value value) {
    using enum Options::Format;
    constexpr std::pair<std::string_view, Options::Format> kFormats[] = {
        {"text", Text}, {"json", Json}, {"csv", Csv}, {"html", Html}, {"xml", Xml}};
    reader.options.format = ChoiceOf(kFormats, "no format", value);
}

void SetColors(Reader& reader, Value value) {
    using enum Options::Colors;
    constexpr std::pair<std::string_view, Options::Colors> kColors[] = {
        {"auto", Automatic}, {"always", Always}, {"never", Never}};
    reader.options.colors = ChoiceOf(kColors, "no choice of colors", value);
}

/// An option with a value.
struct ValueOption {
    std::string_view name;
    void (*take)(Reader&, Value);
};
constexpr ValueOption kValueOptions[] = {
    {"--level", SetLevel},
    {"--category", [](Reader& r, Value v) { r.options.filter.categories.emplace_back(v); }},
    {"--text", [](Reader& r, Value v) { r.options.filter.texts.emplace_back(v); }},
    {"--regex", [](Reader& r, Value v) { r.patterns.emplace_back(v); }},
    {"--id", AddId},
    {"--thread", AddThread},
    {"--since", [](Reader& r, Value v) { r.options.filter.sinceUtc = StretchOf(r, v).first; }},
    {"--until", [](Reader& r, Value v) { r.options.filter.untilUtc = StretchOf(r, v).last; }},
    {"--last", SetLast},
    {"--format", SetFormat},
    {"--locale", [](Reader& r, Value v) { r.options.locale = v; }},
    {"--color", SetColors},
};

/// An option without a value.
struct Switch {
    std::string_view name;
    void (*set)(Options&);
};
constexpr Switch kSwitches[] = {
    {"--count", [](Options& o) { o.counts = true; }},
    {"--stats", [](Options& o) { o.wantsStats = true; }},
    {"--follow", [](Options& o) { o.follows = true; }},
    {"--ignore-case", [](Options& o) { o.filter.ignoresCase = true; }},
    {"-i", [](Options& o) { o.filter.ignoresCase = true; }},
    {"--help", [](Options& o) { o.wantsHelp = true; }},
    {"--version", [](Options& o) { o.wantsVersion = true; }},
};

template <class Table> auto Find(const Table& table, std::string_view name) {
    const auto found = std::find_if(std::begin(table), std::end(table), [&](const auto& o) { return o.name == name; });
    return found == std::end(table) ? nullptr : &*found;
}

void TakeOption(Reader& reader, const std::vector<std::string_view>& arguments, std::size_t& next) {
    const std::string_view argument = arguments[next - 1];
    const std::size_t equals = argument.starts_with("--") ? argument.find('=') : std::string_view::npos;
    const std::string_view name = argument.substr(0, equals);
    if (const Switch* const found = Find(kSwitches, argument)) {
        found->set(reader.options);
        return;
    }
    const ValueOption* const found = Find(kValueOptions, name);
    if (found == nullptr)
        Refuse("unknown option", argument);
    if (equals != std::string_view::npos)
        return found->take(reader, argument.substr(equals + 1));
    if (next == arguments.size())
        throw std::invalid_argument(std::string(name) + " needs a value");
    found->take(reader, arguments[next++]);
}

void Check(const Options& options) {
    if (options.follows && (options.counts || options.wantsStats || options.format == Options::Format::Html))
        throw std::invalid_argument("--follow has no end, so neither a count, statistics nor a page");
    if (options.counts + options.wantsStats + (options.format != Options::Format::Text) > 1)
        throw std::invalid_argument("--count, --stats and --format exclude each other");
}

}  // namespace

Options ReadOptions(const std::vector<std::string_view>& arguments, Seconds nowUtc) {
    Reader reader{.options = {}, .nowUtc = nowUtc, .patterns = {}};
    bool takesOptions = true;
    for (std::size_t next = 0; next < arguments.size() && !reader.options.wantsHelp;) {
        const std::string_view argument = arguments[next++];
        if (takesOptions && argument == "--")
            takesOptions = false;
        else if (takesOptions && argument.size() > 1 && argument[0] == '-')
            TakeOption(reader, arguments, next);
        else
            reader.options.paths.emplace_back(argument);
    }
    for (const std::string& pattern : reader.patterns)
        reader.options.filter.patterns.push_back(
            std::make_shared<const Pattern>(pattern, reader.options.filter.ignoresCase));
    if (reader.options.paths.empty())
        reader.options.paths.emplace_back("-");
    Check(reader.options);
    return reader.options;
}

}  // namespace rklog
