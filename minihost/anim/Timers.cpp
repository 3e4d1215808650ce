#include "minihost/anim/Timers.h"

#include <algorithm>
#include <cmath>

namespace minihost {

Listeners::Id Timers::Add(double period, std::function<void(const Tick&)> callback,
                          const void* owner) {
    if (std::isnan(period)) return 0;
    Timer timer{{"Timer", std::to_string(++count_)}, std::max(period, 0.0), clock()};
    const auto call = [callback = std::move(callback)](const void* tick) {
        callback(*static_cast<const Tick*>(tick));
    };
    const Listeners::Id id = listeners_.Add(timer.topic, call, owner);
    timers_.push_back(std::move(timer));
    return id;
}

void Timers::DropLeft() {
    std::erase_if(timers_, [this](const Timer& t) { return listeners_.Count(t.topic) == 0; });
}

void Timers::Turn() {
    DropLeft();
    const double now = clock();
    std::vector<std::pair<Listeners::Topic, Tick>> due;
    for (Timer& timer : timers_) {
        if (now - timer.last < timer.period) continue;
        due.push_back({timer.topic, {now - timer.last, timer.last}});
        timer.last = now;
    }
    for (const auto& [topic, tick] : due) listeners_.Tell(topic, &tick);
}

double Timers::Wait() {
    DropLeft();
    if (timers_.empty()) return -1;
    const auto next = std::ranges::min_element(
        timers_, {}, [](const Timer& timer) { return timer.last + timer.period; });
    return std::max(next->last + next->period - clock(), 0.0);
}

}  // namespace minihost
