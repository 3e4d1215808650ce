#include <gtest/gtest.h>

#include <cmath>
#include <list>
#include <random>

#include "core/anim/LControlCollection.h"
#include "tests/core/sculpt/Blocks.h"
#include "tests/core/sculpt/Strokes.h"

using namespace VantrelSDK;

namespace {

using Random = std::mt19937;

int Below(Random& random, int n) {
    return static_cast<int>(random() % static_cast<unsigned>(n));
}

/// The rule for a new key, told of a chain.
void Insert(std::list<LMorphKey>& chain, const LMorphKey& key) {
    if (chain.empty() || chain.front().time >= key.time) return chain.push_front(key);
    if (key.time >= chain.back().time) return chain.push_back(key);
    auto at = std::prev(chain.end());
    while (!(at->time >= key.time && std::prev(at)->time <= key.time)) --at;
    chain.insert(at, key);
}

std::vector<LMorphKey> KeysOf(const LMorphControl2& track) {
    return {track.Keys().begin(), track.Keys().end()};
}

/// A node over a sphere with some targets in tangent space, the first of them 0.
std::unique_ptr<LHeadlessNode> NodeWithTargets(int levels) {
    auto node = blocks::NodeOf(shapes::Sphere(1));
    for (int i = 0; i < levels; ++i) EXPECT_TRUE(node->SubdivideAll_Quad());
    for (int i = 0; i < 5; ++i) blocks::Fill(*node->GetMorph(i), *node, i);
    node->addProxies2targets();
    return node;
}

LMorphControl2& AddTrack(LNode& node, int type = LMorphControl2::kPhoneme) {
    LControlCollection& tracks = node.NeedAnimControls();
    const int index = tracks.AddMorphCtrl(tracks.createNewControl());
    tracks.GetMorphCtrl(index)->SetType(type);
    return *tracks.GetMorphCtrl(index);
}

/// Keys at times from 0 to 4000, some of them on the neutral or on targets that don't exist.
void Fill(LMorphControl2& track, Random& random, int count) {
    for (int i = 0; i < count; ++i)
        track.AddKey({.id = Below(random, 8) - 1, .time = 40 * Below(random, 101)});
}

/// What a track weighs a target with, by Hermite's form of the curve through its keys, where what
/// is missing is a point at zero. Keys at one time are not for it.
double WeightOf(const LMorphControl2& track, int time, int target) {
    const auto keys = KeysOf(track);
    const auto value = [&](size_t i) { return i < keys.size() && keys[i].id == target ? 1. : 0.; };
    if (keys.size() == 1) return value(0);
    size_t i = keys.size();
    while (i > 0 && keys[i - 1].time > time) --i;
    if (i == 0) return 0;
    --i;
    if (i + 1 == keys.size()) return value(i);
    const double u = double(time - keys[i].time) / (keys[i + 1].time - keys[i].time);
    const double leave = (value(i + 1) - value(i - 1)) / 2, reach = (value(i + 2) - value(i)) / 2;
    return (1 + 2 * u) * (1 - u) * (1 - u) * value(i) + u * (1 - u) * (1 - u) * leave +
           u * u * (3 - 2 * u) * value(i + 1) + u * u * (u - 1) * reach;
}

bool HasKeysAtOneTime(const LMorphControl2& track) {
    const auto keys = track.Keys();
    return std::ranges::adjacent_find(keys, {}, &LMorphKey::time) != keys.end();
}

std::vector<LPoint3> Evaluated(LNode& node, int time, bool interpolate = true) {
    node.GetDelta()->Invalidate();
    node.GetDelta()->EvalDelta(time, -1, interpolate, node.GetDeltaMesh()->GetNumSubivLevels());
    return AllVerts(*node.GetDeltaMesh());
}

}  // namespace

