#include "core/io/LBlindData.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace VantrelSDK {

static_assert(std::endian::native == std::endian::little, "values go out as they lie in memory");

const char LBlindData::DATA_VERSION[4] = "007";

int LBlindData::GetVersion() {
    return std::atoi(DATA_VERSION);
}

void LBlindData::Clear() {
    std::free(data_);
    data_ = nullptr;
    size_ = pos_ = alloc_ = 0;
    depth_ = 0;
}

int LBlindData::BeginWrite() {
    Clear();
    if (const int code = checkAlloc(4)) return code;
    std::memcpy(data_, DATA_VERSION, 3);
    data_[3] = DATA_START;
    size_ = 4;
    return kDone;
}

int LBlindData::EndWrite() {
    return PutMark(DATA_END);
}

/// Room for `needed` bytes and one more. Growing by a fixed step costs little here: the pages of a
/// large range are moved, not copied. They must all be of one kind for that, so that none of them
/// is asked to be huge.
int LBlindData::checkAlloc(uint64_t needed) {
    if (alloc_ > needed) return kDone;
    const uint64_t grown = alloc_ + kGrowth > needed ? alloc_ + kGrowth : needed + kGrowth;
    void* data = std::realloc(data_, grown);
    if (!data) return kNoMemory;
    data_ = static_cast<uint8_t*>(data);
    alloc_ = grown;
    return kDone;
}

int LBlindData::PutMark(uint8_t mark) {
    if (const int code = checkAlloc(size_ + 1)) return code;
    data_[size_++] = mark;
    return kDone;
}

int LBlindData::PutValue(uint8_t mark, const void* value, unsigned size) {
    if (const int code = checkAlloc(size_ + 1 + size)) return code;
    data_[size_] = mark;
    std::memcpy(data_ + size_ + 1, value, size);
    size_ += 1 + size;
    return kDone;
}

int LBlindData::BeginWriteChunk(unsigned short tag) {
    return PutValue(CHUNK_START, &tag, sizeof tag);
}

int LBlindData::Write(float x, float y, float z) {
    const float values[] = {x, y, z};
    return PutValue(FLOAT3CHUNK_START, values, sizeof values);
}

int LBlindData::Write(float r, float g, float b, float a) {
    const float values[] = {r, g, b, a};
    return PutValue(FLOAT4CHUNK_START, values, sizeof values);
}

/// The mark and the size of a block, with room for its bytes, which count already.
int LBlindData::StartBlock(uint8_t mark, size_t size) {
    if (size > UINT32_MAX) return kNoMemory;
    if (const int code = checkAlloc(size_ + 5 + size)) return code;
    const auto count = static_cast<uint32_t>(size);
    data_[size_] = mark;
    std::memcpy(data_ + size_ + 1, &count, sizeof count);
    size_ += 5 + size;
    return kDone;
}

int LBlindData::PutBlock(uint8_t mark, const void* block, size_t size) {
    const int code = StartBlock(mark, size);
    if (code == kDone && size > 0) std::memcpy(data_ + size_ - size, block, size);
    return code;
}

int LBlindData::Write(const void* block, unsigned size, unsigned) {
    return PutBlock(VOIDCHUNK_START, block, size);
}

int LBlindData::Write(const char* text) {
    return text ? PutBlock(STRINGCHUNK_START, text, std::strlen(text) + 1) : int{kDone};
}

int LBlindData::WriteSpace(size_t size, void*& to) {
    const int code = StartBlock(VOIDCHUNK_START, size);
    if (code == kDone) to = data_ + size_ - size;
    return code;
}

int LBlindData::BeginRead(char* version) {
    pos_ = 0;
    depth_ = 0;
    if (!data_) return kNoData;
    if (size_ < 4) return kTooShort;
    std::memcpy(version, data_, 3);
    version[3] = 0;
    pos_ = 4;
    readversion_ = std::atoi(version);
    return kDone;
}

int LBlindData::EndRead() {
    if (!IsEndOfData()) return kWrongMark;
    pos_ = 0;
    depth_ = 0;
    return kDone;
}

