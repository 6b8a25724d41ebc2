#include "RkUtilities/platform/DateText.h"

#include "RkUtilities/platform/LocalTime.h"
#include "RkUtilities/platform/PerThread.h"

#include <array>
#include <atomic>
#include <limits>
#include <map>
#include <mutex>
#include <tuple>
#include <unicode/gregocal.h>
#include <unicode/simpletz.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

namespace rk::platform {

namespace {

constexpr std::int64_t kSecondsAMinute = 60;
constexpr std::int64_t kSecondsADay = 86400;
// Since 1 June 1972 every zone is ahead of UTC by whole minutes and changes on a whole minute.
constexpr std::int64_t kWholeMinutesSince = 76204800;

icu::DateFormat::EStyle IcuStyle(DateStyle style)
{
    constexpr std::array kStyles = {icu::DateFormat::kNone, icu::DateFormat::kShort, icu::DateFormat::kMedium,
                                    icu::DateFormat::kLong, icu::DateFormat::kFull};
    return kStyles[static_cast<std::size_t>(style)];
}

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

class IcuDateTextFormat final : public DateTextFormat {
public:
    IcuDateTextFormat(std::unique_ptr<icu::DateFormat> format, DateStyle time)
        : m_format(std::move(format)), m_showsZone(time == DateStyle::Long || time == DateStyle::Full),
          m_periodSeconds(time == DateStyle::None ? kSecondsADay : kSecondsAMinute),
          m_keepsTexts(time == DateStyle::None || time == DateStyle::Short), m_id(NextId())
    {}

    std::u16string_view Text(std::int64_t utcSeconds) const override
    {
        MadeText& made = MadeTextOf(m_id);
        const std::uint64_t zone = ZoneGeneration();
        const std::int64_t utcMinute = FloorDivide(utcSeconds, kSecondsAMinute);
        const bool sameFormat = made.formatId == m_id && made.zoneGeneration == zone;
        if (sameFormat && made.utcMinute == utcMinute)
            return made.text;
        const std::int64_t offset = LocalOffset(utcSeconds);
        const std::int64_t period = FloorDivide(utcSeconds + offset, m_periodSeconds);
        if (!sameFormat || made.localPeriod != period || !m_keepsTexts) {
            made.formatId = 0;  // nothing is kept if making fails
            made.text = Made(utcSeconds, offset);
        }
        if (m_keepsTexts && utcSeconds >= kWholeMinutesSince && offset % kSecondsAMinute == 0) {
            made.formatId = m_id;
            made.zoneGeneration = zone;
            made.utcMinute = utcMinute;
            made.localPeriod = period;
        } else {
            made.formatId = 0;
        }
        return made.text;
    }

private:
    static std::uint64_t NextId()
    {
        static std::atomic<std::uint64_t> next{1};
        return next.fetch_add(1, std::memory_order_relaxed);
    }

    std::u16string Made(std::int64_t utcSeconds, std::int64_t offset) const
    {
        const std::unique_ptr<icu::Calendar> calendar(m_format->getCalendar()->clone());
        UErrorCode error = U_ZERO_ERROR;
        icu::UnicodeString text;
        icu::FieldPosition ignored;
        if (m_showsZone) {
            calendar->adoptTimeZone(ZoneFor(utcSeconds, offset).release());
            calendar->setTime(static_cast<UDate>(utcSeconds) * 1000, error);
        } else {
            calendar->setTime(static_cast<UDate>(utcSeconds + offset) * 1000,
                              error);  // the kept calendar's zone is UTC
        }
        m_format->format(*calendar, text, ignored);
        return {text.getBuffer(), static_cast<std::size_t>(text.length())};
    }

    /// ICU's zone of the C library's name where both agree about the time, else one of that offset.
    static std::unique_ptr<icu::TimeZone> ZoneFor(std::int64_t utcSeconds, std::int64_t offset)
    {
        std::unique_ptr<icu::TimeZone> zone(icu::TimeZone::detectHostTimeZone());
        std::int32_t rawMilliseconds = 0;
        std::int32_t daylightMilliseconds = 0;
        UErrorCode error = U_ZERO_ERROR;
        zone->getOffset(static_cast<UDate>(utcSeconds) * 1000, 0, rawMilliseconds, daylightMilliseconds, error);
        if (U_FAILURE(error) != 0 || std::int64_t{rawMilliseconds} + daylightMilliseconds != offset * 1000)
            zone.reset(icu::TimeZone::createTimeZone(FixedZoneName(offset)));
        return zone;
    }

    static icu::UnicodeString FixedZoneName(std::int64_t offset)
    {
        const std::int64_t size = offset < 0 ? -offset : offset;
        const auto digits = [](std::int64_t value) { return (value < 10 ? "0" : "") + std::to_string(value); };
        const std::string name = std::string("GMT") + (offset < 0 ? '-' : '+') + digits(size / 3600) + ':' +
                                 digits(size / 60 % 60) + ':' + digits(size % 60);
        return icu::UnicodeString::fromUTF8(name);
    }

    std::unique_ptr<const icu::DateFormat> m_format;
    bool m_showsZone;
    std::int64_t m_periodSeconds;
    bool m_keepsTexts;
    std::uint64_t m_id;
};

std::shared_ptr<const DateTextFormat> Make(const std::string& locale, DateStyle date, DateStyle time)
{
    if (date == DateStyle::None && time == DateStyle::None)
        return nullptr;
    std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateTimeInstance(
        IcuStyle(date), IcuStyle(time), icu::Locale::createCanonical(locale.c_str())));
    if (format == nullptr)
        return nullptr;
    std::unique_ptr<icu::Calendar> calendar(format->getCalendar()->clone());
    calendar->adoptTimeZone(icu::TimeZone::createTimeZone("Etc/UTC"));
    if (auto* const gregorian = dynamic_cast<icu::GregorianCalendar*>(calendar.get())) {
        UErrorCode error = U_ZERO_ERROR;
        gregorian->setGregorianChange(-std::numeric_limits<double>::max(), error);
    }
    format->adoptCalendar(calendar.release());
    return std::make_shared<IcuDateTextFormat>(std::move(format), time);
}

}  // namespace

std::shared_ptr<const DateTextFormat> DateTextFormat::For(const std::string& locale, DateStyle date, DateStyle time)
{
    constexpr std::size_t kMostFormats = 256;  // more are hostile names; they are let go together
    static std::mutex mutex;
    // Never destroyed: a static object's destructor may still ask.
    static auto& formats =
        *new std::map<std::tuple<std::string, DateStyle, DateStyle>, std::shared_ptr<const DateTextFormat>>;
    const std::tuple key(locale, date, time);
    const std::lock_guard lock(mutex);
    const auto known = formats.find(key);
    if (known != formats.end())
        return known->second;
    if (formats.size() >= kMostFormats)
        formats.clear();
    return formats.emplace(key, Make(locale, date, time)).first->second;
}

}  // namespace rk::platform
