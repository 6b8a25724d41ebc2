#include "RkUtilities/foundation/CAtlArray.h"
#include "RkUtilities/foundation/CAtlList.h"
#include "RkUtilities/foundation/CAtlMap.h"
#include "RkUtilities/foundation/CString.h"

#include <gtest/gtest.h>
#include <ranges>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>
#include <limits>
#include <malloc.h>
#include <memory>
#include <unordered_map>
#include <vector>

namespace {

struct CopyFault {};
int stepCount = 0, failingStep = 0;  // 0: none fails

void FailIfPlanned() {
    if (++stepCount == failingStep)
        throw CopyFault();
}

void Arm(int step) {
    stepCount = 0;
    failingStep = step;
}

/// An element of which everything may throw, its move included; it counts the living ones.
struct Fragile {
    explicit(false) Fragile(int number = 0) : value(number) { Live(); }
    Fragile(const Fragile& other) : value(other.value) { Live(); }
    Fragile& operator=(const Fragile& other) {
        FailIfPlanned();
        value = other.value;
        return *this;
    }
    ~Fragile() { --living; }
    friend bool operator==(const Fragile& a, const Fragile& b) {
        FailIfPlanned();
        return a.value == b.value;
    }

    int value;
    static inline int living = 0;

private:
    static void Live() {
        FailIfPlanned();
        ++living;
    }
};

}  // namespace

template <> struct std::hash<Fragile> {
    std::size_t operator()(const Fragile& element) const {
        FailIfPlanned();
        return static_cast<std::size_t>(element.value);
    }
};

