#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "core/math/LColor.h"
#include "core/math/LPoint3.h"

namespace VantrelSDK {

/// A growable block of bytes that holds the state of a node, and the tagged stream by which it is
/// built and walked. Little-endian, without padding:
///
/// | bytes | content |
/// |---|---|
/// | 3 | the version in digits |
/// | 1 | DATA_START |
/// | any | items: chunks and values, each after a mark of one byte |
/// | 1 | DATA_END |
///
/// A chunk is CHUNK_START, a 16-bit tag, items and CHUNK_END; it has no length, so that what is not
/// known can't be passed over. Every operation returns a Code. A failed write leaves the stream as
/// it was before it, a failed read its arguments; nothing is read past the end, and nothing is
/// allocated that the block doesn't hold.
class LBlindData {
  public:
    enum Code : int {
        kDone = 0,
        kTooShort = 1,   ///< BeginRead: fewer than 4 bytes
        kNoMemory = 2,   ///< also a value of more than 2^32 - 1 bytes
        kAtEnd = 3,      ///< a chunk was asked for at the end
        kNoData = 5,     ///< BeginRead: there is none
        kWrongMark = 6,  ///< the mark is not the one that was asked for
        kNoTag = 7,      ///< BeginReadChunk: the block ends in the tag
        kCutOff = 8,     ///< a value reaches past the end of the block
        kBadRecord = 9,  ///< of the records' readers: the values contradict each other
    };

    static constexpr uint8_t DATA_START = '<', DATA_END = '>', CHUNK_START = '!', CHUNK_END = '*',
                             INTCHUNK_START = '@', FLOATCHUNK_START = '#', FLOAT3CHUNK_START = '+',
                             FLOAT4CHUNK_START = '~', VOIDCHUNK_START = '$',
                             STRINGCHUNK_START = '%';
    /// Kept free: nothing writes or reads them.
    static constexpr uint8_t DOUBLECHUNK_START = '&', LONGCHUNK_START = '^';

    static const char DATA_VERSION[4];
    /// The version that is written, as a number.
    static int GetVersion();

    LBlindData() = default;
    ~LBlindData() { Clear(); }
    LBlindData(const LBlindData&) = delete;
    LBlindData& operator=(const LBlindData&) = delete;

    // Writing: BeginWrite, values and chunks in any nesting, EndWrite.

    /// Drops what there was.
    int BeginWrite();
    int EndWrite();
    int BeginWriteChunk(unsigned short tag);
    int EndWriteChunk() { return PutMark(CHUNK_END); }
    int Write(int value) { return PutValue(INTCHUNK_START, &value, sizeof value); }
    int Write(unsigned value) { return PutValue(INTCHUNK_START, &value, sizeof value); }
    int Write(float value) { return PutValue(FLOATCHUNK_START, &value, sizeof value); }
    int Write(float x, float y, float z);
    int Write(float r, float g, float b, float a);
    int Write(const LPoint3& p) { return Write(p.x, p.y, p.z); }
    int Write(const LAColor& c) { return Write(c.r, c.g, c.b, c.a); }
    /// A block of `size` bytes; `unit`, that of an element, leaves no trace.
    int Write(const void* block, unsigned size, unsigned unit);
    /// A text, its NUL included; none for null.
    int Write(const char* text);
    /// A block for the caller to fill: `to` takes where, good until the next write.
    int WriteSpace(size_t size, void*& to);

    // Reading: BeginRead, the same values and chunks, EndRead. Any number of times.

    /// `version` has room for 4 characters.
    int BeginRead(char* version);
    int EndRead();
    int BeginReadChunk(unsigned short& tag);
    int EndReadChunk();
    int Read(int& value) { return GetValue(INTCHUNK_START, &value, sizeof value); }
    int Read(unsigned& value) { return GetValue(INTCHUNK_START, &value, sizeof value); }
    int Read(float& value) { return GetValue(FLOATCHUNK_START, &value, sizeof value); }
    int Read(float& x, float& y, float& z);
    int Read(float& r, float& g, float& b, float& a);
    int Read(LPoint3& p) { return Read(p.x, p.y, p.z); }
    int Read(LAColor& c) { return Read(c.r, c.g, c.b, c.a); }
    /// A copy from malloc, for the caller to free; null when it is empty.
    int Read(void*& block, unsigned& size, unsigned unit);
    /// The same for a text, which ends with a NUL.
    int Read(char*& text);
    /// A block where it lies in the data, not aligned.
    int ReadSpace(const void*& block, unsigned& size);

    bool IsEndOfChunk() const { return AtPos() == CHUNK_END; }
    bool IsEndOfData() const { return AtPos() == DATA_END; }
    /// The byte at the position; 0 behind the end.
    uint8_t AtPos() const { return pos_ < size_ ? data_[pos_] : 0; }
    /// Chunks that are open in reading.
    unsigned short GetDepth() const { return depth_; }
    uint64_t GetSize() const { return size_; }
    /// GetSize() bytes, from malloc; null when there are none.
    uint8_t* GetData() const { return data_; }
    /// That of the block at the last BeginRead; -1 before.
    int GetReadVersion() const { return readversion_; }

    /// A byte back or on, within the data; false when there is none.
    bool StepBackward();
    bool SetpForward();
    /// Makes the data n bytes long, for the caller to fill.
    int SetSize(unsigned n);
    void Clear();

    /// A file of one block: its size and the version of the program, 32 bits each, and the block.
    /// False, with a message, when it can't be read or written whole; the data is then as it was. A
    /// failed writing leaves the old file. Without `message` it goes to standard output.
    bool ReadFromFile(const char* path, int& version, std::string* message = nullptr);
    bool WriteToFile(const char* path, int version, std::string* message = nullptr) const;

  private:
    static constexpr uint64_t kGrowth = 16000000;

    int checkAlloc(uint64_t needed);
    int PutMark(uint8_t mark);
    int PutValue(uint8_t mark, const void* value, unsigned size);
    int PutBlock(uint8_t mark, const void* block, size_t size);
    int StartBlock(uint8_t mark, size_t size);
    int GetValue(uint8_t mark, void* value, unsigned size);
    int GetBlock(uint8_t mark, const uint8_t*& block, unsigned& size);
    int CopyBlock(uint8_t mark, void*& block, unsigned& size);

    uint8_t* data_ = nullptr;
    uint64_t size_ = 0, pos_ = 0, alloc_ = 0;
    int readversion_ = -1;
    unsigned short depth_ = 0;
};

}  // namespace VantrelSDK
