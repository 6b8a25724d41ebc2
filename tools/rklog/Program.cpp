#include "rklog/Program.h"

#include "rklog/Options.h"
#include "rklog/Sink.h"

#include <RkUtilities/dates/CrkDateUtilities.h>
#include <RkUtilities/foundation/UserLocale.h>

#include <chrono>
#include <cstdlib>
#include <ctime>
#include <ostream>
#include <stdexcept>
#include <thread>

namespace rklog {

namespace {

Colors ColorsOf(const Options& options, bool isTerminal) {
    const char* const refusal = std::getenv("NO_COLOR");
    const bool isWanted = isTerminal && (refusal == nullptr || *refusal == '\0');
    const bool isAlways = options.colors == Options::Colors::Always;
    return isAlways || (options.colors == Options::Colors::Automatic && isWanted) ? Colors::Terminal : Colors::None;
}

std::unique_ptr<RecordWriter> MakeWriter(const Options& options, bool isTerminal) {
    switch (options.format) {
    case Options::Format::Json:
        return MakeJsonWriter();
    case Options::Format::Csv:
        return MakeCsvWriter();
    case Options::Format::Html:
        return MakeHtmlWriter();
    case Options::Format::Xml:
        return MakeXmlWriter();
    case Options::Format::Text:
        break;
    }
    return MakeTextWriter(ColorsOf(options, isTerminal));
}

std::unique_ptr<Sink> MakeSink(const Options& options, bool isTerminal, std::ostream& out) {
    if (options.counts)
        return std::make_unique<CountSink>(out);
    if (options.wantsStats)
        return std::make_unique<StatsSink>(out);
    if (options.last)
        return std::make_unique<LastSink>(*options.last, MakeWriter(options, isTerminal), out);
    return std::make_unique<WriteSink>(MakeWriter(options, isTerminal), out);
}

MergedLogs OpenLogs(const Options& options, Trouble& trouble) {
    const bool needsTimes = !options.counts || options.filter.NeedsTimes() || options.paths.size() > 1;
    Reading reading{
        .users = {}, .isNamed = !options.locale.empty(), .needsTimes = needsTimes, .follows = options.follows};
    if (needsTimes) {
        rk::SetUserLocale(options.locale);
        reading.users = StyleOf([](const CTime& time) { return CrkDateUtilities::ShortDateString(time); });
    }
    std::vector<std::unique_ptr<Log>> logs;
    logs.reserve(options.paths.size());
    for (const std::string& path : options.paths)
        logs.push_back(std::make_unique<Log>(path, reading, trouble));
    return MergedLogs(std::move(logs));
}

/// Passes on what is there; returns whether an entry was wanted.
bool Drain(MergedLogs& logs, const Filter& filter, Sink& sink) {
    bool isFound = false;
    while (Log* const log = logs.Next()) {
        const bool isInTime = !filter.NeedsTimes() || filter.Admits(log->Time());
        if (!isInTime || !filter.Admits(log->Current()))
            continue;
        isFound = true;
        sink.Take(*log);
    }
    return isFound;
}

int Run(const Options& options, bool isTerminal, std::ostream& out, Trouble& trouble) {
    MergedLogs logs = OpenLogs(options, trouble);
    const std::unique_ptr<Sink> sink = MakeSink(options, isTerminal, out);
    bool isFound = Drain(logs, options.filter, *sink);
    while (options.follows && out) {
        sink->Pause();
        constexpr std::chrono::milliseconds kBetweenLooks(200);
        std::this_thread::sleep_for(kBetweenLooks);
        isFound |= Drain(logs, options.filter, *sink);
    }
    sink->Finish();
    out.flush();
    if (!out)
        trouble.Say("the output cannot be written");
    return trouble.Happened() ? 2 : isFound ? 0 : 1;
}

}  // namespace

int RunProgram(const std::vector<std::string_view>& arguments, bool isTerminal, std::ostream& out, std::ostream& err) {
    Trouble trouble(err);
    try {
        const Options options = ReadOptions(arguments, std::time(nullptr));
        if (options.wantsHelp || options.wantsVersion) {
            out << (options.wantsHelp ? kHelp : "rklog " TOOL_VERSION "\n") << std::flush;
            return 0;
        }
        return Run(options, isTerminal, out, trouble);
    } catch (const std::invalid_argument& error) {
        trouble.Say(std::string(error.what()) + "; see rklog --help");
    } catch (const std::bad_alloc&) {
        trouble.Say("not enough memory");
    }
    return 2;
}

}  // namespace rklog
