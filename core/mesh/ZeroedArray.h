#pragma once

#include <sys/mman.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <type_traits>
#include <utility>

#include "core/io/HugePages.h"

namespace VantrelSDK {

/// An array of trivially copyable elements whose bytes start as zero.
///
/// A large array comes straight from the system as pages that are zeroed when they are first
/// touched, so that it costs only what is written: a buffer of mesh size may be made inside a
/// stroke, and what the stroke never touches is never paid.
template <class T>
class ZeroedArray {
    static_assert(std::is_trivially_copyable_v<T>);

  public:
    ZeroedArray() = default;
    explicit ZeroedArray(size_t size) { Reset(size); }
    ZeroedArray(ZeroedArray&& other) noexcept { swap(other); }
    ZeroedArray& operator=(ZeroedArray&& other) noexcept {
        ZeroedArray(std::move(other)).swap(*this);
        return *this;
    }
    ~ZeroedArray() { Release(); }

    /// Drops the content; afterwards `size` zeroed elements, or none (and false) without memory.
    bool Reset(size_t size) {
        Release();
        if (size == 0 || size > SIZE_MAX / sizeof(T)) return size == 0;
        void* data = IsMapped(size) ? mmap(nullptr, size * sizeof(T), PROT_READ | PROT_WRITE,
                                           MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)
                                    : std::calloc(size, sizeof(T));
        if (!data || data == MAP_FAILED) return false;
        data_ = static_cast<T*>(data);
        size_ = size;
        return true;
    }

    /// Pays for all pages now, where a pause is welcome, so that nobody does it later.
    void Populate() {
        if (!data_) return;
        AdviseHugePages(data_, size_ * sizeof(T));
        std::memset(static_cast<void*>(data_), 0, size_ * sizeof(T));
    }

    size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }
    T* data() { return data_; }
    const T* data() const { return data_; }
    T& operator[](size_t i) { return data_[i]; }
    const T& operator[](size_t i) const { return data_[i]; }
    T* begin() { return data_; }
    T* end() { return data_ + size_; }
    const T* begin() const { return data_; }
    const T* end() const { return data_ + size_; }
    void swap(ZeroedArray& other) noexcept {
        std::swap(data_, other.data_);
        std::swap(size_, other.size_);
    }

  private:
    /// calloc would zero, page by page, memory that the process has held before.
    static bool IsMapped(size_t size) { return size * sizeof(T) >= size_t{1} << 18; }

    void Release() {
        if (data_ && IsMapped(size_))
            munmap(data_, size_ * sizeof(T));
        else
            std::free(data_);
        data_ = nullptr;
        size_ = 0;
    }

    T* data_ = nullptr;
    size_t size_ = 0;
};

}  // namespace VantrelSDK
