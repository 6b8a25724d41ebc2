#include "RkUtilities/platform/locale/DateText.h"

#include "RkUtilities/platform/locale/IcuMemory.h"
#include "RkUtilities/platform/process/KeptByName.h"
#include "RkUtilities/platform/process/LocalTime.h"
#include "RkUtilities/platform/process/PerThread.h"
#include "RkUtilities/platform/process/SameAsLast.h"
#include "RkUtilities/platform/process/Threads.h"

#include <array>
#include <limits>
#include <memory>
#include <mutex>
#include <tuple>
#include <unicode/gregocal.h>
#include <unicode/simpletz.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

namespace rk::platform {

namespace {

constexpr double kMillisecondsASecond = 1000;
constexpr std::int64_t kSecondsAMinute = 60;
/// Since 1 June 1972 every zone differs from UTC by whole minutes and changes on a whole minute.
constexpr std::int64_t kWholeMinutesSince = 76204800;
constexpr std::array kIcuStyles = {icu::DateFormat::kNone, icu::DateFormat::kShort, icu::DateFormat::kMedium,
                                   icu::DateFormat::kLong, icu::DateFormat::kFull};
constexpr std::size_t kStyleCount = kIcuStyles.size();

struct StylePair {
    DateStyle date;
    DateStyle time;

    [[nodiscard]] std::size_t Index() const {
        return static_cast<std::size_t>(date) * kStyleCount + static_cast<std::size_t>(time);
    }
    [[nodiscard]] bool ShowsSeconds() const { return time >= DateStyle::Medium; }
    [[nodiscard]] bool ShowsZone() const { return time >= DateStyle::Long; }
};

/// The object; ICU gives null where it has no memory for it.
template <class Object> std::unique_ptr<Object> Owned(Object* object) {
    if (object == nullptr)
        throw std::bad_alloc();
    return std::unique_ptr<Object>(object);
}

// --- Used with Lock::Locale held: ICU has locks, and its formats change in use

/// ICU's zone by the name of the C library's zone; a zone of the given offset where ICU's zone has another offset then.
std::unique_ptr<icu::TimeZone> ZoneAt(std::int64_t utcSeconds, int utcOffset, const std::string& zoneName) {
    constexpr std::size_t kMostZones = 16;
    static constinit KeptByName<std::unique_ptr<icu::TimeZone>, kMostZones> zones;
    const icu::TimeZone& named = *zones.Of(zoneName, [&] {
        return MadeWhole([&] {
            return std::unique_ptr<icu::TimeZone>(
                icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(zoneName)));
        });
    });
    std::int32_t standard = 0;
    std::int32_t daylight = 0;
    UErrorCode error = U_ZERO_ERROR;
    named.getOffset(static_cast<UDate>(utcSeconds) * kMillisecondsASecond, 0, standard, daylight, error);
    const bool agrees =
        U_SUCCESS(error) != 0 && (standard + daylight) / 1000 == utcOffset && !(named == icu::TimeZone::getUnknown());
    return agrees ? Owned(named.clone())
                  : Owned<icu::TimeZone>(new icu::SimpleTimeZone(utcOffset * 1000, icu::UnicodeString()));
}

/// A format of ICU's and the calendar that it is given, days before 1582 Gregorian too.
struct StyledFormat {
    std::unique_ptr<const icu::DateFormat> format;
    std::unique_ptr<icu::Calendar> calendar;

    static StyledFormat Make(const std::string& locale, StylePair styles) {
        const auto style = [](DateStyle ours) { return kIcuStyles[static_cast<std::size_t>(ours)]; };
        StyledFormat made;
        made.format = MadeWhole([&] {
            return std::unique_ptr<const icu::DateFormat>(icu::DateFormat::createDateTimeInstance(
                style(styles.date), style(styles.time), icu::Locale(locale.c_str())));
        });
        made.calendar = Owned(made.format->getCalendar()->clone());
        made.calendar->adoptTimeZone(Owned(icu::TimeZone::getGMT()->clone()).release());
        UErrorCode error = U_ZERO_ERROR;
        if (auto* const gregorian = dynamic_cast<icu::GregorianCalendar*>(made.calendar.get()))
            gregorian->setGregorianChange(-std::numeric_limits<double>::max(), error);
        MadeWhole([&] { return made.Text(0); });  // with what ICU makes at the first use
        return made;
    }

    /// The text in the calendar's zone.
    [[nodiscard]] std::u16string Text(std::int64_t seconds) const {
        UErrorCode error = U_ZERO_ERROR;
        calendar->setTime(static_cast<UDate>(seconds) * kMillisecondsASecond, error);
        icu::UnicodeString text;
        icu::FieldPosition ignored;
        format->format(*calendar, text, ignored);
        if (text.isBogus() != 0 || error == U_MEMORY_ALLOCATION_ERROR)
            throw std::bad_alloc();
        return {text.getBuffer(), static_cast<std::size_t>(text.length())};
    }
};

// --- Taking the locks themselves

/// The zone's name, found out again when the zone has changed.
const std::string& LastZoneName(std::uint64_t zoneGeneration) {
    struct Last {
        SameAsLast<std::uint64_t, std::string> name;
    };
    return PerThread<Last>().name.For(zoneGeneration, ZoneName);
}

std::u16string MadeText(const std::string& locale, StylePair styles, std::int64_t utcSeconds, int utcOffset,
                        std::uint64_t zoneGeneration) {
    constexpr std::size_t kMostFormats = 256;
    static constinit KeptByName<StyledFormat, kMostFormats> formats;
    const std::string* const zoneName = styles.ShowsZone() ? &LastZoneName(zoneGeneration) : nullptr;
    const std::lock_guard lock(MutexOf(Lock::Locale));
    const StyledFormat& format =
        formats.Of(locale + '/' + std::to_string(styles.Index()), [&] { return StyledFormat::Make(locale, styles); });
    if (zoneName == nullptr)
        return format.Text(utcSeconds + utcOffset);  // in UTC
    format.calendar->adoptTimeZone(ZoneAt(utcSeconds, utcOffset, *zoneName).release());
    return format.Text(utcSeconds);
}

}  // namespace

std::u16string_view LocalDateText(const std::string& locale, DateStyle date, DateStyle time, std::int64_t utcSeconds) {
    const StylePair styles{date, time};
    if (styles.Index() == 0)
        return {};
    // By moment (the second, or the first second of the minute), zone and locale.
    using LastText = SameAsLast<std::tuple<std::int64_t, std::uint64_t, std::string>, std::u16string>;
    struct LastTexts {
        std::array<LastText, kStyleCount * kStyleCount> byStyles;
    };
    LastText& last = PerThread<LastTexts>().byStyles[styles.Index()];
    const std::uint64_t zone = ZoneGeneration();
    const std::int64_t second = (utcSeconds % kSecondsAMinute + kSecondsAMinute) % kSecondsAMinute;
    bool isKept = true;
    const std::u16string& text =
        last.For(std::forward_as_tuple(styles.ShowsSeconds() ? utcSeconds : utcSeconds - second, zone, locale), [&] {
            const CalendarTime fields = LocalCalendar(utcSeconds);
            isKept = zone != 0 && (styles.ShowsSeconds() ||
                                   (utcSeconds >= kWholeMinutesSince && fields.tm_sec == static_cast<int>(second)));
            return MadeText(locale, styles, utcSeconds, static_cast<int>(fields.tm_gmtoff), zone);
        });
    if (!isKept)
        last.AskAgain();
    return text;
}

}  // namespace rk::platform