namespace {

using Array = CAtlArray<Fragile>;
using List = CAtlList<Fragile>;
using Map = CAtlMap<Fragile, Fragile>;

std::vector<int> Contents(const auto& container) {
    std::vector<int> values;
    for (const Fragile& element : container)
        values.push_back(element.value);
    return values;
}
std::vector<int> Contents(const Map& map) {
    std::vector<int> values = {static_cast<int>(map.GetHashTableSize())};
    for (const auto& [key, value] : map)
        values.insert(values.end(), {key.value, value.value});
    return values;
}

template <class Container> struct Operation {
    std::function<void(Container&)> run;
    std::vector<int> result;
};

/// Lets every step of an element fail once in every operation: the container must stay as it was and lose nothing.
template <class Container>
void ExpectStrongGuarantee(const Container& start, const std::vector<Operation<Container>>& operations) {
    const std::vector<int> before = Contents(start);
    for (const auto& [run, result] : operations) {
        bool failed = true;
        for (int step = 1; failed; ++step) {
            SCOPED_TRACE(testing::Message() << &run - &operations[0].run << " failing at step " << step);
            const int livingBefore = Fragile::living;
            {
                Container container = start;
                failed = false;
                Arm(step);
                try {
                    run(container);
                } catch (const CopyFault&) {
                    failed = true;
                }
                Arm(0);
                EXPECT_EQ(Contents(container), failed ? before : result);
            }
            EXPECT_EQ(Fragile::living, livingBefore);
        }
    }
}

const Fragile kNew = 7;

TEST(Containers, KeepTheArrayWhateverFails) {
    ExpectStrongGuarantee<Array>({1, 2, 3},
                                 {{[](Array& a) { a.Add(kNew); }, {1, 2, 3, 7}},
                                  {[](Array& a) { a.Add(a[0]); }, {1, 2, 3, 1}},  // moved away before it is copied
                                  {[](Array& a) { a.SetCount(5); }, {1, 2, 3, 0, 0}},
                                  {[](Array& a) { a.SetCount(1); }, {1}},
                                  {[](Array& a) { a.SetAt(1, kNew); }, {1, 7, 3}},
                                  {[](Array& a) { a = Array(a); }, {1, 2, 3}}});
}

TEST(Containers, KeepTheListWhateverFails) {
    List list(2);  // the third element needs a block
    list.AddTail(1);
    list.AddTail(2);
    ExpectStrongGuarantee<List>(list, {{[](List& l) { l.AddHead(l.GetAt(l.GetHeadPosition())); }, {1, 1, 2}},
                                       {[](List& l) { l.AddTail(l.GetAt(l.GetHeadPosition())); }, {1, 2, 1}},
                                       {[](List& l) { l.RemoveAt(l.GetHeadPosition()); }, {2}},
                                       {[](List& l) { l = List(l); }, {1, 2}}});
}

TEST(Containers, KeepTheMapWhateverFails) {
    ExpectStrongGuarantee<Map>({}, {{[](Map& m) { m.SetAt(1, 2); }, {17, 1, 2}}});
    Map map;
    map.InitHashTable(2);
    for (int key = 1; key <= 4; ++key)  // the next key makes the table grow
        map.SetAt(key, 10 * key);
    ExpectStrongGuarantee<Map>(
        map,
        {{[](Map& m) { m.SetAt(kNew, kNew); }, {17, 1, 10, 2, 20, 3, 30, 4, 40, 7, 7}},
         {[](Map& m) { m.SetAt(m.Lookup(3)->m_value, m.Lookup(4)->m_key); }, {17, 1, 10, 2, 20, 3, 30, 4, 40, 30, 4}},
         {[](Map& m) { m.SetAt(m.Lookup(3)->m_key, m.Lookup(4)->m_value); }, {2, 4, 40, 2, 20, 3, 40, 1, 10}},
         {[](Map& m) { m.RemoveKey(2); }, {2, 4, 40, 3, 30, 1, 10}},
         {[](Map& m) { m = Map(m); }, {2, 4, 40, 2, 20, 3, 30, 1, 10}}});
}

TEST(Containers, HoldNoMemoryWhileTheyAreEmpty) {
    const auto usedBytes = [] { return mallinfo2().uordblks; };  // sanitizers' allocators tell 0
    const std::size_t atFirst = usedBytes();
    CAtlArray<CString> array;
    CAtlList<CString> list;
    CAtlMap<CString, bool> map;
    EXPECT_TRUE(map.InitHashTable(64));
    EXPECT_FALSE(map.Lookup(u"a category whose name is too long to stand in a text object"));
    EXPECT_EQ(usedBytes(), atFirst);
    for (int i = 0; i < 1000; ++i) {
        array.Add(u"a");
        list.AddHead(u"a");
        map.SetAt(CString(u"k") + static_cast<char16_t>(i), true);
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
    const auto errorOf = [](const auto& call) {
        try {
            call();
        } catch (const ATL::CAtlException& fault) {
            return fault.m_hr;
        }
        return 0;
    };
    constexpr auto kWrong = ATL::kInvalidArgument;
    EXPECT_EQ(errorOf([&] { array.GetAt(1) = 0; }), kWrong);
    EXPECT_EQ(errorOf([&] { array.SetAt(SIZE_MAX, 0); }), kWrong);
    EXPECT_EQ(errorOf([&] { number = std::as_const(array)[1]; }), kWrong);
    EXPECT_EQ(errorOf([&] { list.GetAt(none) = 0; }), kWrong);
    EXPECT_EQ(errorOf([&] { list.GetNext(none) = 0; }), kWrong);
    EXPECT_EQ(errorOf([&] { list.RemoveAt(none); }), kWrong);
    EXPECT_EQ(errorOf([&] { map.GetNext(none); }), kWrong);
    EXPECT_EQ(errorOf([&] { map.GetNextAssoc(none, number, number); }), kWrong);
    for (const std::size_t count : {SIZE_MAX, SIZE_MAX / 2, SIZE_MAX / sizeof(int), SIZE_MAX / sizeof(int) + 2})
        EXPECT_EQ(errorOf([&] { array.SetCount(count); }), -108);
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
    for (const auto& call :
         {+[](CAtlArray<CString>& a) { a.InsertAt(4, u""); }, +[](CAtlArray<CString>& a) { a.RemoveAt(3); },
          +[](CAtlArray<CString>& a) { a.RemoveAt(1, SIZE_MAX); }})
        EXPECT_THROW(call(array), ATL::CAtlException);
    EXPECT_EQ(std::size(array), 3u);
    CAtlArray<std::vector<int>> lists{{1, 2}};  // a vector that is moved onto itself is empty
    lists.RemoveAt(0, 0);
    EXPECT_EQ(lists[0].size(), 2u);

    CAtlList<int> list;
    const POSITION two = list.AddTail(2);
    list.InsertBefore(two, 0);
    list.InsertAfter(two, 4);
    list.InsertBefore(two, 1);
    list.InsertAfter(two, 3);
    EXPECT_EQ(list, (CAtlList<int>{0, 1, 2, 3, 4}));
    EXPECT_TRUE(std::ranges::equal(list | std::views::reverse, std::array{4, 3, 2, 1, 0}));
    int last = 5;
    for (POSITION position = list.GetTailPosition(); position; --last)
        EXPECT_EQ(list.GetPrev(position), last - 1);
    EXPECT_EQ(last, 0);
    EXPECT_EQ(std::pair(list.GetHead(), list.GetTail()), std::pair(0, 4));
    list.RemoveAt(two);
    EXPECT_EQ(list, (CAtlList<int>{0, 1, 3, 4}));
    CAtlList<int> none;
    EXPECT_THROW(none.InsertBefore(nullptr, 1), ATL::CAtlException);
    EXPECT_THROW(none.GetTail(), ATL::CAtlException);
    EXPECT_TRUE(std::empty(none));

    CAtlMap<CString, int> map;
    ++map[u"a"];
    map[u"a"] += map[u"b"] = 5;
    EXPECT_EQ(map, (CAtlMap<CString, int>{{u"a", 6}, {u"b", 5}}));
    EXPECT_EQ(std::size(map), 2u);

    struct Hungry {
        explicit Hungry(bool isFed) : value(isFed ? 1 : throw std::bad_alloc()) {}
        Hungry() : Hungry(false) {}
        Hungry(const Hungry&) = default;
        Hungry& operator=(const Hungry&) { throw std::bad_alloc(); }
        int value;
    };
    CAtlArray<Hungry> hungry{Hungry(true), Hungry(true)};
    CAtlMap<int, Hungry> hungryMap;
    EXPECT_THROW(hungry.RemoveAt(0), ATL::CAtlException);
    EXPECT_THROW(hungry.InsertAt(0, Hungry(true)), ATL::CAtlException);
    EXPECT_THROW(hungryMap[1], ATL::CAtlException);
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
    {-1.5, 0xFFFFFFFF},     // converted as unsigned, undefined
    {4294967296.0 + 3, 3},  // limited to 32 bits first: 0xFFFFFFFF
    {0x1p63, 0},
    {0x1.00000001p63, 0x80000000},  // converted as signed, undefined
    {-0x1.00000001p62, 0xC0000000},
    {-0x1p64, 0},
    {-1e300, 0},
    {std::numeric_limits<double>::infinity(), 0},
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

std::vector<double> Keys(const CAtlMap<double, bool>& map) {
    std::vector<double> keys;
    double key = 0;
    bool value = false;
    for (POSITION position = map.GetStartPosition(); position;) {
        map.GetNextAssoc(position, key, value);
        keys.push_back(key);
    }
    return keys;
}

TEST(Maps, AreWalkedBucketByBucketWithTheCountThatWasFixed) {
    CAtlMap<double, bool> map;
    ASSERT_TRUE(map.InitHashTable(64));
    for (const double key : {130.0, 1.0, 64.0, 2.0, -1.0})
        map.SetAt(key, true);
    EXPECT_EQ(Keys(map), (std::vector<double>{64, 1, 2, 130, -1}));
    EXPECT_FALSE(map.InitHashTable(7));
    for (int key = 200; map.GetCount() < 128; ++key)
        map.SetAt(key, true);
    EXPECT_EQ(map.GetHashTableSize(), 64u);
    const CAtlMap<double, bool> copy = map;
    EXPECT_EQ(Keys(copy), Keys(map));

    for (int key = 0; key < 1'000'000; ++key)
        map.SetAt(key, true);
    EXPECT_GE(map.GetHashTableSize(), 500'000u);
    EXPECT_EQ(Keys(map).size(), map.GetCount());
    map.RemoveAll();
    EXPECT_EQ(map.GetHashTableSize(), 64u);
    EXPECT_FALSE(map.InitHashTable(0));
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
            EXPECT_EQ(Traits::Hash(text), Traits::Hash(CString(text.View())));
            return;
        }
    }
    FAIL() << "no two texts with one hash: more texts are needed";
}

TEST(Maps, FindTextsByTheirUnitsHoweverTheyAreSpelt) {
    CAtlMap<CString, int, CStringElementTraits<CString>> map{{u"Cache", 1}, {u"cache", 2}, {u"", 3}, {u"Cache", 4}};
    EXPECT_EQ(map.GetCount(), 3u);
    const auto valueOf = [&map](const auto& key) {
        int value = -1;
        map.Lookup(key, value);
        return value;
    };
    EXPECT_EQ(valueOf(u"Cache"), 4);
    EXPECT_EQ(valueOf("cache"), 2);
    EXPECT_EQ(valueOf(static_cast<const char16_t*>(nullptr)), 3);
    EXPECT_EQ(valueOf(std::u16string_view()), 3);  // sanitizers: no null pointer is compared
    EXPECT_EQ(valueOf(std::u16string_view(u"Caches").substr(0, 5)), 4);
    EXPECT_EQ(valueOf(CString(u"CACHE")), -1);
}

}  // namespace
