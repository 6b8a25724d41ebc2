// A text under any calls holds what std::u16string holds under the same calls, and so does a copy made on the way.
#include "fuzz/Fuzz.h"

namespace {

constexpr std::size_t kLongest = 3000;

/// -1 where the standard says that nothing was found.
int Found(std::size_t index) { return static_cast<int>(index); }

int AnyCount(FuzzedDataProvider& data) {
    return data.ConsumeBool() ? data.PickValueInArray({INT_MIN, -1, 0, 11, 12, INT_MAX})
                              : data.ConsumeIntegral<std::uint8_t>();
}

/// Few different units, so that texts have much in common.
std::u16string AnyUnits(FuzzedDataProvider& data) {
    constexpr char16_t kUnits[] = {u'a', u'b', u'A', 0, u'\n', u'\u00E4', u'\xD83D', u'\xDE00'};
    std::u16string units;
    for (const char byte : data.ConsumeRandomLengthString(60))
        units.append(1U + static_cast<unsigned char>(byte) / 128U * 20U, kUnits[static_cast<unsigned char>(byte) % 8U]);
    return units;
}

struct Pair {
    CString text;
    std::u16string model;

    void Check() const {
        Require(text.View() == model && text.GetLength() == static_cast<int>(model.size()));
        Require(text.GetUTF16Ptr()[model.size()] == 0);
    }

    void Look(FuzzedDataProvider& data, const CString& other, const std::u16string& units) const {
        const int start = AnyCount(data), count = AnyCount(data);
        const auto from = static_cast<std::size_t>(std::max(start, 0)),
                   most = static_cast<std::size_t>(std::max(count, 0));
        const std::size_t begin = std::min(from, model.size());
        Require(text.Left(count) == model.substr(0, most) && text.Mid(start, count) == model.substr(begin, most));
        Require(text.Right(count) == model.substr(model.size() - std::min(most, model.size())));
        Require(text.Find(other, start) == Found(model.find(units, from)));
        Require(text.ReverseFind(other, start) == Found(model.rfind(units, start < 0 ? model.npos : from)));
        Require(text.FindOneOf(other, start) == Found(model.find_first_of(units, from)));
        Require(text.SpanExcluding(other) == model.substr(0, model.find_first_of(units)));
        Require(text.SpanIncluding(other) == model.substr(0, model.find_first_not_of(units)));
        Require((text <=> other) == (model <=> units) && (text == other) == (model == units));
        Require(text.GetAt(start) == (start >= 0 && from < model.size() ? model[from] : 0));
        LookForToken(other, units, start, from);
    }

    void LookForToken(const CString& other, const std::u16string& units, int start, std::size_t from) const {
        const std::size_t begin =
            start < 0 ? model.size() : std::min(model.find_first_not_of(units, from), model.size());
        const std::size_t end = std::min(model.find_first_of(units, begin), model.size());
        int position = start;
        Require(text.Tokenize(other, position) == model.substr(begin, end - begin));
        Require(position == (begin == model.size() ? -1 : Found(std::min(end + 1, model.size()))));
    }

    void Replace(const CString& other, const std::u16string& units, const std::u16string& after) {
        int count = 0;
        for (std::size_t at = 0; !units.empty() && (at = model.find(units, at)) != model.npos;
             at += after.size(), ++count)
            model.replace(at, units.size(), after);
        Require(text.Replace(other, after) == count);
    }

    void Reverse() {
        text.MakeReverse();
        std::reverse(model.begin(), model.end());
        for (std::size_t i = 1; i < model.size(); ++i) {
            if ((model[i] & 0xFC00) == 0xD800 && (model[i - 1] & 0xFC00) == 0xDC00)
                std::swap(model[i], model[i - 1]), ++i;
        }
    }

    void Trim(const CString& other, const std::u16string& units) {
        text.Trim(other);
        model.erase(std::min(model.find_last_not_of(units) + 1, model.size()));
        model.erase(0, model.find_first_not_of(units));
    }

    void WriteIntoBuffer(FuzzedDataProvider& data, char16_t unit) {
        const int room = data.ConsumeIntegral<std::uint8_t>();
        char16_t* const buffer = text.GetBuffer(room);
        model.resize(std::max(model.size(), static_cast<std::size_t>(room)));
        Require(std::u16string_view(buffer, model.size() + 1) == model + u'\0');
        for (std::size_t i = 0; i < model.size(); i += 3)
            buffer[i] = model[i] = unit;
        const int count = data.ConsumeIntegralInRange(-1, room);
        text.ReleaseBuffer(count);
        model.erase(count < 0 ? std::min(model.find(u'\0'), model.size()) : static_cast<std::size_t>(count));
    }

    void Change(FuzzedDataProvider& data, const CString& other, const std::u16string& units) {
        const int index = AnyCount(data), count = AnyCount(data);
        const auto at = static_cast<std::size_t>(std::clamp(index, 0, static_cast<int>(model.size())));
        const bool isInside = index >= 0 && at < model.size();
        const char16_t unit = units.empty() ? u'u' : units.front();
        switch (data.ConsumeIntegralInRange(0, 9)) {
        case 0:
            text.SetAt(index, unit);
            if (isInside)
                model[at] = unit;
            break;
        case 1:
            Require(text.Insert(index, other) == static_cast<int>(model.insert(at, units).size()));
            break;
        case 2:
            model.erase(at, isInside ? static_cast<std::size_t>(std::max(count, 0)) : 0);
            Require(text.Delete(index, count) == static_cast<int>(model.size()));
            break;
        case 3:
            Replace(other, units, AnyUnits(data));
            break;
        case 4:
            Require(text.Remove(unit) == static_cast<int>(std::erase(model, unit)));
            break;
        case 5:
            Reverse();
            break;
        case 6:
            Trim(other, units);
            break;
        case 7:
            WriteIntoBuffer(data, unit);
            break;
        case 8:
            text.AppendChar(unit);
            model += unit;
            break;
        default:
            text += other;
            model += units;
        }
    }
};

}  // namespace

void Try(FuzzedDataProvider& data) {
    Pair pair, copy;
    while (data.remaining_bytes() > 0) {
        if (data.ConsumeBool())
            copy = pair;
        const std::u16string units = data.ConsumeBool() ? AnyUnits(data) : copy.model;
        const CString other = units == copy.model ? copy.text : CString(units);
        pair.Look(data, other, units);
        pair.Change(data, other, units);
        if (pair.model.size() > kLongest)
            pair = {};
        pair.Check();
        copy.Check();
    }
}
