#pragma once

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

namespace VantrelSDK {

/// A manual-reset event: once set, every Wait passes until Reset.
class LEvent {
  public:
    explicit LEvent(bool initial) : signaled_(initial) {}
    virtual ~LEvent() = default;

    void Set();
    void Reset();
    /// Waits until the event is set; does not clear it. Spins for some microseconds before it
    /// sleeps, since the jobs of one brush step follow each other closely.
    void Wait();
    bool IsSet() const { return signaled_.load(std::memory_order_acquire); }

  private:
    std::mutex mutex_;
    std::condition_variable cond_;
    std::atomic<bool> signaled_;
};

/// One worker: runs one job at a time, sleeps between jobs.
class LThread {
  public:
    using Function = void* (*)(void*);

    virtual ~LThread();
    /// Starts the thread; nothing when it runs already. When the system refuses, prints
    /// "pthread_create failed." and leaves the worker absent.
    virtual void Create();
    /// Runs fn(arg) on the worker; a null fn or arg keeps the former one. False when it is absent.
    virtual bool Execute(Function fn, void* arg);
    /// Waits for the job; returns at once when there is none.
    virtual void WaitToFinish();
    /// It has no job.
    bool IsIdle() const { return finish_.IsSet(); }

    bool IsRunning() const { return thread_.joinable(); }

  private:
    void execute();

    Function fn_ = nullptr;
    void* arg_ = nullptr;
    bool quit_ = false;
    LEvent start_{false};
    LEvent finish_{true};
    std::thread thread_;
};

/// A fixed pool of workers that a brush step or a display update is divided among.
///
/// Jobs write disjoint data and take no lock; the group serves one caller at a time.
class LThreadGroup {
  public:
    /// The processors of this machine, at least 1.
    static int GetNumCPUs();

    /// `workers` 0 means one per processor.
    explicit LThreadGroup(int workers = 0);
    virtual ~LThreadGroup() = default;

    int GetNumWorkers() const { return static_cast<int>(threads_.size()); }

    /// Runs fn(arg) on worker `index`; false, and nothing runs, when there is no such worker.
    virtual bool Start(int index, LThread::Function fn, void* arg);
    /// Waits for every worker. The argument has no effect.
    virtual void WaitToFinish(int);

    /// The part of 0..count-1 that worker `k` of `workers` takes: count / workers + 1 items each,
    /// the last ones fewer or none (then 0, 0).
    static std::pair<int, int> Slice(int count, int workers, int k);

    /// Calls job(first, last, worker) for slices that cover 0..count-1 in order of `worker`, and
    /// returns when all are done. The calling thread takes slice 0. Slices hold at least `grain`
    /// items, so that little work stays on one thread. Cutting has no effect on what a job writes
    /// per item.
    template <class Job>
    void ForSlices(int count, int grain, const Job& job) {
        const int parts = std::clamp(count / std::max(grain, 1), 1, GetNumWorkers());
        if (parts == 1) {
            if (count > 0) job(0, count, 0);
            return;
        }
        struct Call {
            const Job* job;
            std::pair<int, int> slice;
            int worker;
        };
        std::vector<Call>& calls = Calls<Call>();
        calls.resize(parts);
        for (int k = 1; k < parts; ++k) {
            calls[k] = {&job, Slice(count, parts, k), k};
            if (calls[k].slice.first == calls[k].slice.second) continue;
            if (!Start(k, &RunCall<Call>, &calls[k])) RunCall<Call>(&calls[k]);
        }
        const auto [first, last] = Slice(count, parts, 0);
        job(first, last, 0);
        WaitToFinish(-1);
    }

    /// Calls job(first, last, worker) for pieces of `piece` items that cover 0..count-1 and returns
    /// when all are done. Each worker takes pieces of its own slice, so that the next job finds in
    /// its caches what this one wrote, and then what others have left of theirs. Nobody waits for a
    /// worker that sleeps. So this is for jobs that take no longer than a worker to wake, and that
    /// need no order.
    template <class Job>
    void ForPieces(int count, int piece, const Job& job) {
        if (count <= piece || GetNumWorkers() == 1) {
            if (count > 0) job(0, count, 0);
            return;
        }
        batch_.piece = piece;
        batch_.job = &job;
        batch_.run = [](const void* any, int first, int last, int worker) {
            (*static_cast<const Job*>(any))(first, last, worker);
        };
        RunBatch(count);
    }

  private:
    /// What is left of a worker's slice.
    struct alignas(64) Lane {
        std::atomic<int64_t> next{0};
        int last = 0;
    };
    /// What the pieces of a ForPieces are taken from.
    struct Batch {
        std::atomic<bool> open{false};
        /// Workers that may look into it.
        std::atomic<int> inside{0};
        int piece = 1;
        const void* job = nullptr;
        void (*run)(const void* job, int first, int last, int worker) = nullptr;
    };
    struct Helper {
        LThreadGroup* group;
        int worker;
    };

    void RunBatch(int count);
    void TakePieces(int worker);
    static void* Help(void* helper);

    /// Kept between calls, so that a step allocates nothing.
    template <class Call>
    static std::vector<Call>& Calls() {
        static thread_local std::vector<Call> calls;
        return calls;
    }
    template <class Call>
    static void* RunCall(void* arg) {
        Call* call = static_cast<Call*>(arg);
        (*call->job)(call->slice.first, call->slice.second, call->worker);
        return nullptr;
    }

    Batch batch_;
    std::vector<Lane> lanes_;
    std::vector<Helper> helpers_;
    std::vector<std::unique_ptr<LThread>> threads_;
};

}  // namespace VantrelSDK
