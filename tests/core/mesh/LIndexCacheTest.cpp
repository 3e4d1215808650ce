#include "core/mesh/LIndexCache.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <map>
#include <set>

#include "core/mesh/LPointCache.h"

using namespace VantrelSDK;

RC_GTEST_PROP(LIndexCache, IsASetInOrderOfAdding, (const std::vector<int16_t>& numbers)) {
    LIndexCache cache(*rc::gen::inRange(0, 300));
    struct Walk : LIndexCache::NodeCallback {
        std::vector<int> met;
        void proc(LIndexCache::Node* node) override { met.push_back(node->index); }
    };
    for (int use = 0; use < 2; ++use) {
        std::set<int> known;
        std::vector<int> order;
        for (const int i : numbers) {
            const bool isNew = i >= 0 && known.insert(i).second;
            if (isNew) order.push_back(i);
            RC_ASSERT(cache.Add(i) == isNew);
        }
        for (int i = -3; i < INT16_MAX + 3; i += 7)
            RC_ASSERT(cache.Get(i) == (known.count(i) == 1));
        Walk walk;
        cache.Traverse(&walk);
        RC_ASSERT(walk.met == order);
        RC_ASSERT(
            std::equal(order.begin(), order.end(), cache.Items().begin(), cache.Items().end()));
        cache.Clear();
        RC_ASSERT(cache.GetCount() == 0 && !cache.Get(order.empty() ? 0 : order[0]));
    }
}

RC_GTEST_PROP(LPointCache, KeepsTheFirstPointOfAKeyAndNormalizes,
              (const std::vector<std::pair<int8_t, int8_t>>& points)) {
    LPointCache cache(20);
    std::map<int, LPoint3> known;
    for (const auto& [key, x] : points) {
        const LPoint3 p(x, 2, 0);
        RC_ASSERT(cache.AddPoint(key, 0.5f, p) == (key >= 0 && known.emplace(key, p).second));
    }
    RC_ASSERT(cache.SetPoint(5, LPoint3::Zero) == (known.count(5) == 1));
    if (known.count(5)) known[5] = LPoint3::Zero;
    std::vector<LPoint3> out(100, LPoint3(7, 7, 7));
    cache.NormalizeAndExport(out);
    for (int key = 0; key < 100; ++key) {
        const bool present = known.count(key);
        RC_ASSERT(out[key] == (present ? Normalized(known[key]) : LPoint3(7, 7, 7)));
        RC_ASSERT(cache.GetPoint(key) == (present ? out[key] : LPoint3::Zero));
    }
    cache.Clear();
    RC_ASSERT(cache.Items().empty() && cache.AddPoint(5, 1, {1, 2, 3}));
}
