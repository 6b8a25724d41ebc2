#include "rklog/DateFields.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace rklog {

namespace {

/// The words for the halves of the day in the short times of CLDR 42 to 48, as PlainLetter leaves them, before blanks.
constexpr std::string_view kBeforeNoon =
    "am an damanhã eparadites gh hengihengi hh hoseng leebi ntufat pd pg rw safiya sf sokallim subaka "
    "uluchelo vm wd ÖÖ ŋdi ǁgoagas πμ اےایم بن ص صبحمنجهند غم ܏ܩܛ एएम तडके "
    "पूर्वाह्न फुं भोर भ्यागा येएम सकाळ सबेरे सवेर "
    "सुबुहजा নুমাং এএম পূৰ্বাহ্ন ਪੂਦੁ ଏଏମ முற்பகல் ఎఎమ్ "
    "ಪೂರ್ವಾಹ್ನ སྔ་ཆ་ སྔ་དྲོ་ ቅቀ ጥዋት ᏌᎾᎴ ᐁᒼ ᐊᒼ ᱥᱮᱛᱟᱜ 上午 "
    "上晝 凌晨 午夜 早上 清晨 오전 𞤀𞤎 ";
constexpr std::string_view kAfterNoon =
    "akasuba anw datarde ea efiafi epasdites ew gd kikiiɗe md nm ntmeddit pm ptg sanje shwane thapama tŊ wb "
    "yamma ym Ös ǃuias ɣetrɔ μμ دن غو م منجهندشام پیایم ܏ܒܛ अपराह्न "
    "दपेहरासंजा दपैहरबाद पीएम बेलासे शामजा सांज "
    "सांझ सांम स’ञ অপৰাহ্ন পিএম ਬਾਦੁ ପିଏମ பிற்பகல் "
    "పిఎమ్ ಅಪರಾಹ್ನ ཕྱི་ཆ་ ཕྱི་དྲོ་ ከሰዓት ድቀ ᏒᎯᏱᎢ ᏒᎯᏱᎢᏗᏢ "
    "ᐲᒼ ᱧᱤᱫᱟᱹ 下午 下晝 中午 晚上 오후 𞤇𞤎 ";

/// The zeros of the digits that CLDR's locales write dates in; the other nine follow each.
constexpr char32_t kZeros[] = {U'0',   0x0660, 0x06F0, 0x07C0, 0x0966,  0x09E6,
                               0x0E50, 0x0F20, 0x1040, 0x1C50, 0x11136, 0x1E950};

/// Takes the first character and gives its code; a byte that begins no character is taken by itself, as U+FFFD.
char32_t TakeCharacter(std::string_view& text) {
    const auto byteAt = [&](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
    const unsigned first = byteAt(0);
    const std::size_t byteCount = first < 0xC2 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : first < 0xF5 ? 4 : 1;
    char32_t character = byteCount == 1 ? first : first & (0x7FU >> byteCount);
    bool isWhole = byteCount > 1 || first < 0x80;
    for (std::size_t i = 1; i < byteCount; ++i) {
        isWhole &= (byteAt(i) & 0xC0U) == 0x80;
        character = character << 6 | (byteAt(i) & 0x3FU);
    }
    text.remove_prefix(isWhole ? byteCount : 1);
    return isWhole ? character : 0xFFFD;
}

/// Takes a month in Roman digits behind a "/", which Hawaiian dates have; 0 for anything else.
int TakeRomanMonth(std::string_view& text) {
    constexpr std::string_view kMonths[] = {"i/",   "ii/",   "iii/", "iv/", "v/",  "vi/",
                                            "vii/", "viii/", "ix/",  "x/",  "xi/", "xii/"};
    for (int month = 1; month <= 12; ++month) {
        const std::string_view digits = kMonths[month - 1];
        if (text.starts_with(digits)) {
            text.remove_prefix(digits.size());
            return month;
        }
    }
    return 0;
}

int DigitOf(char32_t character) {
    for (const char32_t zero : kZeros) {
        if (character >= zero && character < zero + 10)
            return static_cast<int>(character - zero);
    }
    return -1;
}

/// Lower case for ASCII; nothing for what does not belong to a word: blanks, signs, marks of direction.
std::string PlainLetter(std::string_view character) {
    constexpr std::string_view kSkipped[] = {"\u00A0", "\u202F", "\u200D", "\u200E", "\u200F", "\u060C"};
    if (character.size() > 1)
        return std::find(std::begin(kSkipped), std::end(kSkipped), character) == std::end(kSkipped)
                   ? std::string(character)
                   : std::string();
    const char lower = static_cast<char>(character[0] | 0x20);
    return lower >= 'a' && lower <= 'z' ? std::string(1, lower) : std::string();
}

/// The length of the longest of the words that the letters hold.
std::size_t LongestIn(std::string_view letters, std::string_view words) {
    std::size_t longest = 0;
    while (!words.empty()) {
        const std::size_t end = words.find(' ');
        if (end > longest && letters.find(words.substr(0, end)) != std::string_view::npos)
            longest = end;
        words.remove_prefix(end + 1);
    }
    return longest;
}

DateFields::HalfDay HalfDayOf(std::string_view letters) {
    if (letters.empty())
        return DateFields::HalfDay::None;
    const std::size_t before = LongestIn(letters, kBeforeNoon);
    const std::size_t after = LongestIn(letters, kAfterNoon);
    if (before == after)
        return DateFields::HalfDay::None;
    return before > after ? DateFields::HalfDay::BeforeNoon : DateFields::HalfDay::AfterNoon;
}

}  // namespace

std::optional<DateFields> ReadDateFields(std::string_view text) {
    DateFields fields;
    std::string letters;
    std::size_t digitCount = 0;
    bool timeIsFirst = false;
    while (!text.empty()) {
        const std::string_view before = text;
        const char32_t character = TakeCharacter(text);
        const int digit = DigitOf(character);
        if (digit < 0) {
            timeIsFirst |= digitCount > 0 && fields.count == 1 && character == U':';
            letters += PlainLetter(before.substr(0, before.size() - text.size()));
            digitCount = 0;
            if (const int month = character == U'/' ? TakeRomanMonth(text) : 0; month > 0 && fields.count == 1)
                fields.numbers[fields.count++] = month;
            continue;
        }
        if (digitCount == 0 && ++fields.count > fields.numbers.size())
            return {};
        if (++digitCount > 4)
            return {};
        fields.hasLongYear |= digitCount == 4;
        int& number = fields.numbers[fields.count - 1];
        number = number * 10 + digit;
    }
    if (fields.count == 0)
        return {};
    if (timeIsFirst && fields.count == fields.numbers.size())
        std::rotate(fields.numbers.begin(), fields.numbers.begin() + 2, fields.numbers.end());
    fields.halfDay = HalfDayOf(letters);
    return fields;
}

}  // namespace rklog
