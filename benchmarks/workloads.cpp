// One fixed run of every family, for counts that do not depend on the machine's load and for the cost of a first call.
//
//     workloads list          the names of the families
//     workloads measure       runs each: once for itself, then inside RkMeasured, where benchmarks/instructions counts
//     workloads first NAME    microseconds of the family's first and of its second call in this process
#include "RkUtilities/RkUtilities.h"
#include "benchmarks/ScratchFolder.h"

#include <array>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

namespace {

constexpr int kTextUnits = 4096;

void Keep(const auto& value) { asm volatile("" : : "g"(&value) : "memory"); }

CString Repeated(std::u16string_view words) {
    std::u16string text;
    while (text.size() < kTextUnits)
        text += words;
    return text;
}

const CString& Ascii() {
    static const CString text = Repeated(u"the quick brown fox jumps over the lazy dog and runs ");
    return text;
}

const CString& Mixed() {
    static const CString text = Repeated(u"Grüße aus Köln, поезд идёт, 東京タワー und \U0001F600 dazu ");
    return text;
}

std::string& ScratchPath() {
    static std::string path;
    return path;
}

CString Scratch(std::string_view name) { return rk::PathText(ScratchPath() + std::string(name)); }

void Search() {
    Keep(Ascii().Find(u"the quick brown cat"));
    Keep(Mixed().FindNoCase(u"ПОЕЗД ушёл"));
    Keep(Ascii().ReverseFind(u"cat"));
    Keep(Mixed().FindOneOf(u"%&$"));
    Keep(CrkStringUtilities::FindInString(Mixed(), u"tower", /*matchCase=*/false, /*wholeWord=*/true, 0));
}

void Replace() {
    CString text = Ascii();
    Keep(text.Replace(u"fox", u"hedgehog"));
    Keep(text.Remove(u'q'));
    Keep(text.Insert(100, u"and so on"));
    Keep(text.Delete(50, 100));
}

void Tokenize() {
    int position = 0;
    while (position >= 0)
        Keep(Mixed().Tokenize(u" ,", position));
}

void Utf8() {
    for (const CString& text : {Ascii(), Mixed()}) {
        const std::string bytes = text.ToUtf8();
        Keep(CString(bytes));
    }
}

void Case() {
    CString text = Ascii();
    Keep(text.MakeUpper());
    Keep(text.CompareNoCase(Ascii()));
    text = Mixed();
    Keep(text.MakeUpper());
    Keep(text.MakeLower());
    Keep(text.CompareNoCase(Mixed()));
}

void Format() {
    CString text;
    text.Format(u"%s %d of %-8u: %08.3f%%", "Central Topic", 17, 4095U, 12.5);
    Keep(text);
    Keep(CrkStringUtilities::AppendInt(u"Topic ", 42));
    Keep(CrkStringUtilities::MakeByteString(123'456'789));
}

void Sanitise() {
    CString text = Mixed() + u"\x01\t\x7f";
    CrkStringUtilities::RemoveInvalidNotesCharacters(text);
    Keep(CrkStringUtilities::ReplaceInvalidTopicTextCharacters(text));
    CrkStringUtilities::InsertLineSeparators(&text, u"\n", 60, 100);
    Keep(text);
}

void Sort() {
    CAtlList<CString> list;
    for (int i = 0; i < 200; ++i)
        list.AddTail(CrkStringUtilities::AppendInt(i % 2 == 0 ? u"Topic " : u"Über ", i * 7919 % 1000));
    CrkStringUtilities::SortStringList(list, /*ascending=*/true);
    Keep(list);
}

void Numbers() {
    using Conversion = CrkStringConversionUtilities;
    const CString number = Conversion::DoubleToString(1234567.891);
    Keep(Conversion::DoubleStringToFormattedNumber(number, /*groupThousands=*/true, 2, Conversion::MinusSign));
    Keep(Conversion::DoubleStringToFormattedCurrency(
        number, CrkLocaleUtilities::GetCurrencySymbol(), CrkLocaleUtilities::GetCurrencyNumberOfDecimalDigits(),
        CrkLocaleUtilities::GetPositiveCurrencyFormat(), CrkLocaleUtilities::GetNegativeCurrencyFormat(),
        Conversion::MinusSign));
    double real = 0;
    long whole = 0;
    Keep(Conversion::StringToDouble(u"1234567,891", real));
    Keep(Conversion::StringToLong(u"1234567", whole));
}

void Dates() {
    static int day = 0;
    const CTime time(2026, 11, 1 + day++ % 28, 21, 52, 5, -1);
    Keep(CrkDateUtilities::ShortDateString(time));
    Keep(CrkDateUtilities::LongDateString(time));
    Keep(CrkDateUtilities::LongTimeString(time));
    Keep(CrkDateUtilities::GetLocalizedWeekStart(time, u"de"));
    Keep(CrkDateUtilities::CTimeToCOleDateTime(time));
}

void Paths() {
    const CString path = u"/data/maps/2026/projects/atlas/Annual budget.review.mind";
    Keep(CrkPathUtilities::CalcRelativePathname(path, u"/data/maps/icons/flags/"));
    Keep(CrkPathUtilities::FileWithoutExtensionFromFilename(path));
    Keep(CrkPathUtilities::GetExtensionFromFileName(path));
    Keep(CrkPathUtilities::AreFilenamesEqual(path, u"/data/maps/2026/PROJECTS/atlas/Annual budget.review.mind"));
    Keep(rk::NativePath(path));
}

void Files() {
    const SECFileSystem files;
    const CString folder = Scratch("files/");
    files.MakeDirectory(folder);
    for (int i = 0; i < 20; ++i) {
        CFile file;
        file.Open(folder + CrkStringUtilities::AppendInt(u"Über ", i) + u".mind",
                  CFile::modeCreate | CFile::modeReadWrite);
        file.WriteString(Mixed());
        file.Close();
    }
    delete files.GetFileList(folder + u"*.*", 0xFF);
    Keep(files.CompareFiles(folder + u"Über 1.mind", folder + u"Über 2.mind", 0));
    Keep(CrkPathUtilities::GetUniqueFilename(folder + u"Über 3.mind"));
    files.DeleteDirectory(folder, 1);
}

void Geometry() {
    using Math = CrkMathUtilities;
    std::array<CrkFloatPoint, 256> points{};
    for (std::size_t i = 0; i < points.size(); ++i)
        points[i] = {static_cast<float>(i * 7919 % 1000), static_cast<float>(i * 104729 % 1000)};
    Math::RotatePointsAt(points.data(), static_cast<int>(points.size()), 30, {500, 500});
    const CrkFloatRect rectangle =
        Math::CalculatePointsBoundingRectangle(points.data(), static_cast<int>(points.size()));
    Keep(Math::IsPolylineCrossingRect(points.data(), static_cast<int>(points.size()), {2000, 2000, 10, 10}));
    Keep(Math::GetEllipseEdgePoint(rectangle, points[3], 2));
    Keep(Math::GetRectangleEdgePoint(rectangle, points[3], 2));
    for (std::size_t i = 3; i < points.size(); ++i)
        Keep(Math::IsLineCrossingLine(points[i], points[i - 1], points[i - 2], points[i - 3]));
}

void Xml() {
    Keep(CrkXmlUtilities::IsValidName(u"map:Grüße.aus-東京_1"));
    Keep(CrkXmlUtilities::StringToNCName(u"1 map:Grüße aus 東京", u'_', /*insertUnderscore=*/true));
    Keep(CrkXmlUtilities::StringToXmlString(Mixed(), u' '));
}

constexpr auto kRead = static_cast<SECRegistry::CreatePermissions>(0x20019);

void Preferences() {
    SECRegistry store;
    store.Open(u"Software", kRead);
    CString text;
    for (int i = 0; i < 20; ++i) {
        const CString name = CrkStringUtilities::AppendInt(u"Setting ", i);
        store.SetValue(name, text);
        store.GetValue(name, text);
        text += u"value";
    }
    store.Close();
}

void Guid() {
    const CFUUIDBytes guid = CrkGuid::CreateGuid();
    Keep(CrkGuid::StringToGuid(CrkGuid::GuidToString(guid)));
}

void Color() {
    for (unsigned int color = 0; color < 0x1000000; color += 0x10101)
        Keep(CrkColorConverter::ShadeOf(CrkColorConverter::ARGBToCOLORREF(color), 20));
    Keep(CrkBaseColorTable::GetColorText(0x112233));
}

void Collections() {
    constexpr int kCount = 500;
    CAtlArray<int> array;
    CAtlList<int> list;
    CAtlMap<CString, int> map;
    for (int i = 0; i < kCount; ++i) {
        array.Add(i);
        list.AddTail(i);
        map.SetAt(CrkStringUtilities::AppendInt(u"key ", i), i);
    }
    Keep(map.Lookup(u"key 77"));
    static std::array<int, 64> objects{};
    std::array<int*, 64> pointers{};
    for (std::size_t i = 0; i < pointers.size(); ++i)
        pointers[i] = &objects[i];
    Keep(CorvaneNSArrayAdditions::containsAnyObjectsIdenticalTo(pointers, std::array{pointers.back()}));
    Keep(CorvaneNSArrayAdditions::indexesOfObjects(pointers, pointers));
}

void Logging() {
    static const bool started = [] {
        std::ofstream(ScratchPath() + "log.xml")
            << "<settings><ls:Enable>true</ls:Enable><ls:Level>LogWarning</ls:Level>"
               "<ls:IncludeCategory>*</ls:IncludeCategory></settings>";
        CrkLogWriter::Init(Scratch("log.xml"), Scratch(""));
        return true;
    }();
    Keep(started);
    CrkLogWriter::Log(CrkLogWriter::LogWarning, u"Map saved: 4096 topics, 512 relationships, 37 attachments");
    CrkLogWriter::Log(CrkLogWriter::LogDebug, u"dropped");
}

struct Workload {
    std::string_view name;
    void (*run)();
    int rounds;  // of a measured run
};

constexpr Workload kWorkloads[] = {
    {"search", Search, 50},     {"replace", Replace, 50}, {"tokenize", Tokenize, 10},
    {"utf8", Utf8, 50},         {"case", Case, 20},       {"format", Format, 500},
    {"sanitise", Sanitise, 10}, {"sort", Sort, 10},       {"numbers", Numbers, 500},
    {"dates", Dates, 50},       {"paths", Paths, 500},    {"files", Files, 5},
    {"geometry", Geometry, 50}, {"xml", Xml, 100},        {"preferences", Preferences, 5},
    {"guid", Guid, 2000},       {"color", Color, 50},     {"collections", Collections, 10},
    {"logging", Logging, 100},
};

int PrintFirstCall(std::string_view name) {
    for (const Workload& workload : kWorkloads) {
        if (workload.name != name)
            continue;
        Keep(Ascii());
        Keep(Mixed());
        for (int call = 0; call < 2; ++call) {
            const auto start = std::chrono::steady_clock::now();
            workload.run();
            const std::chrono::duration<double, std::micro> time = std::chrono::steady_clock::now() - start;
            std::cout << time.count() << '\n';
        }
        return EXIT_SUCCESS;
    }
    return EXIT_FAILURE;
}

}  // namespace

extern "C" [[gnu::noinline]] void RkMeasured(void (*run)(), int rounds) {
    for (int round = 0; round < rounds; ++round)
        run();
}

int main(int argc, char** argv) {
    const std::string_view command = argc > 1 ? argv[1] : "";
    if (command == "list") {
        for (const Workload& workload : kWorkloads)
            std::cout << workload.name << '\n';
        return EXIT_SUCCESS;
    }
    const ScratchFolder folder;
    ScratchPath() = folder.Path("");
    setenv("XDG_CONFIG_HOME", ScratchPath().c_str(), 1);
    setenv("TZ", "UTC", 1);
    tzset();
    rk::SetUserLocale("de_DE");
    if (command == "first" && argc > 2)
        return PrintFirstCall(argv[2]);
    if (command != "measure")
        return EXIT_FAILURE;
    for (const Workload& workload : kWorkloads) {
        workload.run();
        RkMeasured(workload.run, workload.rounds);
    }
    return EXIT_SUCCESS;
}
