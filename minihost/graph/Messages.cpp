#include "minihost/graph/Messages.h"

#include <algorithm>

namespace minihost {

Listeners::Id Listeners::Add(const Topic& topic, Callback callback, const void* owner) {
    listeners_[next_] = {topic, std::move(callback), owner};
    byTopic_[topic].push_back(next_);
    return next_++;
}

bool Listeners::Remove(Id id) {
    const auto found = listeners_.find(id);
    if (found == listeners_.end()) return false;
    std::erase(byTopic_[found->second.topic], id);
    listeners_.erase(found);
    return true;
}

int Listeners::RemoveOwner(const void* owner) {
    std::vector<Id> left;
    for (const auto& [id, listener] : listeners_)
        if (listener.owner == owner) left.push_back(id);
    for (const Id id : left) Remove(id);
    return static_cast<int>(left.size());
}

void Listeners::Tell(const Topic& topic, const void* what) {
    const auto found = byTopic_.find(topic);
    if (found == byTopic_.end()) return;
    for (const Id id : std::vector(found->second))
        if (const auto listener = listeners_.find(id); listener != listeners_.end()) {
            const Callback callback = listener->second.callback;  // it may remove itself
            callback(what);
        }
}

int Listeners::Count(const Topic& topic) const {
    const auto found = byTopic_.find(topic);
    return found == byTopic_.end() ? 0 : static_cast<int>(found->second.size());
}

}  // namespace minihost
