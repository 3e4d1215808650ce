#pragma once

#include <cstdlib>
#include <cstring>
#include <iterator>
#include <memory>
#include <new>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

#include "core/io/HugePages.h"
#include "core/io/LBlindData.h"

namespace VantrelSDK {

/// An array as it lies in a block: not aligned, borrowed from the stream.
template <class T>
class PackedArray {
    static_assert(std::is_trivially_copyable_v<T>);

  public:
    PackedArray() = default;
    PackedArray(const void* bytes, size_t count)
        : bytes_(static_cast<const uint8_t*>(bytes)), count_(count) {}

    size_t size() const { return count_; }
    const uint8_t* data() const { return bytes_; }
    T operator[](size_t i) const {
        T value;
        std::memcpy(static_cast<void*>(&value), bytes_ + i * sizeof(T), sizeof(T));
        return value;
    }
    /// They are the same as these, byte by byte.
    bool HasBytesOf(std::span<const T> values) const {
        return values.size() == count_ &&
               (count_ == 0 || std::memcmp(values.data(), bytes_, values.size_bytes()) == 0);
    }

  private:
    const uint8_t* bytes_ = nullptr;
    size_t count_ = 0;
};

/// Counts an index up and gives at(index).
template <class T, class At>
struct ValueIterator {
    using iterator_category = std::random_access_iterator_tag;
    using value_type = T;
    using difference_type = ptrdiff_t;
    using pointer = const T*;
    using reference = T;

    size_t i;
    const At* at;

    T operator*() const { return (*at)(i); }
    ValueIterator& operator++() { return ++i, *this; }
    ValueIterator operator++(int) { return {i++, at}; }
    ValueIterator& operator--() { return --i, *this; }
    ValueIterator& operator+=(ptrdiff_t n) { return i += n, *this; }
    ValueIterator operator+(ptrdiff_t n) const { return {i + n, at}; }
    ptrdiff_t operator-(const ValueIterator& o) const { return static_cast<ptrdiff_t>(i - o.i); }
    bool operator==(const ValueIterator& o) const { return i == o.i; }
};

/// Appends at(0) to at(count - 1), each written once: a large array isn't zeroed first.
template <class T, class At>
void AppendLarge(std::vector<T>& array, size_t count, const At& at) {
    using Iterator = ValueIterator<T, At>;
    ReserveLarge(array, array.size() + count);
    array.insert(array.end(), Iterator{0, &at}, Iterator{count, &at});
}

template <class T>
void AppendLarge(std::vector<T>& array, const PackedArray<T>& values) {
    AppendLarge(array, values.size(), [&](size_t i) { return values[i]; });
}

/// Writes a record: a chunk of chunks. After a failure the rest does nothing, and End returns the
/// failure's code. Lack of memory on the way is one.
class RecordWriter {
  public:
    RecordWriter(LBlindData* stream, unsigned short tag)
        : stream_(stream), code_(stream->BeginWriteChunk(tag)) {}
    RecordWriter(const RecordWriter&) = delete;
    RecordWriter& operator=(const RecordWriter&) = delete;

