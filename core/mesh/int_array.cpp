#include "core/mesh/int_array.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace VantrelSDK {

int_array::int_array(const int_array& o) : grow_(o.grow_) {
    if (o.size_ == 0) return;
    data_ = static_cast<int*>(std::malloc(size_t{o.capacity_} * sizeof(int)));
    if (!data_) return;
    std::memcpy(data_, o.data_, size_t{o.size_} * sizeof(int));
    size_ = o.size_;
    capacity_ = o.capacity_;
}

int_array::int_array(int_array&& o) noexcept : grow_(o.grow_) {
    Swap(o);
}

int_array& int_array::operator=(const int_array& o) {
    int_array copy(o);
    Swap(copy);
    return *this;
}

int_array& int_array::operator=(int_array&& o) noexcept {
    int_array taken(std::move(o));
    Swap(taken);
    return *this;
}

bool int_array::push_back(int value) {
    if (size_ == capacity_) {
        if (capacity_ > UINT_MAX - grow_) return false;
        const unsigned capacity = capacity_ + grow_;
        void* grown = std::realloc(data_, size_t{capacity} * sizeof(int));
        if (!grown) return false;
        data_ = static_cast<int*>(grown);
        capacity_ = capacity;
    }
    data_[size_++] = value;
    return true;
}

void int_array::clear() {
    std::free(data_);
    data_ = nullptr;
    size_ = capacity_ = 0;
}

void int_array::Swap(int_array& o) noexcept {
    std::swap(data_, o.data_);
    std::swap(size_, o.size_);
    std::swap(capacity_, o.capacity_);
    std::swap(grow_, o.grow_);
}

}  // namespace VantrelSDK
