// Texts of 4,096 to 16,777,216 units beside their floor (a copy), the standard library and ICU. Each row of ours tells
// the memory that it takes at its worst moment, in bytes a code unit, and fails when that is beyond twice its result.
#include "RkUtilities/foundation/CAtlArray.h"
#include "RkUtilities/foundation/CAtlList.h"
#include "RkUtilities/foundation/CString.h"
#include "RkUtilities/foundation/StUTF8Buffer.h"
#include "RkUtilities/strings/CrkStringUtilities.h"
#include "benchmarks/TextRows.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <vector>

namespace {

void CopyUnits(benchmark::State& state)  // the floor of whatever makes a new text
{
    const std::u16string text = Shuffled(kWords, state.range(0));
    Time(state, [&] { return std::u16string(text); });
}

void FindMissing(benchmark::State& state) {
    const CString text = Shuffled(kWords, state.range(0));
    const CString sought = u"the quick brown cat";
    TimeOurs(state, [&] { return text.Find(sought); });
}
void FindMissingStd(benchmark::State& state) {
    const std::u16string text = Shuffled(kWords, state.range(0));
    Time(state, [&] { return text.find(u"the quick brown cat"); });
}
void FindMissingNoCase(benchmark::State& state, std::u16string_view words, std::u16string_view sought) {
    const CString text = Shuffled(words, state.range(0));
    TimeOurs(state, [&, sought = CString(sought)] { return text.FindNoCase(sought); });
}
void FindMissingNoCaseIcu(benchmark::State& state)  // folds a copy, then searches
{
    const std::u16string text = Shuffled(kMixedWords, state.range(0));
    Time(state, [&] {
        std::u16string folded(text.size() * 2, u'\0');
        UErrorCode error = U_ZERO_ERROR;
        const std::int32_t length = u_strFoldCase(folded.data(), static_cast<std::int32_t>(folded.size()), text.data(),
                                                  static_cast<std::int32_t>(text.size()), U_FOLD_CASE_DEFAULT, &error);
        return std::u16string_view(folded).substr(0, static_cast<std::size_t>(length)).find(u"поезд ушёл");
    });
}

void Replace(benchmark::State& state) {
    ChangeOurs(state, kWords, [](CString& text) { text.Replace(u"fox", u"hedgehog"); });
}
void ReplaceStd(benchmark::State& state) {
    const std::u16string text = Shuffled(kWords, state.range(0));
    Time(state, [&] {
        std::u16string result;
        std::size_t from = 0;
        for (std::size_t at = 0; (at = text.find(u"fox", from)) != std::u16string::npos; from = at + 3)
            result.append(text, from, at - from).append(u"hedgehog");
        return result.append(text, from);
    });
}

void Tokenize(benchmark::State& state) {
    const CString text = Shuffled(kWords, state.range(0));
    const CString delimiters = u" ;";
    TimeOurs(state, [&] {
        CAtlArray<CString> tokens;
        int position = 0;
        for (CString token = text.Tokenize(delimiters, position); !token.IsEmpty();
             token = text.Tokenize(delimiters, position))
            tokens.Add(token);
        return tokens;
    });
}
void TokenizeStd(benchmark::State& state) {
    const std::u16string text = Shuffled(kWords, state.range(0));
    Time(state, [&] {
        std::vector<std::u16string> tokens;
        for (std::size_t end = 0, begin = 0; (begin = text.find_first_not_of(u" ;", end)) != std::u16string::npos;) {
            end = std::min(text.find_first_of(u" ;", begin), text.size());
            tokens.push_back(text.substr(begin, end - begin));
        }
        return tokens;
    });
}

void Upper(benchmark::State& state, std::u16string_view words) {
    ChangeOurs(state, words, [](CString& text) { text.MakeUpper(); });
}
void UpperIcu(benchmark::State& state, std::u16string_view words) {
    const std::u16string text = Shuffled(words, state.range(0));
    Time(state, [&] {
        std::u16string upper(text.size() * 2, u'\0');  // "ß" becomes "SS"
        UErrorCode error = U_ZERO_ERROR;
        upper.resize(
            static_cast<std::size_t>(u_strToUpper(upper.data(), static_cast<std::int32_t>(upper.size()), text.data(),
                                                  static_cast<std::int32_t>(text.size()), "", &error)));
        return upper;
    });
}

void Decode(benchmark::State& state, std::u16string_view words) {
    const std::string bytes = CString(Shuffled(words, state.range(0))).ToUtf8();
    TimeOurs(state, [&] { return CString(bytes); });
}
void DecodeIcu(benchmark::State& state, std::u16string_view words) {
    const std::string bytes = CString(Shuffled(words, state.range(0))).ToUtf8();
    Time(state, [&] {
        std::u16string units(bytes.size(), u'\0');
        std::int32_t length = 0;
        UErrorCode error = U_ZERO_ERROR;
        u_strFromUTF8WithSub(units.data(), static_cast<std::int32_t>(units.size()), &length, bytes.data(),
                             static_cast<std::int32_t>(bytes.size()), 0xFFFD, nullptr, &error);
        units.resize(static_cast<std::size_t>(length));
        return units;
    });
}

void Encode(benchmark::State& state, std::u16string_view words) {
    const CString text = Shuffled(words, state.range(0));
    TimeOurs(state, [&] {
        std::string bytes;
        GetStdStringFromCString(text, bytes);
        return bytes;
    });
}
void EncodeIcu(benchmark::State& state, std::u16string_view words) {
    const std::u16string text = Shuffled(words, state.range(0));
    Time(state, [&] {
        std::string bytes(text.size() * 3, '\0');
        std::int32_t length = 0;
        UErrorCode error = U_ZERO_ERROR;
        u_strToUTF8WithSub(bytes.data(), static_cast<std::int32_t>(bytes.size()), &length, text.data(),
                           static_cast<std::int32_t>(text.size()), 0xFFFD, nullptr, &error);
        bytes.resize(static_cast<std::size_t>(length));
        return bytes;
    });
}

void SanitiseNotes(benchmark::State& state) {
    ChangeOurs(state, kNotes, CrkStringUtilities::RemoveInvalidNotesCharacters);
}
void SanitiseNotesStd(benchmark::State& state) {
    const std::u16string text = Shuffled(kNotes, state.range(0));
    Time(state, [&] {
        std::u16string clean = text;
        std::erase_if(clean, [](char16_t unit) {
            return unit == 0x7F || (unit < 0x20 && unit != u'\t' && unit != u'\n' && unit != u'\r');
        });
        return clean;
    });
}
void SanitiseTooltip(benchmark::State& state) {
    ChangeOurs(state, kNotes, CrkStringUtilities::RemoveInvalidTooltipCharacters);
}
void SanitiseTopic(benchmark::State& state) {
    const CString text = Shuffled(kNotes, state.range(0));
    TimeOurs(state, [&] { return CrkStringUtilities::ReplaceInvalidTopicTextCharacters(text); });
}

void LineFeedsToPairs(benchmark::State& state) {
    const CString text = Shuffled(kNotes, state.range(0));
    TimeOurs(state, [&] { return CrkStringUtilities::ConvertLFsToCRLFPairs(text); });
}

void Wrap(benchmark::State& state) {
    ChangeOurs(state, kMixedWords, [&](CString& text) {
        CrkStringUtilities::InsertLineSeparators(&text, u"<br>", 60, static_cast<int>(state.range(0)));
    });
}
/// The text is long, what is shown of it is not.
void WrapToThreeLines(benchmark::State& state) {
    ChangeOurs(state, kMixedWords,
               [](CString& text) { CrkStringUtilities::InsertLineSeparators(&text, u"<br>", 60, 3); });
}
void WrapStd(benchmark::State& state)  // the last space of each 60 units, and no other rule
{
    const std::u16string text = Shuffled(kMixedWords, state.range(0));
    Time(state, [&] {
        std::u16string result;
        result.reserve(text.size() + text.size() / 32);
        for (std::size_t begin = 0; begin < text.size();) {
            const std::size_t limit = std::min(begin + 60, text.size());
            const std::size_t space = text.rfind(u' ', limit - 1);
            const std::size_t end = space == std::u16string::npos || space < begin ? limit : space + 1;
            result.append(text, begin, end - begin) += u"<br>";
            begin = end;
        }
        return result;
    });
}

std::vector<std::u16string> Names(std::int64_t count) {
    std::mt19937 random(1);
    std::vector<std::u16string> names(static_cast<std::size_t>(count));
    for (std::u16string& name : names)
        name = CString((random() % 2 == 0 ? "Topic " : "topic Ä ") + std::to_string(random())).View();
    return names;
}

void SortNoCase(benchmark::State& state) {
    CAtlList<CString> names;
    for (const std::u16string& name : Names(state.range(0)))
        names.AddTail(name);
    for (auto _ : state) {
        state.PauseTiming();
        CAtlList<CString> list = names;
        state.ResumeTiming();
        CrkStringUtilities::SortStringList(list, /*ascending=*/true);
    }
    state.SetComplexityN(state.range(0));
}
void SortNoCaseIcu(benchmark::State& state) {
    const std::vector<std::u16string> names = Names(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        std::vector<std::u16string> list = names;
        state.ResumeTiming();
        std::stable_sort(list.begin(), list.end(), [](const std::u16string& a, const std::u16string& b) {
            return u_strcasecmp(a.c_str(), b.c_str(), U_FOLD_CASE_DEFAULT) < 0;
        });
    }
    state.SetComplexityN(state.range(0));
}

void FormatNames(benchmark::State& state) {
    CString text;
    for (int i = 0; auto _ : state) {
        text.Format(u"%s%d", "Central Topic ", i++ & 4095);
        benchmark::DoNotOptimize(text);
    }
}
void FormatNamesC(benchmark::State& state) {
    char text[64];
    for (int i = 0; auto _ : state)
        benchmark::DoNotOptimize(std::snprintf(text, sizeof text, "%s%d", "Central Topic ", i++ & 4095));
}

void CompareNoCase(benchmark::State& state) {
    const CString a = u"Ein Thema mit Ästen";
    const CString b = u"ein thema mit ästen";
    for (auto _ : state)
        benchmark::DoNotOptimize(a.CompareNoCase(b));
}
void CompareNoCaseIcu(benchmark::State& state) {
    const std::u16string a = u"Ein Thema mit Ästen";
    const std::u16string b = u"ein thema mit ästen";
    for (auto _ : state)
        benchmark::DoNotOptimize(u_strcasecmp(a.c_str(), b.c_str(), U_FOLD_CASE_DEFAULT));
}

void Counts(benchmark::internal::Benchmark* benchmark) {
    benchmark->RangeMultiplier(16)->Range(1 << 8, 1 << 20)->Complexity(benchmark::oNLogN);
}

BENCHMARK(CopyUnits)->Apply(Sizes);
BENCHMARK(FindMissing)->Apply(Sizes);
BENCHMARK(FindMissingStd)->Apply(Sizes);
BENCHMARK_CAPTURE(FindMissingNoCase, ascii, kWords, u"THE Quick Brown Cat")->Apply(Sizes);
BENCHMARK_CAPTURE(FindMissingNoCase, mixed, kMixedWords, u"ПОЕЗД Ушёл")->Apply(Sizes);
BENCHMARK(FindMissingNoCaseIcu)->Apply(Sizes);
BENCHMARK(Replace)->Apply(Sizes);
BENCHMARK(ReplaceStd)->Apply(Sizes);
BENCHMARK(Tokenize)->Apply(Sizes);
BENCHMARK(TokenizeStd)->Apply(Sizes);
BENCHMARK_CAPTURE(Upper, ascii, kWords)->Apply(Sizes);
BENCHMARK_CAPTURE(Upper, mixed, kMixedWords)->Apply(Sizes);
BENCHMARK_CAPTURE(UpperIcu, ascii, kWords)->Apply(Sizes);
BENCHMARK_CAPTURE(UpperIcu, mixed, kMixedWords)->Apply(Sizes);
BENCHMARK_CAPTURE(Decode, ascii, kWords)->Apply(Sizes);
BENCHMARK_CAPTURE(Decode, mixed, kMixedWords)->Apply(Sizes);
BENCHMARK_CAPTURE(DecodeIcu, ascii, kWords)->Apply(Sizes);
BENCHMARK_CAPTURE(DecodeIcu, mixed, kMixedWords)->Apply(Sizes);
BENCHMARK_CAPTURE(Encode, ascii, kWords)->Apply(Sizes);
BENCHMARK_CAPTURE(Encode, mixed, kMixedWords)->Apply(Sizes);
BENCHMARK_CAPTURE(EncodeIcu, ascii, kWords)->Apply(Sizes);
BENCHMARK_CAPTURE(EncodeIcu, mixed, kMixedWords)->Apply(Sizes);
BENCHMARK(SanitiseNotes)->Apply(Sizes);
BENCHMARK(SanitiseNotesStd)->Apply(Sizes);
BENCHMARK(SanitiseTooltip)->Apply(Sizes);
BENCHMARK(SanitiseTopic)->Apply(Sizes);
BENCHMARK(LineFeedsToPairs)->Apply(Sizes);
BENCHMARK(Wrap)->Apply(Sizes);
BENCHMARK(WrapToThreeLines)->Apply(Sizes);
BENCHMARK(WrapStd)->Apply(Sizes);
BENCHMARK(SortNoCase)->Apply(Counts);
BENCHMARK(SortNoCaseIcu)->Apply(Counts);
BENCHMARK(FormatNames);
BENCHMARK(FormatNamesC);
BENCHMARK(CompareNoCase);
BENCHMARK(CompareNoCaseIcu);

}  // namespace
