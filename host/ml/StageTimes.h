#pragma once

#include <chrono>

namespace VantrelSDK {

/// What the events of a pointer take, by stage, in seconds, added up until somebody asks. Kept for
/// all nodes together, on the main thread.
struct StageTimes {
    /// Rays into the surface; steps of strokes without the last stage; evaluation of what they
    /// moved.
    double hit = 0, step = 0, recalculation = 0;
    int hits = 0, steps = 0;

    static StageTimes& All() {
        static StageTimes all;
        return all;
    }
};

/// Adds the life of this to a stage.
class StageTimer {
  public:
    explicit StageTimer(double& stage) : stage_(stage) {}
    ~StageTimer() {
        stage_ += std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
    }
    StageTimer(const StageTimer&) = delete;
    StageTimer& operator=(const StageTimer&) = delete;

  private:
    double& stage_;
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

}  // namespace VantrelSDK