    /// A chunk of a single value; a bool goes as 1 or 0.
    template <class T>
    RecordWriter& Field(unsigned short tag, const T& value) {
        return Chunk(tag, [&] {
            if constexpr (std::is_same_v<T, bool>)
                return stream_->Write(value ? 1 : 0);
            else
                return stream_->Write(value);
        });
    }
    RecordWriter& Text(unsigned short tag, const std::string& text) {
        return Chunk(tag, [&] { return stream_->Write(text.c_str()); });
    }
    /// A chunk of a block, none when there is nothing.
    template <class T>
    RecordWriter& Array(unsigned short tag, std::span<const T> values) {
        if (values.empty()) return *this;
        return Chunk(tag, [&] {
            void* to = nullptr;
            const int code = stream_->WriteSpace(values.size_bytes(), to);
            if (code == 0) std::memcpy(to, values.data(), values.size_bytes());
            return code;
        });
    }
    template <class T>
    RecordWriter& Array(unsigned short tag, const std::vector<T>& values) {
        return Array(tag, std::span<const T>(values));
    }
    /// The same, of at(0) to at(count - 1).
    template <class T, class At>
    RecordWriter& Values(unsigned short tag, size_t count, const At& at) {
        if (count == 0) return *this;
        return Chunk(tag, [&] {
            void* to = nullptr;
            const int code = stream_->WriteSpace(count * sizeof(T), to);
            auto* bytes = static_cast<uint8_t*>(to);
            for (size_t i = 0; code == 0 && i < count; ++i) {
                const T value = at(i);
                std::memcpy(bytes + i * sizeof(T), static_cast<const void*>(&value), sizeof(T));
            }
            return code;
        });
    }
    /// A chunk that holds the record of an object.
    template <class T>
    RecordWriter& Record(unsigned short tag, const T& object) {
        return Chunk(tag, [&] { return object.WriteTo(stream_); });
    }
    /// A chunk of what write() writes, a function that returns a code.
    template <class Write>
    RecordWriter& Chunk(unsigned short tag, const Write& write) {
        if (code_ == 0) code_ = stream_->BeginWriteChunk(tag);
        if (code_ == 0) code_ = Try(write);
        if (code_ == 0) code_ = stream_->EndWriteChunk();
        return *this;
    }
    int End() { return code_ == 0 ? stream_->EndWriteChunk() : code_; }

  private:
    template <class Write>
    static int Try(const Write& write) try {
        return write();
    } catch (const std::bad_alloc&) {
        return LBlindData::kNoMemory;
    }

    LBlindData* stream_;
    int code_;
};

/// Reads a record, whose own chunk begins at the position: field(tag) reads what a chunk of it
/// holds and returns a code. A tag that it doesn't know reads nothing, so that a chunk with content
/// ends the reading.
template <class Field>
int ReadRecord(LBlindData* stream, unsigned short record, const Field& field) try {
    const unsigned short depth = stream->GetDepth();
    if (stream->IsEndOfChunk()) return LBlindData::kWrongMark;
    do {
        int code = 0;
        if (!stream->IsEndOfChunk()) {
            unsigned short tag = 0;
            if ((code = stream->BeginReadChunk(tag)) != 0) return code;
            if (tag == record) continue;
            if ((code = field(tag)) != 0) return code;
        }
        if ((code = stream->EndReadChunk()) != 0) return code;
    } while (stream->GetDepth() != depth);
    return 0;
} catch (const std::bad_alloc&) {
    return LBlindData::kNoMemory;
}

inline int ReadBool(LBlindData* stream, bool& value) {
    int number = 0;
    const int code = stream->Read(number);
    if (code == 0) value = number != 0;
    return code;
}

/// A text up to its first NUL.
inline int ReadText(LBlindData* stream, std::string& text) {
    char* copy = nullptr;
    if (const int code = stream->Read(copy)) return code;
    const std::unique_ptr<char, void (*)(void*)> held(copy, std::free);
    text = copy ? copy : "";
    return 0;
}

/// A block of a whole number of elements.
template <class T>
int ReadPacked(LBlindData* stream, PackedArray<T>& values) {
    const void* block = nullptr;
    unsigned size = 0;
    if (const int code = stream->ReadSpace(block, size)) return code;
    if (size % sizeof(T) != 0) return LBlindData::kBadRecord;
    values = PackedArray<T>(block, size / sizeof(T));
    return 0;
}

template <class T>
int ReadArray(LBlindData* stream, std::vector<T>& values) {
    PackedArray<T> packed;
    if (const int code = ReadPacked(stream, packed)) return code;
    values.clear();
    AppendLarge(values, packed);
    return 0;
}

}  // namespace VantrelSDK
