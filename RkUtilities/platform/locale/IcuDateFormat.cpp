#include "RkUtilities/platform/locale/IcuParts.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <mutex>
#include <unicode/dcfmtsym.h>
#include <unicode/decimfmt.h>
#include <unicode/dtfmtsym.h>
#include <unicode/gregocal.h>
#include <unicode/smpdtfmt.h>
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

/// ICU's zone of that name, looked up again when it is another one.
std::shared_ptr<const icu::TimeZone> NamedZone(const std::string& name)
{
    struct Known {
        std::mutex mutex;
        std::string name;
        std::shared_ptr<const icu::TimeZone> zone;
    };
    static auto& known = *new Known;  // never destroyed: a static object's destructor may still ask
    const std::lock_guard lock(known.mutex);
    if (known.zone == nullptr || known.name != name) {
        known.zone.reset(icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(name)));
        known.name = name;
    }
    return known.zone;
}

/// ICU's zone of that name where it has the offset at that time, else one of that offset.
std::unique_ptr<icu::TimeZone> ZoneAt(std::int64_t utcSeconds, int utcOffset, const std::string& zoneName)
{
    const std::shared_ptr<const icu::TimeZone> named = NamedZone(zoneName);
    std::int32_t standard = 0;
    std::int32_t daylight = 0;
    UErrorCode error = U_ZERO_ERROR;
    named->getOffset(static_cast<UDate>(utcSeconds) * kMillisecondsASecond, 0, standard, daylight, error);
    const bool agrees =
        U_SUCCESS(error) != 0 && (standard + daylight) / 1000 == utcOffset && !(*named == icu::TimeZone::getUnknown());
    return agrees ? std::unique_ptr<icu::TimeZone>(named->clone()) : FixedZone(utcOffset);
}

icu::DateFormat::EStyle IcuStyle(DateStyle style)
{
    constexpr std::array kStyles = {icu::DateFormat::kNone, icu::DateFormat::kShort, icu::DateFormat::kMedium,
                                    icu::DateFormat::kLong, icu::DateFormat::kFull};
    return kStyles[static_cast<std::size_t>(style)];
}

/// Formats from any thread, one at a time: ICU's formats make parts of themselves when they are first used.
class IcuDateFormat final : public DateFormat {
public:
    explicit IcuDateFormat(std::unique_ptr<icu::SimpleDateFormat> format)
        : m_format(std::move(format)), m_words(*m_format->getDateFormatSymbols()),
          m_hasDigits(m_words.TakeDigits(m_format->getNumberFormat()))
    {}

    std::u16string Text(std::int64_t utcSeconds, int utcOffset) const override
    {
        return Text(utcSeconds + utcOffset, nullptr);  // in the kept calendar's zone, UTC
    }

    std::u16string TextWithZone(std::int64_t utcSeconds, int utcOffset, const std::string& zoneName) const override
    {
        return Text(utcSeconds, ZoneAt(utcSeconds, utcOffset, zoneName));
    }

    std::u16string Pattern() const override
    {
        if (std::strcmp(m_format->getCalendar()->getType(), "gregorian") != 0)
            return {};
        icu::UnicodeString pattern;
        return Units(m_format->toPattern(pattern));
    }

    const DateWords* Words() const override { return m_hasDigits ? &m_words : nullptr; }

private:
    std::u16string Text(std::int64_t seconds, std::unique_ptr<icu::TimeZone> zone) const
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

    mutable std::mutex m_mutex;
    std::unique_ptr<const icu::SimpleDateFormat> m_format;
    IcuWords m_words;
    bool m_hasDigits;
};

}  // namespace

std::unique_ptr<const DateFormat> MakeDateFormat(const std::string& locale, DateStyle date, DateStyle time)
{
    std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateTimeInstance(
        IcuStyle(date), IcuStyle(time), icu::Locale::createCanonical(locale.c_str())));
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
    return std::make_unique<IcuDateFormat>(std::move(simple));
}

}  // namespace rk::platform
