#include "RkUtilities/platform/IcuDateFormat.h"

#include "RkUtilities/platform/LocalTime.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <mutex>
#include <unicode/dcfmtsym.h>
#include <unicode/decimfmt.h>
#include <unicode/dtfmtsym.h>
#include <unicode/gregocal.h>
#include <unicode/timezone.h>

namespace rk::platform {

namespace {

constexpr double kMillisecondsASecond = 1000;

std::u16string Units(const icu::UnicodeString& text)
{
    return {text.getBuffer(), static_cast<std::size_t>(text.length())};
}

/// The words of ICU's format and the digits of its numbers.
class IcuWords final : public DateWords {
public:
    explicit IcuWords(const icu::DateFormatSymbols& symbols) : m_symbols(symbols) {}

    std::vector<std::u16string> Words(char16_t letter, std::size_t width) const override
    {
        using Symbols = icu::DateFormatSymbols;
        constexpr std::size_t kWide = 4;
        const Symbols::DtWidthType type = width == kWide ? Symbols::WIDE : Symbols::ABBREVIATED;
        if (width > kWide)
            return {};
        std::int32_t count = 0;
        const icu::UnicodeString* words = nullptr;
        switch (letter) {
        case u'M':
            words = m_symbols.getMonths(count, Symbols::FORMAT, type);
            break;
        case u'L':
            words = m_symbols.getMonths(count, Symbols::STANDALONE, type);
            break;
        case u'E':
            words = m_symbols.getWeekdays(count, Symbols::FORMAT, type) + 1;  // ICU's Sunday is 1
            --count;
            break;
        case u'a':
            words = m_symbols.getAmPmStrings(count);
            break;
        default:
            return {};
        }
        std::vector<std::u16string> list(static_cast<std::size_t>(count));
        std::transform(words, words + count, list.begin(), Units);
        return list;
    }

    /// False when the numbers are not written with ten digits of one unit each.
    bool TakeDigits(const icu::NumberFormat* numbers)
    {
        const auto* const decimal = dynamic_cast<const icu::DecimalFormat*>(numbers);
        if (decimal == nullptr)
            return false;
        for (std::size_t digit = 0; digit < digits.size(); ++digit) {
            const icu::UnicodeString& text =
                decimal->getDecimalFormatSymbols()->getConstDigitSymbol(static_cast<std::int32_t>(digit));
            if (text.length() != 1)
                return false;
            digits[digit] = text[0];
        }
        return true;
    }

private:
    const icu::DateFormatSymbols& m_symbols;
};

std::unique_ptr<icu::TimeZone> FixedZone(int utcOffset)
{
    const int size = utcOffset < 0 ? -utcOffset : utcOffset;
    const auto digits = [](int value) { return (value < 10 ? "0" : "") + std::to_string(value); };
    const std::string name = std::string("GMT") + (utcOffset < 0 ? '-' : '+') + digits(size / 3600) + ':' +
                             digits(size / 60 % 60) + ':' + digits(size % 60);
    return std::unique_ptr<icu::TimeZone>(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(name)));
}

/// ICU's zone of the C library's name, looked up again when the zone has changed.
std::shared_ptr<const icu::TimeZone> NamedZone()
{
    struct Known {
        std::mutex mutex;
        std::uint64_t generation = 0;
        std::shared_ptr<const icu::TimeZone> zone;
    };
    static auto& known = *new Known;  // never destroyed: a static object's destructor may still ask
    const std::uint64_t generation = ZoneGeneration();
    const std::lock_guard lock(known.mutex);
    if (known.generation != generation) {
        known.zone.reset(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(ZoneName())));
        known.generation = generation;
    }
    return known.zone;
}

