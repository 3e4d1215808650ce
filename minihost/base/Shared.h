#pragma once

#include <memory>
#include <utility>

namespace minihost {

/// A value that copies share until one of them is edited. For the main thread.
template <class T>
class Shared {
  public:
    Shared() : value_(std::make_shared<T>()) {}
    explicit Shared(T value) : value_(std::make_shared<T>(std::move(value))) {}

    const T& operator*() const { return *value_; }
    const T* operator->() const { return value_.get(); }
    /// The value to be changed, no longer shared with any other.
    T& Edit() {
        if (value_.use_count() > 1) value_ = std::make_shared<T>(*value_);
        return *value_;
    }
    /// Another value; what it was before is not copied.
    void Set(T value) { value_ = std::make_shared<T>(std::move(value)); }
    bool IsSame(const Shared& other) const { return value_ == other.value_; }
    bool operator==(const Shared& other) const {
        return value_ == other.value_ || *value_ == *other.value_;
    }

  private:
    std::shared_ptr<T> value_;
};

}  // namespace minihost
