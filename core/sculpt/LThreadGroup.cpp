#include "core/sculpt/LThreadGroup.h"

#include <unistd.h>

#include <cstdio>
#include <system_error>

namespace VantrelSDK {

namespace {

/// Longer than the gap between two jobs of a step, far shorter than the gap between two steps.
constexpr int kSpins = 4000;

inline void Pause() {
#if defined(__x86_64__)
    __builtin_ia32_pause();
#endif
}

}  // namespace

void LEvent::Set() {
    {
        const std::lock_guard lock(mutex_);
        signaled_.store(true, std::memory_order_release);
    }
    cond_.notify_all();
}

void LEvent::Reset() {
    const std::lock_guard lock(mutex_);
    signaled_.store(false, std::memory_order_release);
}

void LEvent::Wait() {
    static const int spins = LThreadGroup::GetNumCPUs() > 1 ? kSpins : 0;
    for (int i = 0; i < spins; ++i) {
        if (signaled_.load(std::memory_order_acquire)) return;
        Pause();
    }
    std::unique_lock lock(mutex_);
    cond_.wait(lock, [this] { return signaled_.load(std::memory_order_acquire); });
}

LThread::~LThread() {
    if (!IsRunning()) return;
    WaitToFinish();
    quit_ = true;
    start_.Set();
    thread_.join();
}

void LThread::Create() {
    if (IsRunning()) return;
    try {
        thread_ = std::thread([this] { execute(); });
    } catch (const std::system_error&) {
        std::fputs("pthread_create failed.\n", stderr);
    }
}

bool LThread::Execute(Function fn, void* arg) {
    if (fn) fn_ = fn;
    if (arg) arg_ = arg;
    if (!IsRunning()) return false;
    // Before the start, so that the caller's wait can't pass before the job has run.
    finish_.Reset();
    start_.Set();
    return true;
}

void LThread::WaitToFinish() {
    finish_.Wait();
}

void LThread::execute() {
    for (;;) {
        start_.Wait();
        if (quit_) return;
        if (fn_) fn_(arg_);
        start_.Reset();
        finish_.Set();
    }
}

int LThreadGroup::GetNumCPUs() {
    const long count = sysconf(_SC_NPROCESSORS_ONLN);
    return count < 2 ? 1 : static_cast<int>(count);
}

LThreadGroup::LThreadGroup(int workers) {
    const int count = workers > 0 ? workers : GetNumCPUs();
    lanes_ = std::vector<Lane>(static_cast<size_t>(count));
    for (int k = 0; k < count; ++k) {
        threads_.push_back(std::make_unique<LThread>());
        helpers_.push_back({this, k});
    }
    // Slice 0 is the caller's: a group of one needs no thread.
    for (int k = 1; k < count; ++k) threads_[k]->Create();
}

bool LThreadGroup::Start(int index, LThread::Function fn, void* arg) {
    if (index < 0 || index >= GetNumWorkers() || !threads_[index]) return false;
    threads_[index]->Create();
    // It may still be on its way to pieces that others have done.
    threads_[index]->WaitToFinish();
    return threads_[index]->Execute(fn, arg);
}

void LThreadGroup::RunBatch(int count) {
    for (int k = 0; k < GetNumWorkers(); ++k) {
        const auto [first, last] = Slice(count, GetNumWorkers(), k);
        lanes_[static_cast<size_t>(k)].next = first;
        lanes_[static_cast<size_t>(k)].last = last;
    }
    batch_.open = true;
    for (int k = 1; k < GetNumWorkers(); ++k)
        if (threads_[k]->IsIdle()) threads_[k]->Execute(&Help, &helpers_[k]);
    TakePieces(0);
    // From here on nobody comes in, and who is in has a piece.
    batch_.open = false;
    while (batch_.inside != 0) Pause();
}

void LThreadGroup::TakePieces(int worker) {
    for (size_t k = 0; k < lanes_.size(); ++k) {
        Lane& lane = lanes_[(static_cast<size_t>(worker) + k) % lanes_.size()];
        for (;;) {
            const int64_t first = lane.next.fetch_add(batch_.piece);
            if (first >= lane.last) break;
            const int64_t last = std::min<int64_t>(first + batch_.piece, lane.last);
            batch_.run(batch_.job, static_cast<int>(first), static_cast<int>(last), worker);
        }
    }
}

void* LThreadGroup::Help(void* helper) {
    const auto [group, worker] = *static_cast<Helper*>(helper);
    Batch& batch = group->batch_;
    ++batch.inside;
    if (batch.open) group->TakePieces(worker);
    --batch.inside;
    return nullptr;
}

void LThreadGroup::WaitToFinish(int) {
    for (const auto& thread : threads_)
        if (thread) thread->WaitToFinish();
}

std::pair<int, int> LThreadGroup::Slice(int count, int workers, int k) {
    const long long per = count / workers + 1LL;
    const long long first = per * k;
    if (first >= count) return {0, 0};
    return {static_cast<int>(first), static_cast<int>(std::min<long long>(first + per, count))};
}

}  // namespace VantrelSDK
