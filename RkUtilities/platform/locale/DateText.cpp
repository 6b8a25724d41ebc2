#include "RkUtilities/platform/locale/DateText.h"

#include "RkUtilities/platform/locale/DatePattern.h"
#include "RkUtilities/platform/locale/IcuServices.h"
#include "RkUtilities/platform/process/LocalTime.h"
#include "RkUtilities/platform/process/PerThread.h"

#include <array>
#include <atomic>
#include <map>
#include <mutex>
#include <optional>
#include <tuple>

namespace rk::platform {

namespace {

constexpr std::int64_t kSecondsAMinute = 60;
constexpr std::int64_t kSecondsADay = 86400;
// Since 1 June 1972 every zone is ahead of UTC by whole minutes and changes on a whole minute.
constexpr std::int64_t kWholeMinutesSince = 76204800;

std::int64_t FloorDivide(std::int64_t dividend, std::int64_t divisor)
{
    return dividend / divisor - static_cast<std::int64_t>(dividend % divisor < 0);
}

/// A text that a thread has made, and until when it holds.
struct MadeText {
    std::uint64_t formatId = 0;
    std::uint64_t zoneGeneration = 0;
    std::int64_t utcMinute = 0;
    std::int64_t localPeriod = 0;
    std::u16string text;
};

/// The last texts of a thread, so that a few formats in turn do not drive each other out.
MadeText& MadeTextOf(std::uint64_t formatId)
{
    auto& texts = PerThread<std::array<MadeText, 8>>();
    return texts[formatId % texts.size()];
}

/// The zone's name, found out again when the zone has changed.
const std::string& KnownZoneName(std::uint64_t zoneGeneration)
{
    struct Known {
        std::uint64_t generation = 0;
        std::string name;
    };
    auto& known = PerThread<Known>();
    if (known.generation != zoneGeneration) {
        known.name = ZoneName();
        known.generation = zoneGeneration;
    }
    return known.name;
}

/// Locales have rules that no pattern shows (other digits for a field, say), so the texts of a sample of times decide.
bool Agree(const DatePattern& pattern, const DateFormat& format)
{
    constexpr int kSampleCount = 150;  // all months, days of the week and hours are among them
    constexpr std::int64_t kStep = (kLastCalendarSecond - kFirstCalendarSecond) / kSampleCount;
    for (std::int64_t seconds = kFirstCalendarSecond; seconds <= kLastCalendarSecond; seconds += kStep) {
        std::u16string text;
        pattern.AppendTo(text, UtcCalendar(seconds));
        if (text != format.Text(seconds, 0))
            return false;
    }
    return true;
}

/// The format without ICU, where it can do without.
std::optional<DatePattern> PatternOf(const DateFormat& format)
{
    const std::u16string pattern = format.Pattern();
    const DateWords* const words = format.Words();
    if (pattern.empty() || words == nullptr)
        return std::nullopt;
    std::optional<DatePattern> parsed = DatePattern::Parse(pattern, *words);
    return parsed && Agree(*parsed, format) ? parsed : std::nullopt;
}

class KeptDateTextFormat final : public DateTextFormat {
public:
    KeptDateTextFormat(std::unique_ptr<const DateFormat> format, DateStyle time)
        : m_format(std::move(format)), m_pattern(PatternOf(*m_format)),
          m_showsZone(time == DateStyle::Long || time == DateStyle::Full), m_showsSeconds(time >= DateStyle::Medium),
          m_periodSeconds(time == DateStyle::None ? kSecondsADay : kSecondsAMinute), m_id(NextId())
    {}

    std::u16string_view Text(std::int64_t utcSeconds) const override
    {
        MadeText& made = MadeTextOf(m_id);
        const std::uint64_t zone = ZoneGeneration();
        const std::int64_t utcMinute = FloorDivide(utcSeconds, kSecondsAMinute);
        const bool holds = made.formatId == m_id && made.zoneGeneration == zone;
        if (holds && made.utcMinute == utcMinute)
            return made.text;
        const CalendarTime fields = LocalCalendar(utcSeconds);
        const std::int64_t period = FloorDivide(utcSeconds + fields.utcOffset, m_periodSeconds);
        if (!holds || made.localPeriod != period) {
            made.formatId = 0;  // nothing is kept if making fails
            Make(made.text, utcSeconds, fields, zone);
        }
        const bool isKept =
            !m_showsSeconds && utcSeconds >= kWholeMinutesSince && fields.utcOffset % kSecondsAMinute == 0;
        made.formatId = isKept ? m_id : 0;
        made.zoneGeneration = zone;
        made.utcMinute = utcMinute;
        made.localPeriod = period;
        return made.text;
    }

private:
    static std::uint64_t NextId()
    {
        static std::atomic<std::uint64_t> next{1};
        return next.fetch_add(1, std::memory_order_relaxed);
    }

    void Make(std::u16string& text, std::int64_t utcSeconds, const CalendarTime& fields,
              std::uint64_t zoneGeneration) const
    {
        if (m_pattern) {
            text.clear();
            m_pattern->AppendTo(text, fields);
        } else if (m_showsZone) {
            text = m_format->TextWithZone(utcSeconds, fields.utcOffset, KnownZoneName(zoneGeneration));
        } else {
            text = m_format->Text(utcSeconds, fields.utcOffset);
        }
    }

    std::unique_ptr<const DateFormat> m_format;
    std::optional<DatePattern> m_pattern;
    bool m_showsZone;
    bool m_showsSeconds;
    std::int64_t m_periodSeconds;
    std::uint64_t m_id;
};

std::shared_ptr<const DateTextFormat> Make(const IcuServices& icu, const std::string& locale, DateStyle date,
                                           DateStyle time)
{
    if (date == DateStyle::None && time == DateStyle::None)
        return nullptr;
    auto format = icu.dateFormat(locale, date, time);
    return format != nullptr ? std::make_shared<KeptDateTextFormat>(std::move(format), time) : nullptr;
}

}  // namespace

void DateTextFormat::Prepare()
{
    Icu();
}

std::shared_ptr<const DateTextFormat> DateTextFormat::For(const std::string& locale, DateStyle date, DateStyle time)
{
    constexpr std::size_t kMostFormats = 256;  // more are hostile names; they are let go together
    static std::mutex mutex;
    // Never destroyed: a static object's destructor may still ask.
    static auto& formats =
        *new std::map<std::tuple<std::string, DateStyle, DateStyle>, std::shared_ptr<const DateTextFormat>>;
    const IcuServices& icu = Icu();  // before a lock is held
    const std::tuple key(locale, date, time);
    const std::lock_guard lock(mutex);
    const auto known = formats.find(key);
    if (known != formats.end())
        return known->second;
    if (formats.size() >= kMostFormats)
        formats.clear();
    return formats.emplace(key, Make(icu, locale, date, time)).first->second;
}

}  // namespace rk::platform