/// ICU's zone of the C library's name where both agree about the time, else one of that offset.
std::unique_ptr<icu::TimeZone> ZoneAt(std::int64_t utcSeconds, int utcOffset)
{
    const std::shared_ptr<const icu::TimeZone> named = NamedZone();
    std::int32_t standard = 0;
    std::int32_t daylight = 0;
    UErrorCode error = U_ZERO_ERROR;
    named->getOffset(static_cast<UDate>(utcSeconds) * kMillisecondsASecond, 0, standard, daylight, error);
    const bool agrees =
        U_SUCCESS(error) != 0 && (standard + daylight) / 1000 == utcOffset && !(*named == icu::TimeZone::getUnknown());
    return agrees ? std::unique_ptr<icu::TimeZone>(named->clone()) : FixedZone(utcOffset);
}

}  // namespace

IcuDateFormat::IcuDateFormat(std::unique_ptr<icu::SimpleDateFormat> format) : m_format(std::move(format))
{}

std::unique_ptr<IcuDateFormat> IcuDateFormat::Make(const std::string& locale, icu::DateFormat::EStyle date,
                                                   icu::DateFormat::EStyle time)
{
    std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createDateTimeInstance(date, time, icu::Locale::createCanonical(locale.c_str())));
    if (dynamic_cast<icu::SimpleDateFormat*>(format.get()) == nullptr)
        return nullptr;
    std::unique_ptr<icu::SimpleDateFormat> simple(static_cast<icu::SimpleDateFormat*>(format.release()));
    std::unique_ptr<icu::Calendar> calendar(simple->getCalendar()->clone());
    calendar->adoptTimeZone(icu::TimeZone::getGMT()->clone());
    if (auto* const gregorian = dynamic_cast<icu::GregorianCalendar*>(calendar.get())) {
        UErrorCode error = U_ZERO_ERROR;
        gregorian->setGregorianChange(-std::numeric_limits<double>::max(), error);
    }
    simple->adoptCalendar(calendar.release());
    return std::unique_ptr<IcuDateFormat>(new IcuDateFormat(std::move(simple)));
}

std::u16string IcuDateFormat::Text(std::int64_t seconds, std::unique_ptr<icu::TimeZone> zone) const
{
    const std::lock_guard lock(m_mutex);
    const std::unique_ptr<icu::Calendar> calendar(m_format->getCalendar()->clone());  // which formatting changes
    UErrorCode error = U_ZERO_ERROR;
    if (zone != nullptr)
        calendar->adoptTimeZone(zone.release());
    calendar->setTime(static_cast<UDate>(seconds) * kMillisecondsASecond, error);
    icu::UnicodeString text;
    icu::FieldPosition ignored;
    m_format->format(*calendar, text, ignored);
    return Units(text);
}

std::u16string IcuDateFormat::Text(std::int64_t utcSeconds, int utcOffset) const
{
    return Text(utcSeconds + utcOffset, nullptr);  // in the kept calendar's zone, UTC
}

std::u16string IcuDateFormat::TextWithZone(std::int64_t utcSeconds, int utcOffset) const
{
    return Text(utcSeconds, ZoneAt(utcSeconds, utcOffset));
}

std::optional<DatePattern> IcuDateFormat::Pattern() const
{
    IcuWords words(*m_format->getDateFormatSymbols());
    if (std::strcmp(m_format->getCalendar()->getType(), "gregorian") != 0 ||
        !words.TakeDigits(m_format->getNumberFormat()))
        return std::nullopt;
    icu::UnicodeString pattern;
    std::optional<DatePattern> parsed = DatePattern::Parse(Units(m_format->toPattern(pattern)), words);
    return parsed && Agrees(*parsed) ? parsed : std::nullopt;
}

/// Locales have rules that no pattern shows (other digits for a field, say), so the texts of a sample of times decide.
bool IcuDateFormat::Agrees(const DatePattern& pattern) const
{
    constexpr int kSampleCount = 150;  // all months, days of the week and hours are among them
    constexpr std::int64_t kStep = (kLastCalendarSecond - kFirstCalendarSecond) / kSampleCount;
    for (std::int64_t seconds = kFirstCalendarSecond; seconds <= kLastCalendarSecond; seconds += kStep) {
        std::u16string text;
        pattern.AppendTo(text, UtcCalendar(seconds));
        if (text != Text(seconds, 0))
            return false;
    }
    return true;
}

}  // namespace rk::platform