TEST(Tracks, KeysStandAndAreFoundAsInAChain) {
    for (unsigned seed = 0; seed < 60; ++seed) {
        SCOPED_TRACE(seed);
        Random random(seed);
        LMorphControl2 track;
        std::list<LMorphKey> chain;
        for (int step = 0; step < 60; ++step) {
            const int time = Below(random, 30), action = Below(random, 8);
            if (action < 5) {
                const LMorphKey key{.id = step, .time = time};
                track.AddKey(key);
                Insert(chain, key);
            } else if (action < 7 && !chain.empty()) {
                const int at = Below(random, static_cast<int>(chain.size()));
                const auto gone = std::next(chain.begin(), at);
                EXPECT_EQ(track.RemoveKeyByIndex(at), *gone);
                chain.erase(gone);
            } else {
                const int to = time + Below(random, 9);
                std::vector<LMorphKey> gone;
                std::erase_if(chain, [&](const LMorphKey& key) {
                    const bool in = key.time > time && key.time < to;
                    if (in) gone.push_back(key);
                    return in;
                });
                EXPECT_EQ(track.RemoveKeysInInterval(time, to), gone);
            }
            ASSERT_EQ(KeysOf(track), std::vector(chain.begin(), chain.end()));
        }
        const auto keys = KeysOf(track);
        for (int time = -3; time < 34; ++time)
            for (const int tolerance : {0, 1, 4}) {
                const auto near = std::ranges::find_if(keys, [&](const LMorphKey& key) {
                    return std::abs(key.time - time) <= tolerance;
                });
                const LMorphKey* found = track.GetKeyByTime(time, tolerance);
                ASSERT_EQ(track.GetPtrIndex(found),
                          near == keys.end() ? -1 : static_cast<int>(near - keys.begin()));
                int before = -1, after = -1;
                for (int i = 0; i < static_cast<int>(keys.size()); ++i) {
                    if (keys[i].time <= time) before = i;
                    if (keys[i].time >= time && after < 0) after = i;
                }
                ASSERT_EQ(track.GetPtrIndex(track.GetKeyBeforeTime(time)), before);
                ASSERT_EQ(track.GetPtrIndex(track.GetKeyAfterTime(time)), after);
            }
        EXPECT_EQ(track.GetKeyByIndex(-1), nullptr);
        EXPECT_FALSE(track.RemoveKeyByIndex(track.NumKeys()));
    }
    // Times at the ends of numbers.
    LMorphControl2 track;
    track.AddKey({.id = 1, .time = INT_MAX});
    track.AddKey({.id = 2, .time = INT_MIN});
    EXPECT_EQ(track.GetKeyByTime(INT_MIN, 1), &track.Keys()[0]);
    EXPECT_EQ(track.GetKeyByTime(INT_MAX, 1), &track.Keys()[1]);
    EXPECT_TRUE(std::isfinite(track.SharesAt(0).shares[0].weight));
}

TEST(Tracks, AnActiveTrackAndNamesByType) {
    const auto node = blocks::NodeOf(shapes::Cube());
    LMorphControl2& first = AddTrack(*node);
    LMorphControl2& second = AddTrack(*node, LMorphControl2::kPoses);
    LControlCollection& tracks = *node->GetAnimControls();
    first.InitName();
    second.InitName();
    EXPECT_EQ(first.GetName() + ", " + second.GetName(), "Phonemes 01, Poses 02");
    EXPECT_EQ(tracks.GetActiveIdx(), -1);
    tracks.SetActive(1);
    tracks.SetActive(7);
    EXPECT_EQ(tracks.GetActive(), &second);
    tracks.SetActive(LControlCollection::kMixTrack);
    EXPECT_EQ(tracks.GetActive(), nullptr);
    const auto gone = tracks.RemoveMorphCtrl(0);
    gone->InitName();
    second.InitName();
    EXPECT_EQ(gone->GetName() + ", " + second.GetName(), "Undefined, Poses 01");
    EXPECT_EQ(tracks.RemoveMorphCtrl(1), nullptr);
    EXPECT_EQ(tracks.GetType(0), LMorphControl2::kPoses);
}

TEST(Tracks, AFrameIsTheSumOfWhatTheKeysAroundItWeigh) {
    for (const int levels : {0, 1}) {
        const auto node = NodeWithTargets(levels);
        blocks::Fill(*node->GetNeutral(), *node, 9);
        LSubdivMesh expected(*node->GetDeltaMesh(), false);
        for (unsigned seed = 0; seed < 12; ++seed) {
            Random random(seed);
            LControlCollection& tracks = node->NeedAnimControls();
            tracks.RemoveAll();
            for (int t = 0; t < 3; ++t) Fill(AddTrack(*node), random, Below(random, 5));
            AddTrack(*node, LMorphControl2::kPoses).AddKey({.id = 1, .time = 0});
            Fill(AddTrack(*node), random, 2);
            tracks.Enable(4, false);
            for (int time = -200; time < 4300; time += 37) {
                bool unclear = false;
                expected.ClearAllLevelsVerts();
                node->GetNeutral()->ApplyToLevels(&expected, -1, 1);
                for (int t = 0; t < 3; ++t) {
                    const LMorphControl2& track = *tracks.GetMorphCtrl(t);
                    unclear |= HasKeysAtOneTime(track);
                    for (int target = 0; target < node->GetNumMorphs(); ++target)
                        node->GetMorph(target)->ApplyToLevels(
                            &expected, -1, static_cast<float>(WeightOf(track, time, target)));
                }
                if (unclear) break;
                const auto sum = Evaluated(*node, time), wanted = AllVerts(expected);
                for (size_t v = 0; v < sum.size(); ++v)
                    ASSERT_LT((sum[v] - wanted[v]).Len(), 1e-4f) << seed << " at " << time;
                std::vector<char> tags(sum.size());
                node->GetDelta()->EvalTags(time, tags.data(), static_cast<int>(tags.size()));
                for (size_t v = 0; v < sum.size(); ++v)
                    if (!(sum[v] == LPoint3::Zero)) {
                        ASSERT_TRUE(tags[v]) << v;
                    }
            }
        }
    }
}

