// The text operations that have no row of their own beside another library: their growth and their memory, as in
// textsBench.
#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/foundation/StUTF8Buffer.h"
#include "RkUtilities/strings/CrkStringUtilities.h"
#include "RkUtilities/xml/CrkXmlUtilities.h"
#include "benchmarks/TextRows.h"

#include <benchmark/benchmark.h>

namespace {

using Strings = CrkStringUtilities;

constexpr struct {
    const char* name;
    void (*change)(CString& text);
} kChanges[] = {
    {"MakeLower", [](CString& text) { text.MakeLower(); }},
    {"Trim", [](CString& text) { text.Trim(); }},
    {"Insert", [](CString& text) { text.Insert(100, u"inserted"); }},
    {"Delete", [](CString& text) { text.Delete(100, 100); }},
    {"Remove", [](CString& text) { text.Remove(u'i'); }},
    {"RemoveLineFeeds", [](CString& text) { text.RemoveLineFeeds(); }},
    {"Append", [](CString& text) { text += u"appended"; }},
    {"SetAt", [](CString& text) { text.SetAt(100, u'.'); }},
    {"ReplaceByShorter", [](CString& text) { text.Replace(u"line", u"-"); }},
    {"FixInvalidUnformattedTooltipCharacters", Strings::FixInvalidUnformattedTooltipCharacters},
    {"ReplaceEnvironmentVariables", [](CString& text) { Strings::ReplaceEnvironmentVariables(&text); }},
};

constexpr struct {
    const char* name;
    CString (*make)(const CString& text);
} kMakers[] = {
    {"Mid", [](const CString& text) { return text.Mid(1); }},
    {"Concatenate", [](const CString& text) { return text + text; }},
    {"Format", [](const CString& text) { return Strings::Format(u"%s!", text.ToUtf8()); }},
    {"ShortenString", [](const CString& text) { return Strings::ShortenString(text, text.GetLength() - 1); }},
    {"Combine", [](const CString& text) { return Strings::Combine(u", ", text, text, /*skipEmptyParts=*/true); }},
    {"RemoveCRLF", Strings::RemoveCRLF},
    {"UnicodeToUtf8", Strings::UnicodeToUtf8},
    {"StringToXmlString", [](const CString& text) { return CrkXmlUtilities::StringToXmlString(text, u' '); }},
    {"StringToNCName", [](const CString& text) { return CrkXmlUtilities::StringToNCName(text, u'_', true); }},
    {"ExtractUrlValue", [](const CString& text) { return Strings::ExtractUrlValue(text, u"absent"); }},
};

constexpr struct {
    const char* name;
    int (*ask)(const CString& text);
} kQueries[] = {
    {"ReverseFind", [](const CString& text) { return text.ReverseFind(u"absent"); }},
    {"FindOneOf", [](const CString& text) { return text.FindOneOf(u"XYZ"); }},
    {"CompareNoCase", [](const CString& text) { return text.CompareNoCase(text); }},
    {"FindSubstring",
     [](const CString& text) {
         return Strings::FindSubstring(text, u"ABSENT", /*matchCase=*/false,
                                       /*wholeWord=*/true, 0);
     }},
    {"FindCaseInsensitive", [](const CString& text) { return Strings::FindCaseInsensitive(u"ABSENT", text, 0); }},
    {"EndsWith", [](const CString& text) { return Strings::EndsWith(text, text, /*ignoreCase=*/true) ? 1 : 0; }},
    {"CountOccurrences", [](const CString& text) { return Strings::CountOccurrences(text, u' '); }},
    {"ReverseFindOneOf", [](const CString& text) { return Strings::ReverseFindOneOf(text, u"XYZ"); }},
    {"IsBlank", [](const CString& text) { return Strings::IsBlank(text) ? 1 : 0; }},
    {"GetLinesCount", Strings::GetLinesCount},
    {"IsValidName", [](const CString& text) { return CrkXmlUtilities::IsValidName(text) ? 1 : 0; }},
};

}  // namespace

int main(int argc, char** argv) {
    for (const auto& row : kChanges)
        Sizes(benchmark::RegisterBenchmark(row.name, ChangeOurs<void (*)(CString&)>, kNotes, row.change));
    const auto measureCalls = [](benchmark::State& state, auto* call) {
        const CString text = Shuffled(kNotes, state.range(0));
        TimeOurs(state, [&] { return call(text); });
    };
    for (const auto& row : kMakers)
        Sizes(benchmark::RegisterBenchmark(row.name, measureCalls, row.make));
    for (const auto& row : kQueries)
        Sizes(benchmark::RegisterBenchmark(row.name, measureCalls, row.ask));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
