// A conversion of a number prints what C prints; whatever a format says, each way keeps or makes the same text.
#include "fuzz/Fuzz.h"

#include <cstdio>

namespace {

constexpr int kWidest = 400;

std::string AnyFlags(FuzzedDataProvider& data) {
    std::string flags;
    for (const char flag : {'-', '+', ' ', '#', '0'})
        flags += data.ConsumeBool() ? std::string(1, flag) : "";
    return flags;
}

template <class Value> void CheckAgainstC(FuzzedDataProvider& data, const std::string& lengthAndType, Value value) {
    const bool hasPositions = data.ConsumeBool();
    const std::string flags = AnyFlags(data);
    const std::string format =
        "<%" + (hasPositions ? "3$" + flags + "*1$.*2$" : flags + "*.*") + lengthAndType + "> \xC3\xA4";
    // glibc fills a negative width at a position with zeros behind the number.
    const int width = data.ConsumeIntegralInRange(hasPositions ? 0 : -kWidest, kWidest);
    const int precision = data.ConsumeIntegralInRange(-kWidest, kWidest);
    char printed[6000];  // room for the largest long double
    const int length = std::snprintf(printed, sizeof printed, format.c_str(), width, precision, value);
    Require(length > 0 && static_cast<std::size_t>(length) < sizeof printed);
    CString text;
    text.Format(format, width, precision, value);
    Require(text == CString(printed));
}

void CheckAnyFormat(const CString& format, const CString& argument) {
    const std::string bytes = argument.ToUtf8();
    const auto with = [&](const auto& make) {
        return make(42, argument, 2.5, bytes, -1L, 'c', bytes.c_str(), 7, 0.1L);
    };
    CString text = u"kept", added = u"kept";
    const CString quiet = with([&](const auto&... all) { return CrkStringUtilities::Format(format, all...); });
    Require(quiet == with([&](const auto&... all) { return CrkStringUtilities::FormatOrdered(format, all...); }));
    try {
        with([&](const auto&... all) { text.Format(format, all...); });
        with([&](const auto&... all) { added.AppendFormat(format, all...); });
        Require(text == quiet && added == u"kept" + quiet);
    } catch (const rk::FormatError&) {
        Require(text == u"kept" && added == u"kept" && quiet.IsEmpty());
    }
}

}  // namespace

void Try(FuzzedDataProvider& data) {
    const std::string integer(1, "diuoxX"[data.ConsumeIntegralInRange(0, 5)]);
    const std::string floating(1, "fFeEgGaA"[data.ConsumeIntegralInRange(0, 7)]);
    CheckAgainstC(data, data.PickValueInArray({"", "h", "hh"}) + integer, data.ConsumeIntegral<int>());
    CheckAgainstC(data, data.PickValueInArray({"l", "j", "z", "t"}) + integer, data.ConsumeIntegral<long>());
    CheckAgainstC(data, floating, data.ConsumeFloatingPoint<double>());
    CheckAgainstC(data, "L" + floating, data.ConsumeFloatingPoint<long double>());
    const CString argument = data.ConsumeRandomLengthString(40);
    CheckAnyFormat(data.ConsumeRemainingBytesAsString(), argument);
}