TEST(Tracks, AtAKeyAFrameIsItsTargetBitForBit) {
    const auto node = NodeWithTargets(1);
    LMorphControl2& track = AddTrack(*node);
    for (int i = 0; i < 4; ++i) track.AddKey({.id = i, .time = 1000 * i});
    LSubdivMesh target(*node->GetDeltaMesh(), false);
    for (int i = 0; i < 4; ++i) {
        node->GetMorph(i)->CopyToLevels(&target);
        EXPECT_TRUE(SameBits(Evaluated(*node, 1000 * i), AllVerts(target))) << i;
    }
    // Level 0 alone is shown by the proxies.
    node->GetDelta()->EvalDelta(1500, -1, true, 1);
    for (int v = 0; v < node->GetLevel0Size(); ++v) {
        LPoint3 sum;
        for (int i = 0; i < 4; ++i)
            if (const LPoint3* at = node->GetMorph(i)->proxy().Find(v))
                sum += *at * static_cast<float>(WeightOf(track, 1500, i));
        EXPECT_LT((node->GetDeltaMesh()->GetVertByAbsIdx(v) - sum).Len(), 1e-5f);
    }
    // Alone, a key counts before its time too, if it has a target.
    while (track.NumKeys() > 1) track.RemoveKeyByIndex(1);
    node->GetMorph(0)->CopyToLevels(&target);
    EXPECT_TRUE(SameBits(Evaluated(*node, -50), AllVerts(target)));
    EXPECT_EQ(node->GetDelta()->valid0(), INT_MIN);
    track.RemoveKeyByIndex(0);
    track.AddKey({.id = LMorphKey::kNeutral, .time = 100});
    Evaluated(*node, -50);
    EXPECT_FALSE(node->GetDelta()->HasOffsets());
    EXPECT_EQ(node->GetDelta()->valid1(), 100);
    node->GetAnimControls()->RemoveAll();
    EXPECT_FALSE(node->PlaysFrames());
}

TEST(Tracks, AFrameHoldsForTheTimesThatItSays) {
    const auto node = NodeWithTargets(0);
    for (unsigned seed = 0; seed < 30; ++seed) {
        Random random(seed);
        LControlCollection& tracks = node->NeedAnimControls();
        tracks.RemoveAll();
        std::vector<int> begins;
        for (int t = 0; t < 2; ++t) {
            LMorphControl2& track = AddTrack(*node);
            Fill(track, random, Below(random, 4));
            for (const LMorphKey& key : track.Keys()) begins.push_back(key.time);
        }
        for (const bool interpolate : {true, false})
            for (int i = 0; i < 30; ++i) {
                const int time = Below(random, 5000) - 500;
                const auto sum = Evaluated(*node, time, interpolate);
                const int from = std::max(node->GetDelta()->valid0(), -500),
                          to = std::min(node->GetDelta()->valid1(), 4500);
                ASSERT_TRUE(from <= time && time <= to);
                for (int k = 0; k < 5; ++k) {
                    const int other = from + Below(random, to - from + 1);
                    // The last of the times is where the next key begins.
                    if (other == to && other != time && std::ranges::count(begins, other)) continue;
                    ASSERT_TRUE(SameBits(Evaluated(*node, other, interpolate), sum))
                        << seed << ": " << time << " and " << other;
                }
            }
    }
    // A change of keys makes the next evaluation due.
    node->GetAnimControls()->RemoveAll();
    LMorphControl2& track = AddTrack(*node);
    track.AddKey({.id = 1, .time = 0});
    Evaluated(*node, 5, false);
    track.AddKey({.id = 2, .time = 4});
    node->GetDelta()->EvalDelta(5, -1, false, 1);
    LSubdivMesh target(*node->GetDeltaMesh(), false);
    node->GetMorph(2)->CopyToLevels(&target);
    EXPECT_TRUE(SameBits(AllVerts(*node->GetDeltaMesh()), AllVerts(target)));
    node->GetDelta()->EvalDelta(6, -1, false, 1);
    EXPECT_FALSE(node->GetDelta()->HasOffsets()) << "what holds still is left out";
}

