#pragma once

#include <cstdint>
#include <new>
#include <span>
#include <vector>

#include "core/io/HugePages.h"

namespace VantrelSDK {

/// Rows of ints of differing lengths in one block: an offset per row and the entries one after
/// another. One pass counts and one fills, so that the memory is that of the entries to the last
/// byte and no row is an allocation of its own. Immutable once built: any number of threads may
/// read.
class LIndexRows {
  public:
    /// Builds `nrows` rows. `visit` is called twice with a function (int row, int value) and must
    /// call it with the same pairs both times, with rows from 0 to nrows - 1; a row keeps its
    /// values in the order of the calls. False, with no rows, without memory or with 2^32 values or
    /// more.
    template <class Visit>
    bool Build(int nrows, Visit&& visit);

    /// Takes rows that were made elsewhere: number of rows + 1 offsets into the entries.
    void Adopt(std::vector<uint32_t> start, std::vector<int> entries) {
        start_ = std::move(start);
        entries_ = std::move(entries);
    }

    int NumRows() const { return start_.empty() ? 0 : static_cast<int>(start_.size()) - 1; }
    /// The entries of a row; none for a row out of range.
    std::span<const int> Row(int row) const {
        if (static_cast<unsigned>(row) >= static_cast<unsigned>(NumRows())) return {};
        return {entries_.data() + start_[row], entries_.data() + start_[row + 1]};
    }
    /// For loops over many rows: row r has the entries Starts()[r] to Starts()[r + 1] - 1 of
    /// Entries().
    const uint32_t* Starts() const { return start_.data(); }
    const int* Entries() const { return entries_.data(); }
    /// The bytes that the rows take.
    size_t MemoryUsed() const {
        return start_.capacity() * sizeof(uint32_t) + entries_.capacity() * sizeof(int);
    }

  private:
    /// Number of rows + 1 offsets into the entries, or nothing.
    std::vector<uint32_t> start_;
    std::vector<int> entries_;
};

template <class Visit>
bool LIndexRows::Build(int nrows, Visit&& visit) try {
    *this = {};
    if (nrows <= 0) return true;
    std::vector<uint32_t> start;
    ResizeLarge(start, static_cast<size_t>(nrows) + 1);
    uint64_t total = 0;
    visit([&](int row, int) { ++start[row + 1], ++total; });
    if (total > UINT32_MAX) return false;
    for (int row = 0; row < nrows; ++row) start[row + 1] += start[row];

    // While it is being filled, start[row] is where the row's next value goes; in the end that is
    // where the next row starts, and everything moves up by one.
    std::vector<int> entries;
    ResizeLarge(entries, total);
    visit([&](int row, int value) { entries[start[row]++] = value; });
    for (int row = nrows; row > 0; --row) start[row] = start[row - 1];
    start[0] = 0;
    start_ = std::move(start);
    entries_ = std::move(entries);
    return true;
} catch (const std::bad_alloc&) {
    return false;
}

}  // namespace VantrelSDK
