#include <fmt/core.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "core/io/AtomicFile.h"
#include "core/io/HugePages.h"
#include "core/io/InputFile.h"
#include "core/io/LBlindData.h"

namespace VantrelSDK {

namespace {

/// Long blocks go out in parts of so many bytes.
constexpr size_t kPart = 100000000;

bool Fail(const std::string& text, std::string* message) {
    if (message) {
        *message = text;
    } else {
        std::printf("%s", text.c_str());
        std::fflush(stdout);
    }
    return false;
}

/// Reads on to the end of the file or of `size` bytes. False when the file fails.
bool ReadUpTo(InputFile& file, char* to, size_t size, size_t& read) {
    std::string ignored;
    read = 0;
    for (size_t got = 1; read < size && got > 0; read += got)
        if (!file.Read(to + read, size - read, got, ignored)) return false;
    return true;
}

bool ReadField(InputFile& file, void* value) {
    size_t read = 0;
    return ReadUpTo(file, static_cast<char*>(value), 4, read) && read == 4;
}

/// Reads what is left of the file, which should be `stated` bytes, into memory that never exceeds
/// twice what came. Null when it is not so many; `found` then tells how many there are, or one more
/// than stated.
uint8_t* ReadRest(InputFile& file, size_t stated, size_t& found) {
    char* data = nullptr;
    found = 0;
    for (size_t room = 0; found == room && found <= stated;) {
        // Where the size is known the whole is taken at once, and read without another copy.
        const bool known = found == 0 && file.Size() > 0;
        room = std::min(stated, known ? file.Size() : 2 * found + 4096) + 1;
        void* grown = std::realloc(data, room);
        if (!grown) break;
        data = static_cast<char*>(grown);
        AdviseHugePages(data + found, room - found);
        size_t read = 0;
        const bool done = ReadUpTo(file, data + found, room - found, read);
        found += read;
        if (!done || room > stated) break;
    }
    if (found == stated) return reinterpret_cast<uint8_t*>(data);
    std::free(data);
    return nullptr;
}

}  // namespace

bool LBlindData::ReadFromFile(const char* path, int& version, std::string* message) {
    if (!path) return false;
    InputFile file;
    std::string why;
    if (!file.Open(path, why))
        return Fail(fmt::format("Vantrel: can not open file {} for reading.\n", path), message);
    uint32_t stated = 0;
    int32_t stored = 0;
    if (!ReadField(file, &stated))
        return Fail(fmt::format("Vantrel: can not start reading file {} .\n", path), message);
    if (stated == 0)
        return Fail(fmt::format("Vantrel: file {} does not contain data.\n", path), message);
    if (!ReadField(file, &stored))
        return Fail(fmt::format("Vantrel: can not start reading file (2) {} .\n", path), message);
    size_t found = 0;
    uint8_t* data = ReadRest(file, stated, found);
    if (!data)
        return Fail(
            fmt::format("Vantrel: file size does {} does not match expected {}.\n", found, stated),
            message);
    Clear();
    data_ = data;
    size_ = stated;
    version = stored;
    return true;
}

bool LBlindData::WriteToFile(const char* path, int version, std::string* message) const {
    if (!path || !data_ || size_ == 0) return false;
    AtomicFile file;
    std::string why;
    if (!file.Open(path, why))
        return Fail(fmt::format("Vantrel: can not open file {} for writing.\n", path), message);
    const auto write = [&](const void* bytes, size_t size) {
        return file.Write({static_cast<const char*>(bytes), size}, why);
    };
    const auto stated = static_cast<uint32_t>(size_);
    if (stated != size_ || !write(&stated, sizeof stated))
        return Fail(fmt::format("Vantrel: can not start writing file {} .\n", path), message);
    if (!write(&version, sizeof version))
        return Fail(fmt::format("Vantrel: can not start writing file (2) {} .\n", path), message);
    for (size_t done = 0; done < size_; done += kPart) {
        const size_t part = std::min(kPart, size_ - done);
        if (write(data_ + done, part)) continue;
        if (size_ < kPart)
            return Fail(fmt::format("Vantrel: error writing {} bytes .\n", size_), message);
        return Fail(
            fmt::format("Vantrel: error writing ching {} bytes .\n", part == kPart ? size_ : part),
            message);
    }
    return file.Commit(why) ||
           Fail(fmt::format("Vantrel: error writing {} bytes .\n", size_), message);
}

}  // namespace VantrelSDK
