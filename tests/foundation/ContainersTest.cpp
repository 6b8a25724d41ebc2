#include "tests/support/Test.h"

#include <functional>
#include <iterator>
#include <malloc.h>
#include <unordered_map>

namespace {

struct CopyFault {};
int stepsToFault = 0;  // 0 or below: no step fails

void FailIfPlanned() {
    if (--stepsToFault == 0)
        throw CopyFault();
}

/// An element of which every copy may throw, its move included; it counts the living elements.
struct Fragile {
    explicit(false) Fragile(int number = 0) : value(number) {
        FailIfPlanned();
        ++living;
    }
    Fragile(const Fragile& other) : Fragile(other.value) {}
    Fragile& operator=(const Fragile& other) {
        FailIfPlanned();
        value = other.value;
        return *this;
    }
    ~Fragile() { --living; }

    int value;
    static inline int living = 0;
};

using Array = CAtlArray<Fragile>;
using List = CAtlList<Fragile>;
using Map = CAtlMap<int, Fragile>;

std::vector<int> Contents(const auto& container) {
    std::vector<int> values;
    for (const Fragile& element : container)
        values.push_back(element.value);
    return values;
}
std::vector<int> Contents(const Map& map) {
    std::vector<int> values = {static_cast<int>(map.GetHashTableSize())};
    for (const auto& [key, value] : map)
        values.insert(values.end(), {key, value.value});
    return values;
}

template <class Container> using Operation = std::pair<void (*)(Container&), std::vector<int>>;

/// Lets every step of an element fail once in every operation: the container must stay as it was and lose nothing.
template <class Container>
void ExpectStrongGuarantee(const Container& start, const std::vector<Operation<Container>>& operations) {
    const std::vector<int> before = Contents(start);
    const int livingBefore = Fragile::living;
    for (const auto& [call, after] : operations) {
        bool failed = true;
        for (int step = 1; failed; ++step) {
            Container container = start;
            failed = false;
            stepsToFault = step;
            try {
                call(container);
            } catch (const CopyFault&) {
                failed = true;
            }
            stepsToFault = 0;
            EXPECT_EQ(Contents(container), failed ? before : after) << "failing at step " << step;
        }
        EXPECT_EQ(Fragile::living, livingBefore) << "on the way to " << testing::PrintToString(after);
    }
}

const Fragile kNew = 7;

TEST(Containers, StayAsTheyWereWhateverFails) {
    ExpectStrongGuarantee<Array>({1, 2, 3},
                                 {{[](Array& a) { a.Add(kNew); }, {1, 2, 3, 7}},
                                  {[](Array& a) { a.Add(a[0]); }, {1, 2, 3, 1}},  // moved away before it is copied
                                  {[](Array& a) { a.SetCount(5); }, {1, 2, 3, 0, 0}},
                                  {[](Array& a) { a.SetCount(1); }, {1}},
                                  {[](Array& a) { a.SetAt(1, kNew); }, {1, 7, 3}},
                                  {[](Array& a) { a = Array(a); }, {1, 2, 3}}});
    List list(2);  // the third element needs a block
    list.AddTail(1);
    list.AddTail(2);
    ExpectStrongGuarantee<List>(list, {{[](List& l) { l.AddHead(l.GetAt(l.GetHeadPosition())); }, {1, 1, 2}},
                                       {[](List& l) { l.AddTail(l.GetAt(l.GetHeadPosition())); }, {1, 2, 1}},
                                       {[](List& l) { l.RemoveAt(l.GetHeadPosition()); }, {2}},
                                       {[](List& l) { l = List(l); }, {1, 2}}});
    ExpectStrongGuarantee<Map>({}, {{[](Map& m) { m.SetAt(1, 2); }, {17, 1, 2}}});
    Map map;
    map.InitHashTable(2);
    for (int key = 1; key <= 4; ++key)  // the next key makes the table grow
        map.SetAt(key, 10 * key);
    ExpectStrongGuarantee<Map>(map,
                               {{[](Map& m) { m.SetAt(7, kNew); }, {17, 1, 10, 2, 20, 3, 30, 4, 40, 7, 7}},
                                {[](Map& m) { m.SetAt(3, m.Lookup(4)->m_value); }, {2, 4, 40, 2, 20, 3, 40, 1, 10}},
                                {[](Map& m) { m.RemoveKey(2); }, {2, 4, 40, 3, 30, 1, 10}},
                                {[](Map& m) { m = Map(m); }, {2, 4, 40, 2, 20, 3, 30, 1, 10}}});
}

TEST(Containers, HoldNoMemoryOnceTheyAreEmptied) {
    const auto usedBytes = [] { return mallinfo2().uordblks; };  // sanitizers' allocators tell 0
    const std::size_t atFirst = usedBytes();
    CAtlArray<int> array;
    CAtlList<int> list;
    CAtlMap<int, int> map;
    for (int i = 0; i < 10'000; ++i) {
        array.Add(i);
        list.AddHead(i);
        map[i] = i;
    }
    array.RemoveAll();
    list.RemoveAll();
    map.RemoveAll();
    EXPECT_LT(usedBytes(), atFirst + 16'384);  // some freed blocks still count
}

static_assert(std::derived_from<ATL::CAtlException, std::exception>);

TEST(Containers, AnswerAWrongIndexOrPositionOrCountWithAnException) {
    CAtlArray<int> array{1};
    CAtlList<int> list{1};
    CAtlMap<int, int> map{{1, 1}};
    POSITION none = nullptr;
    int number = 0;
    const auto throwsWith = [](int code) {
        return testing::Throws<ATL::CAtlException>(testing::Field(&ATL::CAtlException::m_hr, code));
    };
    const std::function<void()> wrongCalls[] = {
        [&] { array.GetAt(1) = 0; },          [&] { number = std::as_const(array)[1]; },
        [&] { array.InsertAt(2, 0); },        [&] { array.RemoveAt(1); },
        [&] { array.RemoveAt(1, SIZE_MAX); }, [&] { number = CAtlList<int>().GetTail(); },
        [&] { list.GetNext(none) = 0; },      [&] { map.GetNextAssoc(none, number, number); }};
    for (const auto& call : wrongCalls)
        EXPECT_THAT(call, throwsWith(ATL::kInvalidArgument)) << &call - wrongCalls;
    for (const std::size_t count : {SIZE_MAX, SIZE_MAX / 2, SIZE_MAX / sizeof(int), SIZE_MAX / sizeof(int) + 2})
        EXPECT_THAT([&] { array.SetCount(count); }, throwsWith(-108)) << count;
    EXPECT_EQ(array, CAtlArray<int>{1});
    EXPECT_EQ(list, CAtlList<int>{1});
}

static_assert(std::ranges::contiguous_range<CAtlArray<CString>> && std::ranges::sized_range<const CAtlArray<int>>);
static_assert(std::ranges::bidirectional_range<const CAtlList<CString>> && std::ranges::sized_range<CAtlList<int>>);
static_assert(std::ranges::forward_range<const CAtlMap<CString, int>> &&
              !std::ranges::bidirectional_range<CAtlMap<int, int>>);

TEST(Containers, TakeAndGiveInTheMiddle) {
    CAtlArray<CString> array{u"a", u"b", u"c"};
    array.InsertAt(1, array[2]);
    array.InsertAt(4, u"end");
    array.InsertAt(0, CString(u"start"));
    EXPECT_EQ(array, (CAtlArray<CString>{u"start", u"a", u"c", u"b", u"c", u"end"}));
    array.RemoveAt(1, 2);
    array.RemoveAt(3);
    array.RemoveAt(3, 0);
    EXPECT_EQ(array, (CAtlArray<CString>{u"start", u"b", u"c"}));
    EXPECT_EQ(*array.data() + *std::ranges::max_element(array), u"startstart");
    CAtlArray<std::vector<int>> lists{{1, 2}};  // a vector that is moved onto itself is empty
    lists.RemoveAt(0, 0);
    EXPECT_EQ(lists[0].size(), 2u);

    CAtlMap<CString, int> map;
    ++map[u"a"];
    map[u"a"] += map[u"b"] = 5;
    EXPECT_EQ(map, (CAtlMap<CString, int>{{u"a", 6}, {u"b", 5}}));
}

TEST(Lists, AreLinkedInBothDirections) {
    CAtlList<int> list{2, 4};
    const auto expect = [&list](const std::vector<int>& elements) {
        EXPECT_EQ(std::vector(list.begin(), list.end()), elements);
        EXPECT_EQ(std::vector(std::make_reverse_iterator(list.end()), std::make_reverse_iterator(list.begin())),
                  std::vector(elements.rbegin(), elements.rend()));
    };
    const POSITION two = list.GetHeadPosition(), four = list.GetTailPosition();
    list.InsertBefore(two, 1);
    const POSITION three = list.InsertAfter(two, 3);
    list.InsertAfter(four, 6);
    list.InsertBefore(list.GetTailPosition(), 5);
    expect({1, 2, 3, 4, 5, 6});
    list.RemoveAt(list.GetHeadPosition());
    list.RemoveAt(three);
    list.RemoveAt(list.GetTailPosition());
    expect({2, 4, 5});
    POSITION position = list.GetTailPosition();
    EXPECT_EQ(std::pair(list.GetHead(), list.GetTail()), std::pair(2, 5));
    EXPECT_EQ(list.GetPrev(position), 5);
    EXPECT_EQ(list.GetPrev(position), 4);
}

TEST(Containers, TakeElementsThatCanOnlyBeMoved) {
    CAtlArray<std::unique_ptr<int>> array;
    CAtlList<std::unique_ptr<int>> list;
    CAtlMap<CString, std::unique_ptr<int>> map;
    array.Add(std::make_unique<int>(1));
    array.SetCount(100);
    list.AddTail(std::make_unique<int>(2));
    map.SetAt(CString(u"key"), std::make_unique<int>(3));
    const auto moved = std::move(list);
    EXPECT_TRUE(list.IsEmpty());  // NOLINT(bugprone-use-after-move): a moved-from list is empty
    EXPECT_EQ(*array[0] + **moved.begin() + *map.Lookup(u"key")->m_value, 6);
}

constexpr std::pair<double, std::uint32_t> kHashCases[] = {
    {45000.99, 45000},
    {-1.5, 0xFFFFFFFF},             // converted as unsigned, undefined
    {4294967296.0 + 3, 3},          // limited to 32 bits first: 0xFFFFFFFF
    {0x1.00000001p63, 0x80000000},  // converted as signed, undefined
    {-0x1.00000001p62, 0xC0000000},
    {std::numeric_limits<double>::quiet_NaN(), 0},
};

TEST(Maps, HashEveryNumberAsStated) {
    for (const auto& [key, hash] : kHashCases) {
        EXPECT_EQ(CElementTraits<double>::Hash(key), hash) << key;
        CAtlMap<double, bool> map;
        map.SetAt(key, true);
        EXPECT_EQ(map.Lookup(key) != nullptr, !std::isnan(key)) << key;
    }
}

TEST(Maps, GrowFromTheCountThatWasFixedAndReturnToIt) {
    CAtlMap<double, bool> map;
    EXPECT_EQ(std::pair(map.InitHashTable(64), map.InitHashTable(0)), std::pair(true, false));
    for (const auto& [keyCount, bucketCount] : {std::pair(128U, 64U), {129U, 331U}, {1'000'000U, 1'403'641U}}) {
        while (map.GetCount() < keyCount)
            map.SetAt(static_cast<double>(map.GetCount()), true);
        EXPECT_EQ(map.GetHashTableSize(), bucketCount) << keyCount;
    }
    CAtlMap<double, bool> copy = map;
    copy.RemoveAll();
    EXPECT_EQ(copy.GetHashTableSize(), 64U);
}

TEST(Maps, HoldWhatTheStandardsHoldUnderAnyCalls) {
    std::mt19937 random(3);
    CAtlMap<double, int> map;
    std::unordered_map<double, int> model;
    for (int round = 0; round < 20'000; ++round) {
        const double key = static_cast<double>(random() % 256) * 17 - 1700;
        const auto command = static_cast<unsigned>(random() % 1000);
        if (command == 0) {
            map.RemoveAll();
            model.clear();
        } else if (command < 20) {
            EXPECT_EQ(map.InitHashTable(command - 1), model.empty() && command > 1);
        } else if (command < 500) {
            EXPECT_EQ(map.RemoveKey(key), model.erase(key) == 1);
        } else {
            POSITION position = map.SetAt(key, model[key] = round);
            EXPECT_EQ(map.GetNext(position)->m_value, round);
        }
        ASSERT_EQ(map.GetCount(), model.size());
        ASSERT_LE(map.GetCount(), std::size_t{2} * map.GetHashTableSize());
        std::uint32_t bucket = 0;
        for (const auto& [entryKey, value] : map) {
            const std::uint32_t keysBucket = CElementTraits<double>::Hash(entryKey) % map.GetHashTableSize();
            ASSERT_GE(keysBucket, std::exchange(bucket, keysBucket));
            ASSERT_EQ(model.at(entryKey), value);
        }
    }
}

TEST(Maps, HashForeignTextsSoThatNoChosenTextsCollide) {
    std::unordered_map<std::uint32_t, CString> texts;  // with the hash that everybody can compute
    for (int number = 0; number < 400'000; ++number) {
        CString text;
        text.Format(u"%d", number);
        const auto [known, isNew] = texts.emplace(CElementTraits<CString>::Hash(text), text);
        if (!isNew) {
            using Traits = CStringElementTraits<CString>;
            EXPECT_NE(Traits::Hash(text), Traits::Hash(known->second)) << text << ' ' << known->second;
            return;
        }
    }
    FAIL() << "no two texts with one hash: more texts are needed";
}

TEST(Maps, FindTextsByTheirUnitsHoweverTheyAreSpelt) {
    CAtlMap<CString, int, CStringElementTraits<CString>> map{{u"Cache", 1}, {u"cache", 2}, {u"", 3}, {u"Cache", 4}};
    EXPECT_EQ(map.GetCount(), 3u);
    EXPECT_EQ(map.Lookup(u"Cache")->m_value, 4);
    EXPECT_EQ(map.Lookup("cache")->m_value, 2);
    EXPECT_EQ(map.Lookup(static_cast<const char16_t*>(nullptr))->m_value, 3);
    EXPECT_EQ(map.Lookup(std::u16string_view())->m_value, 3);  // sanitizers: no null pointer is compared
    EXPECT_EQ(map.Lookup(std::u16string_view(u"Caches").substr(0, 5))->m_value, 4);
    EXPECT_EQ(map.Lookup(CString(u"CACHE")), nullptr);
}

}  // namespace
