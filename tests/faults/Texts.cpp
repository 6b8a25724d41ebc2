#include "tests/faults/Workload.h"

#include <array>

namespace faults {
namespace {

using Strings = CrkStringUtilities;

constexpr const char16_t* kLong = u"Eine Überfahrt nach Łódź dauert länger, als man denkt; das Schiff wartet nicht.";

void Begin(Scene& scene) {
    scene.text = kLong;
    scene.other = CString(u" Ein anderer Text, der für sich steht: ") + kLong + u" ";
    scene.array = {u"alpha alpha alpha alpha", u"beta beta beta beta beta", CString(kLong)};
    scene.list = {CString(kLong), u"zwei zwei zwei zwei zwei", u"Ämter und Würden im Jahr 2027"};
    for (const char16_t* const key : {u"one", u"two", u"three and a longer key behind it"})
        scene.map.SetAt(key, kLong);
}

using Pointers = std::array<const CString*, 3>;

void Grow(Scene& scene) {
    for (int i = 0; i < 60; ++i)
        scene.map.SetAt(Strings::LongToString(i), u"v");
}

CString TextOf(const CrkFloatPoint& point) {
    CString text;
    text.Format(u"%g %g, and so on, as a longer text", static_cast<double>(point.x), static_cast<double>(point.y));
    return text;
}

/// A call that changes the scene.
#define CHANGES(name, statement, ...)                                                                                  \
    GIVES(name, &Begin, (static_cast<void>(statement), true)__VA_OPT__(, ) __VA_ARGS__)

const Workload kRows[] = {
    CHANGES("text from UTF-8", s.text = CString("Überfahrt nach Łódź, 7 Tage, und wieder zurück")),
    GIVES("text to UTF-8", &Begin, s.text.ToUtf8().size()),
    CHANGES("text: append", s.text += s.other),
    CHANGES("text: append itself", s.text += s.text),
    CHANGES("text: insert", s.text.Insert(3, s.other)),
    CHANGES("text: delete", s.text.Delete(3, 9)),
    CHANGES("text: replace", s.text.Replace(u"e", u"eeeeee")),
    CHANGES("text: remove", s.text.Remove(u'e')),
    CHANGES("text: upper case", s.text.MakeUpper()),
    CHANGES("text: lower case", s.text.MakeLower()),
    CHANGES("text: trim", s.other.Trim()),
    CHANGES("text: trim units", s.other.Trim(u" E.")),
    CHANGES("text: buffer", s.text.GetBuffer(200)),
    CHANGES("text: append a format", s.text.AppendFormat(u"%s of %d", s.text, 7)),
    CHANGES("text: set a unit", s.text.SetAt(2, u'x')),
    CHANGES("text: format", s.text.Format(u"%s: %d of %08.3f, %Lg", s.other, 7, 2.5, 1.0L)),
    GIVES("text: join", &Begin, s.text + s.other + u"!"),
    GIVES("text: parts", &Begin, s.text.Left(20) + s.text.Mid(5, 30) + s.text.Right(40) + s.text.SpanExcluding(u"xyz")),
    GIVES("text: compare without case", &Begin, s.text.CompareNoCase(s.other) < 0),
    GIVES("text: find without case", &Begin, s.text.FindNoCase(u"ŁÓDŹ")),
    GIVES("texts: find a whole word", &Begin, Strings::FindSubstring(s.text, u"schiff", false, true, 0)),
    GIVES("texts: find in a list", &Begin, Strings::FindCaseInsensitive(u"WÜRDEN", &s.list) != nullptr),
    GIVES("texts: begins", &Begin, Strings::BeginsWith(s.text, u"eine ÜBER", true)),
    GIVES("texts: clean a topic's text", &Begin, Strings::ReplaceInvalidTopicTextCharacters(s.text + u"\x1\x2<>\n\n")),
    GIVES("texts: line breaks", &Begin, Strings::ConvertLFsToCRLFPairs(u"one\ntwo\nthree\nfour and more than that\n")),
    GIVES("texts: condense", &Begin, Strings::CondenseString(s.text)),
    GIVES("texts: shorten", &Begin, Strings::ShortenString(s.text, 30)),
    CHANGES("texts: wrap", Strings::InsertLineSeparators(&s.text, u"\r\n", 10, 5)),
    GIVES("texts: combine", &Begin, Strings::Combine(u", ", s.text, s.other, u"", /*skipEmptyParts=*/true)),
    GIVES("texts: format", &Begin, Strings::Format(u"%s|%s|%d|%5.1f", s.text, s.other, 1234567, 12.25)),
    GIVES("texts: format in order", &Begin, Strings::FormatOrdered(u"%2$s and %1$s, %1$s", s.text, s.other)),
    GIVES("texts: bytes for people", &Begin, Strings::MakeByteString(123456789)),
    CHANGES("texts: tooltip", Strings::RemoveInvalidTooltipCharacters(s.text)),
    CHANGES("texts: parameters of a link",
            Strings::ExtractUrlParameters(u"http://host/path?name=value&other=another%20value&third=3", s.map),
            "CAtlException", Keeps::Nothing),
    GIVES("texts: value of a link", nullptr, Strings::ExtractUrlValue(u"http://host/path?name=value&other=x", u"OTHER"),
          "CAtlException"),
    CHANGES("texts: environment",
            Strings::ReplaceEnvironmentVariables(&(s.text = CString(u"at %HOME% and %TZ%, ") + s.text)), "*",
            Keeps::Nothing),
    GIVES("texts: e-mail", &Begin, Strings::IsValidEmail(u"somebody.else@mail.example.org")),
    GIVES("texts: UTF-8 kept in a text", &Begin, Strings::UnicodeToUtf8(s.text)),
    GIVES("texts: numbers", &Begin, Strings::StringToDouble(u"1250.75 and more")),
    CHANGES("array: add", s.array.Add(s.text), "CAtlException"),
    CHANGES("array: insert", s.array.InsertAt(1, s.array[2]), "CAtlException"),
    CHANGES("array: count", s.array.SetCount(200), "CAtlException"),
    CHANGES("array: set", s.array.SetAt(1, s.text + s.other), "CAtlException"),
    CHANGES("array: copy", s.array = CAtlArray<CString>(s.array), "CAtlException"),
    CHANGES("list: add", s.list.AddHead(s.other), "CAtlException"),
    CHANGES("list: copy", s.list = CAtlList<CString>(s.list), "CAtlException"),
    CHANGES("map: set", s.map.SetAt(u"a key that is new", s.other), "CAtlException"),
    CHANGES("map: make a value", s.map[u"a key that is new"] = u"", "CAtlException"),
    CHANGES("map: set again", s.map.SetAt(u"two", s.other + s.text), "CAtlException"),
    CHANGES("map: copy", s.map = decltype(s.map)(s.map), "CAtlException"),
    CHANGES("map: grow", Grow(s), "CAtlException", Keeps::Nothing),
    GIVES("pointers: any of", &Begin,
          CorvaneNSArrayAdditions::containsAnyObjectsIdenticalTo(Pointers{&s.text, &s.other, nullptr},
                                                                 Pointers{&s.other, nullptr, nullptr})),
    GIVES("pointers: places of", &Begin,
          CorvaneNSArrayAdditions::indexesOfObjects(Pointers{&s.text, &s.other, &s.text},
                                                    Pointers{&s.text, &s.other, &s.other})
              .size()),
    GIVES("XML: name", &Begin, CrkXmlUtilities::StringToNCName(s.text, u'_', /*insertUnderscore=*/true)),
    GIVES("XML: text", &Begin, CrkXmlUtilities::StringToXmlString(s.text + u"\x1\x2", u'?')),
    GIVES("XML: unique URI", nullptr, CrkXmlUtilities::GenerateUniqueUri().GetLength(), "system_error"),
    GIVES("GUID: new", nullptr, CrkGuid() == CrkGuid(), "system_error"),
    GIVES("GUID: text", &Begin,
          CrkGuid::GuidToStringWithBraces(CrkGuid::StringToGuid(u"00112233-4455-6677-8899-aabbccddeeff"))),
    GIVES("color: text", &Begin, CrkBaseColorTable::GetColorText(0x0080FF)),
    GIVES("geometry: text of a point", &Begin,
          TextOf(CrkMathUtilities::GetEllipseEdgePoint({0, 0, 100, 40}, {0, 1}, 0))),
};

}  // namespace

constinit const std::span<const Workload> kTextWorkloads(kRows);

}  // namespace faults
