#pragma once

#include <cstddef>
#include <vector>

#include "maya/MStatus.h"

/// What all the host's arrays have in common: a run of values that owns them. Indices are not
/// checked by operator[]; insert and remove refuse an index out of range.
template <class T>
class MArrayOf {
  public:
    using Element = T;

    MArrayOf() = default;
    explicit MArrayOf(unsigned length, const T& value = T()) : items_(length, value) {}
    MArrayOf(const T* items, unsigned length) : items_(items, items + length) {}

    unsigned length() const { return static_cast<unsigned>(items_.size()); }
    MStatus setLength(unsigned length) {
        items_.resize(length);
        return MS::kSuccess;
    }
    void setSizeIncrement(unsigned) {}

    decltype(auto) operator[](unsigned i) { return items_[i]; }
    decltype(auto) operator[](unsigned i) const { return items_[i]; }
    MStatus set(const T& value, unsigned i) {
        if (i >= items_.size()) return MS::kInvalidParameter;
        items_[i] = value;
        return MS::kSuccess;
    }
    MStatus append(const T& value) {
        items_.push_back(value);
        return MS::kSuccess;
    }
    MStatus insert(const T& value, unsigned i) {
        if (i > items_.size()) return MS::kInvalidParameter;
        items_.insert(items_.begin() + i, value);
        return MS::kSuccess;
    }
    MStatus remove(unsigned i) {
        if (i >= items_.size()) return MS::kInvalidParameter;
        items_.erase(items_.begin() + i);
        return MS::kSuccess;
    }
    MStatus clear() {
        items_.clear();
        return MS::kSuccess;
    }
    MStatus copy(const MArrayOf& other) {
        items_ = other.items_;
        return MS::kSuccess;
    }

    auto begin() { return items_.begin(); }
    auto end() { return items_.end(); }
    auto begin() const { return items_.begin(); }
    auto end() const { return items_.end(); }
    /// The values in one run, for reading and writing in bulk.
    T* data() { return items_.data(); }
    const T* data() const { return items_.data(); }

    bool operator==(const MArrayOf& other) const { return items_ == other.items_; }

  private:
    std::vector<T> items_;
};
