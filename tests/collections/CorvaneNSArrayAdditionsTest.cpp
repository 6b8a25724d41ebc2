#include "tests/support/Test.h"

#include <forward_list>
#include <iterator>
#include <set>

namespace {

using Additions = CorvaneNSArrayAdditions;
using Positions = std::set<std::size_t>;

struct Tag {
    virtual ~Tag() = default;
    int tag = 0;
};
struct Named {
    virtual ~Named() = default;
    int name = 0;
    friend bool operator==(const Named& a, const Named& b) { return a.name == b.name; }
};
struct Topic : Tag, Named {
    explicit Topic(int number) { name = number; }
};

template <class Array, class Objects>
concept CanAskForEquals = requires(Array array, Objects objects) { Additions::indexesOfObjects(array, objects); };
template <class Array, class Object>
concept CanAskForObject = requires(Array array, Object object) { Additions::containsObjectIdenticalTo(array, object); };

/// A type without "==" has identity only; what can never be the same object is refused.
static_assert(CanAskForObject<std::vector<Tag*>, std::shared_ptr<const Tag>> &&
              CanAskForObject<std::vector<Tag*>, Topic*>);
static_assert(!CanAskForEquals<std::vector<Tag*>, std::vector<Tag*>>);
static_assert(CanAskForEquals<std::vector<Named*>, std::vector<std::shared_ptr<const Topic>>>);
static_assert(!CanAskForObject<std::vector<Tag*>, Named*> && !CanAskForObject<std::vector<int>, int>);

TEST(ArrayQueries, TellIdentityFromEquality) {
    Topic a(1), b(2), equalToA(1), stranger(1);
    const std::vector<Topic*> topics = {&a, &b, &equalToA, nullptr};
    for (const auto& [object, isThere] : {std::pair(&b, true), {&stranger, false}, {nullptr, true}})
        EXPECT_EQ(Additions::containsObjectIdenticalTo(topics, object), isThere);
    EXPECT_FALSE(Additions::containsAnyObjectsIdenticalTo(topics, std::array{&stranger}));
    EXPECT_TRUE(Additions::containsAnyObjectsIdenticalTo(topics, std::array{&stranger, &b}));
    EXPECT_EQ(Additions::indexesOfObjects(topics, std::array{&equalToA, &stranger}), Positions{0});  // the lowest only
    EXPECT_EQ(Additions::indexesOfObjects(topics, topics), (Positions{0, 1, 3}));
}

TEST(ArrayQueries, MixSmartAndRawPointersAndBases) {
    std::forward_list<std::unique_ptr<Topic>> array;
    array.push_front(nullptr);
    array.push_front(std::make_unique<Topic>(1));
    const Topic& topic = *array.front();
    const std::vector<std::shared_ptr<Topic>> strangers = {std::make_shared<Topic>(1), nullptr};
    const Named* const asNamed = &topic;  // another address than the topic's

    EXPECT_TRUE(Additions::containsObjectIdenticalTo(array, asNamed));
    EXPECT_TRUE(Additions::containsAnyObjectsIdenticalTo(array, std::array{asNamed}));
    EXPECT_TRUE(Additions::containsAnyObjectsIdenticalTo(std::array{asNamed}, array));
    EXPECT_TRUE(Additions::containsAnyObjectsIdenticalTo(array, strangers));  // both hold null
    EXPECT_EQ(Additions::indexesOfObjects(array, strangers), (Positions{0, 1}));
    EXPECT_EQ(Additions::indexesOfObjects(array, std::array{asNamed}), Positions{0});
    EXPECT_TRUE(Additions::containsObjectIdenticalTo(std::vector<const void*>{&topic}, array.front()));
}

Topic topicsToRead[] = {Topic(1), Topic(2)};
std::istream& operator>>(std::istream& stream, Topic*& topic) {
    if (std::size_t place = 0; stream >> place)
        topic = &topicsToRead[place];
    return stream;
}
/// Topics that are read from a text of their places: they begin only when they are not const, and once.
struct ReadTopics {
    using Iterator = std::istream_iterator<Topic*>;
    Iterator begin() { return places; }
    static Iterator end() { return {}; }
    std::istringstream places;
};

TEST(ArrayQueries, WalkTheObjectsOnceAndStopAtTheFirstHit) {
    ReadTopics objects{std::istringstream("0 1 0 1")};
    EXPECT_TRUE(Additions::containsAnyObjectsIdenticalTo(std::array{&topicsToRead[1]}, objects));
    EXPECT_EQ(objects.places.tellg(), 3);
    EXPECT_EQ(Additions::indexesOfObjects(std::array{&topicsToRead[1], &topicsToRead[0]}, objects), (Positions{0, 1}));
    EXPECT_TRUE(objects.places.eof());
    static_assert(!CanAskForObject<decltype(objects), Topic*>);
}

}  // namespace