TEST(Tracks, DrivePaintWhereTheNeutralHasColours) {
    const auto node = NodeWithTargets(1);
    LColorDelta& colours = *node->lcolorDelta();
    const int count = colours.GetNumVerts(-2);
    Random random(3);
    const auto paint = [&](LMorphTarget& target) {
        SparseColors some;
        for (int v = 0; v < count; ++v)
            if (random() % 3) {
                const auto part = [&] { return static_cast<float>(Below(random, 9)) / 32; };
                some.Append(v, LAColor(part(), part(), part(), part()));
            }
        target.SetColors(std::move(some));
    };
    for (int i = 0; i < 3; ++i) paint(*node->GetMorph(i));
    node->GetMorph(3)->ClearColor();
    LMorphControl2& track = AddTrack(*node);
    for (int i = 0; i < 4; ++i) track.AddKey({.id = i, .time = 1000 * i});
    track.AddKey({.id = LMorphKey::kNeutral, .time = 5000});
    colours.MixColor(2, 1, {1, 0, 0});
    colours.EvalDelta(500, -1, true, true);
    EXPECT_EQ(colours.GetResColor(2), LColor(1, 0, 0)) << "without it paint stays";
    EXPECT_GT(colours.valid0(), colours.valid1());

    paint(*node->GetNeutral());
    for (int time = -300; time < 6000; time += 77) {
        colours.EvalDelta(time, -1, true, true);
        for (int v = 0; v < count; ++v) {
            LAColor sum = node->GetNeutral()->MorphColor(v);
            for (int i = 0; i < 3; ++i)
                sum +=
                    node->GetMorph(i)->MorphColor(v) * static_cast<float>(WeightOf(track, time, i));
            sum.ClampMinMax();
            const LAColor off = colours.Paints()[v] - sum;
            ASSERT_LT(std::abs(off.r) + std::abs(off.g) + std::abs(off.b) + std::abs(off.a), 1e-5f)
                << v << " at " << time;
        }
    }
    // Held, from key to key.
    const auto now = [&] {
        return std::vector(colours.Paints(), colours.Paints() + static_cast<size_t>(count));
    };
    colours.EvalDelta(1700, -1, true, false);
    EXPECT_EQ(std::pair(colours.valid0(), colours.valid1()), std::pair(1000, 2000));
    const auto held = now();
    colours.EvalDelta(1000, -1, true, true);
    EXPECT_TRUE(SameBits(now(), held));
    colours.EvalDelta(-5, -1, true, true);
    const auto neutral = now();
    EXPECT_FALSE(SameBits(neutral, held));
    colours.EvalDelta(1700, -1, true, false);
    colours.EvalDelta(1300, -1, true, false);
    EXPECT_TRUE(SameBits(now(), neutral)) << "what holds still is left out";
    EXPECT_EQ(colours.valid1(), 2000);
    node->Invalidate();
    colours.EvalDelta(1300, -1, true, false);
    EXPECT_TRUE(SameBits(now(), held));
    // Level 0 alone.
    colours.EvalDelta(1000, 0, true, true);
    EXPECT_EQ(colours.Paints()[count - 1], LAColor());
    EXPECT_EQ(colours.Paints()[0], held[0]);
}

TEST(Tracks, FollowAListOfTargetsThatLostOne) {
    const auto node = blocks::NodeOf(shapes::Cube());
    LMorphControl2& track = AddTrack(*node);
    for (const int id : {-1, 16, 17, 18}) track.AddKey({.id = id, .time = id});
    AddTrack(*node, LMorphControl2::kCorrective).AddKey({.id = 18, .time = 0});
    node->GetAnimControls()->TargetDeleted(17);
    std::vector<int> ids;
    for (const LMorphKey& key : track.Keys()) ids.push_back(key.id);
    EXPECT_EQ(ids, (std::vector{-1, 16, -1, 17}));
    EXPECT_EQ(node->GetAnimControls()->GetMorphCtrl(1)->Keys()[0].id, 18) << "a number, no place";
}