int LBlindData::BeginReadChunk(unsigned short& tag) {
    if (pos_ >= size_) return kAtEnd;
    if (AtPos() != CHUNK_START) return kWrongMark;
    if (pos_ + 3 >= size_) return kNoTag;
    std::memcpy(&tag, data_ + pos_ + 1, sizeof tag);
    pos_ += 3;
    ++depth_;
    return kDone;
}

int LBlindData::EndReadChunk() {
    if (pos_ >= size_) return kAtEnd;
    if (AtPos() != CHUNK_END) return kWrongMark;
    ++pos_;
    --depth_;
    return kDone;
}

int LBlindData::GetValue(uint8_t mark, void* value, unsigned size) {
    if (pos_ + size >= size_) return kCutOff;
    if (AtPos() != mark) return kWrongMark;
    std::memcpy(value, data_ + pos_ + 1, size);
    pos_ += 1 + size;
    return kDone;
}

int LBlindData::Read(float& x, float& y, float& z) {
    float values[3];
    const int code = GetValue(FLOAT3CHUNK_START, values, sizeof values);
    if (code == kDone) x = values[0], y = values[1], z = values[2];
    return code;
}

int LBlindData::Read(float& r, float& g, float& b, float& a) {
    float values[4];
    const int code = GetValue(FLOAT4CHUNK_START, values, sizeof values);
    if (code == kDone) r = values[0], g = values[1], b = values[2], a = values[3];
    return code;
}

int LBlindData::GetBlock(uint8_t mark, const uint8_t*& block, unsigned& size) {
    if (pos_ + 5 >= size_) return kCutOff;
    if (AtPos() != mark) return kWrongMark;
    uint32_t count;
    std::memcpy(&count, data_ + pos_ + 1, sizeof count);
    // At least a chunk end follows the bytes, and the end of the data after it.
    if (pos_ + 5 + count > size_) return kCutOff;
    block = data_ + pos_ + 5;
    size = count;
    pos_ += 5 + uint64_t{count};
    return kDone;
}

int LBlindData::CopyBlock(uint8_t mark, void*& block, unsigned& size) {
    const uint64_t start = pos_;
    const uint8_t* bytes = nullptr;
    unsigned count = 0;
    if (const int code = GetBlock(mark, bytes, count)) return code;
    // A text that doesn't end would be read on behind its end.
    const bool text = mark == STRINGCHUNK_START;
    int code = text && count > 0 && bytes[count - 1] != 0 ? kCutOff : kDone;
    void* copy = nullptr;
    if (code == kDone && count > 0 && !(copy = std::malloc(count))) code = kNoMemory;
    if (code != kDone) {
        pos_ = start;
        return code;
    }
    if (count > 0) std::memcpy(copy, bytes, count);
    block = copy;
    size = count;
    return kDone;
}

int LBlindData::Read(void*& block, unsigned& size, unsigned) {
    return CopyBlock(VOIDCHUNK_START, block, size);
}

int LBlindData::Read(char*& text) {
    void* copy = nullptr;
    unsigned size = 0;
    const int code = CopyBlock(STRINGCHUNK_START, copy, size);
    if (code == kDone) text = static_cast<char*>(copy);
    return code;
}

int LBlindData::ReadSpace(const void*& block, unsigned& size) {
    const uint8_t* bytes = nullptr;
    const int code = GetBlock(VOIDCHUNK_START, bytes, size);
    if (code == kDone) block = bytes;
    return code;
}

bool LBlindData::StepBackward() {
    if (pos_ == 0) return false;
    --pos_;
    return true;
}

bool LBlindData::SetpForward() {
    if (pos_ + 1 >= size_) return false;
    ++pos_;
    return true;
}

int LBlindData::SetSize(unsigned n) {
    if (n == 0) {
        Clear();
        return kDone;
    }
    void* data = std::realloc(data_, n);
    if (!data) return kNoMemory;
    data_ = static_cast<uint8_t*>(data);
    size_ = n;
    // A write after this must not count on what the buffer once held.
    alloc_ = std::min<uint64_t>(alloc_, n);
    return kDone;
}

}  // namespace VantrelSDK
