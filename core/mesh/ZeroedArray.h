#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <type_traits>

namespace VantrelSDK {

/// An array of trivially copyable elements whose bytes start as zero.
///
/// The memory comes from calloc, so that a large array costs only the pages that are written: a
/// buffer of mesh size may be made inside a stroke, and what the stroke never touches is never paid.
template <class T>
class ZeroedArray {
    static_assert(std::is_trivially_copyable_v<T>);

  public:
    ZeroedArray() = default;
    explicit ZeroedArray(size_t size) { Reset(size); }

    /// Drops the content; afterwards `size` zeroed elements, or none (and false) without memory.
    bool Reset(size_t size) {
        data_.reset(size ? static_cast<T*>(std::calloc(size, sizeof(T))) : nullptr);
        size_ = data_ ? size : 0;
        return size_ == size;
    }

    size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    T* data() { return data_.get(); }
    const T* data() const { return data_.get(); }
    T& operator[](size_t i) { return data_.get()[i]; }
    const T& operator[](size_t i) const { return data_.get()[i]; }
    T* begin() { return data(); }
    T* end() { return data() + size_; }
    const T* begin() const { return data(); }
    const T* end() const { return data() + size_; }

  private:
    struct Freer {
        void operator()(T* p) const { std::free(p); }
    };
    std::unique_ptr<T, Freer> data_;
    size_t size_ = 0;
};

}  // namespace VantrelSDK
