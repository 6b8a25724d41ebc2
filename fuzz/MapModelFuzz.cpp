// A map and a list under any calls hold what the standard's hold under the same ones; a map is walked bucket by bucket.
#include "RkUtilities/foundation/CAtlList.h"
#include "RkUtilities/foundation/CAtlMap.h"

#include "fuzz/Require.h"

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <list>
#include <memory>
#include <span>
#include <unordered_map>

namespace {

using Value = std::shared_ptr<int>;  // a value that is destroyed twice, or never, does not go unseen

struct MapPair {
    CAtlMap<double, Value> map;
    std::unordered_map<double, Value> model;

    void Check() const {
        Require(map.GetCount() == model.size() && map.IsEmpty() == model.empty());
        std::size_t entryCount = 0, bucket = 0;
        for (const auto& [key, value] : map) {
            const std::size_t keysBucket = CElementTraits<double>::Hash(key) % map.GetHashTableSize();
            Require(keysBucket >= bucket && model.at(key) == value);
            bucket = keysBucket;
            ++entryCount;
        }
        Require(entryCount == model.size() && entryCount <= std::size_t{2} * map.GetHashTableSize());
    }

    void Do(std::uint8_t command, double key) {
        const Value value = std::make_shared<int>(command);
        switch (command % 8) {
        case 0:
            Require(map.RemoveKey(key) == (model.erase(key) == 1));
            break;
        case 1:
            Require((map.Lookup(key) != nullptr) == model.contains(key));
            break;
        case 2:
            map = CAtlMap<double, Value>(map);
            break;
        case 3:
            if (command == 3) {
                map.RemoveAll();
                model.clear();
            }
            Require(map.InitHashTable(command) == (model.empty() && command > 0));
            break;
        default:
            POSITION position = map.SetAt(key, value);
            Require(map.GetNext(position)->m_value == value);
            model[key] = value;
        }
    }
};

struct ListPair {
    CAtlList<Value> list{3};
    std::list<Value> model;

    void Check() const {
        Require(list.GetCount() == model.size());
        Require(std::equal(list.begin(), list.end(), model.begin(), model.end()));
    }

    void Do(std::uint8_t command, std::uint8_t place) {
        POSITION position = list.GetHeadPosition();
        auto modelPosition = model.begin();
        for (std::size_t i = model.empty() ? 0 : place % model.size(); i > 0; --i, ++modelPosition)
            Require(list.GetNext(position) == *modelPosition);
        const Value value = position ? list.GetAt(position) : std::make_shared<int>(place);
        if (command % 4 == 0 && position) {
            list.RemoveAt(position);
            model.erase(modelPosition);
        } else if (command % 4 == 1) {
            Require(list.GetAt(list.AddHead(value)) == value);
            model.push_front(value);
        } else if (command == 2) {
            list = CAtlList<Value>(list);
        } else {
            Require(list.GetAt(list.AddTail(std::make_shared<int>(command))) != value);
            model.push_back(*std::next(list.begin(), static_cast<std::ptrdiff_t>(model.size())));
        }
    }
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    MapPair maps;
    ListPair lists;
    for (std::span<const std::uint8_t> rest(data, size); rest.size() >= 2; rest = rest.subspan(2)) {
        maps.Do(rest[0], (rest[1] - 100) * 17.0);
        lists.Do(rest[0], rest[1]);
        maps.Check();
        lists.Check();
    }
    return 0;
}
