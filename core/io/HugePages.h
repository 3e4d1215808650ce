#pragma once

#include <sys/mman.h>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace VantrelSDK {

/// Asks the system to hold a large range in pages of 2 MB where it can: fewer pages to make when
/// they are first touched, and fewer to look up when a brush goes through far places of a mesh.
/// Call it before the first touch. Small ranges are left alone.
inline void AdviseHugePages(void* data, size_t bytes) {
    constexpr uintptr_t kPage = uintptr_t{2} << 20;
    const uintptr_t begin = (reinterpret_cast<uintptr_t>(data) + kPage - 1) & ~(kPage - 1);
    const uintptr_t end = (reinterpret_cast<uintptr_t>(data) + bytes) & ~(kPage - 1);
    if (bytes >= 2 * kPage && begin < end)
        madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
}

/// vector.reserve and vector.resize of an array that may be large.
template <class T>
void ReserveLarge(std::vector<T>& array, size_t size) {
    if (size <= array.capacity()) return;
    array.reserve(size);
    AdviseHugePages(static_cast<void*>(array.data() + array.size()),
                    (array.capacity() - array.size()) * sizeof(T));
}
template <class T>
void ResizeLarge(std::vector<T>& array, size_t size) {
    ReserveLarge(array, size);
    array.resize(size);
}

}  // namespace VantrelSDK
