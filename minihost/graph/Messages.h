#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace minihost {

/// Who wants to hear of what. Listeners are told in the order in which they came; one that goes, or
/// comes, while others are being told is neither told nor a danger.
class Listeners {
  public:
    using Id = std::uint64_t;
    /// A topic: a kind, and what of it ("SelectionChanged", a node type, a number).
    using Topic = std::pair<std::string, std::string>;
    using Callback = std::function<void(const void* what)>;

    /// The number by which to leave; never 0. `owner`: whose code it calls, see RemoveOwner.
    Id Add(const Topic& topic, Callback callback, const void* owner = nullptr);
    bool Remove(Id id);
    /// Removes all that a module left behind when it is unloaded; how many there were.
    int RemoveOwner(const void* owner);
    /// Tells the listeners of a topic. `what` is the topic's own, valid during the call.
    void Tell(const Topic& topic, const void* what = nullptr);
    int Count(const Topic& topic) const;

  private:
    struct Listener {
        Topic topic;
        Callback callback;
        const void* owner;
    };

    std::map<Id, Listener> listeners_;
    std::map<Topic, std::vector<Id>> byTopic_;
    Id next_ = 1;
};

}  // namespace minihost
