#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <climits>
#include <numeric>
#include <thread>

#include "core/sculpt/LThreadGroup.h"

using namespace VantrelSDK;

TEST(ThreadGroup, SlicesCoverTheListOnceInOrder) {
    for (const int workers : {1, 2, 3, 4, 7, 8})
        for (const int count : {0, 1, 2, 3, 7, 8, 9, 100, 1001, INT_MAX}) {
            int next = 0;
            for (int k = 0; k < workers; ++k) {
                const auto [first, last] = LThreadGroup::Slice(count, workers, k);
                if (first == last) {
                    EXPECT_EQ(first, 0);
                    continue;
                }
                EXPECT_EQ(first, next);
                EXPECT_LE(last - first - count / workers, 1);
                next = last;
            }
            EXPECT_EQ(next, count);
        }
}

TEST(ThreadGroup, EachItemIsDoneOnceAndSeenAfterwards) {
    for (const int workers : {1, 2, 8}) {
        LThreadGroup group(workers);
        std::vector<int> done(5000);
        for (int round = 0; round < 300; ++round)
            group.ForSlices(static_cast<int>(done.size()), 16, [&](int first, int last, int) {
                for (int i = first; i < last; ++i) ++done[i];
            });
        EXPECT_EQ(std::count(done.begin(), done.end(), 300), 5000);
    }
}

// A worker that comes late to pieces must find them done, and the next job must not lose it.
TEST(ThreadGroup, PiecesAndSlicesInAnyOrder) {
    for (const int workers : {1, 2, 3, 8}) {
        std::vector<int> done(3000), byWorker(static_cast<size_t>(workers));
        {
            LThreadGroup group(workers);
            const auto job = [&](int first, int last, int worker) {
                byWorker[static_cast<size_t>(worker)] += last - first;
                for (int i = first; i < last; ++i) ++done[static_cast<size_t>(i)];
            };
            for (int round = 0; round < 400; ++round) {
                group.ForPieces(3000, 1 + round * 37 % 500, job);
                if (round % 3 == 0) group.ForSlices(3000, 16, job);
                if (round % 50 == 0) std::this_thread::sleep_for(std::chrono::milliseconds(1));
                group.ForPieces(round % 7, 2, [](int, int, int) {});
            }
        }
        EXPECT_EQ(std::count(done.begin(), done.end(), 400 + 134), 3000);
        EXPECT_EQ(std::accumulate(byWorker.begin(), byWorker.end(), 0), 3000 * (400 + 134));
    }
}

TEST(ThreadGroup, JobsRunByHand) {
    LThreadGroup group(3);
    group.WaitToFinish(-1);  // returns at once: nothing runs yet
    std::atomic<int> sum = 0;
    const auto add = [](void* arg) -> void* {
        ++*static_cast<std::atomic<int>*>(arg);
        return nullptr;
    };
    for (int k = 0; k < 3; ++k) EXPECT_TRUE(group.Start(k, add, &sum));
    group.WaitToFinish(-1);
    EXPECT_EQ(sum, 3);
    EXPECT_FALSE(group.Start(3, add, &sum));
    EXPECT_FALSE(group.Start(-1, add, &sum));
    EXPECT_TRUE(group.Start(1, nullptr, nullptr));  // the job of before
    group.WaitToFinish(-1);
    EXPECT_EQ(sum, 4);
}

TEST(Event, StaysSetUntilReset) {
    LEvent event(true);
    event.Wait();
    event.Wait();
    event.Reset();
    std::thread setter([&] { event.Set(); });
    event.Wait();
    setter.join();
}
