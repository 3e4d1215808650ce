#pragma once

#include <chrono>
#include <functional>
#include <vector>

#include "minihost/graph/Messages.h"

namespace minihost {

/// Callbacks at equal intervals, called by the event loop. They are listeners like others, and
/// leave as those do.
class Timers {
  public:
    /// What a callback gets: seconds since its timer's last call, or since it began, and the
    /// clock's time of that call.
    struct Tick {
        double elapsed, last;
    };

    explicit Timers(Listeners& listeners) : listeners_(listeners) {}

    /// The callback is called when `period` seconds have passed since its last call; a period of 0
    /// or less: at every turn. 0 for a period that is no number.
    Listeners::Id Add(double period, std::function<void(const Tick&)> callback,
                      const void* owner = nullptr);
    /// Calls those that are due, in the order in which they came, each once. A timer that comes
    /// meanwhile is not called.
    void Turn();
    /// Seconds until the next is due, below 0 for none.
    double Wait();

    /// Seconds since any moment; another one may be put here to run faster than time.
    std::function<double()> clock = [] {
        return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
            .count();
    };

  private:
    struct Timer {
        Listeners::Topic topic;
        double period, last;
    };

    void DropLeft();

    Listeners& listeners_;
    std::vector<Timer> timers_;
    std::uint64_t count_ = 0;
};

}  // namespace minihost
