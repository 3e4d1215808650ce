#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>

#include "core/io/BlindRecord.h"
#include "core/mesh/LAdjFaceList.h"
#include "core/mesh/LAdjQuadList.h"
#include "core/mesh/LEdgeListFlagged.h"
#include "core/mesh/LMeshTopology.h"
#include "core/mesh/int_array.h"

namespace VantrelSDK {

namespace {

/// Room in a row of a face list grows by so many.
constexpr unsigned kRowStep = 6;

/// Rows that are read one after the other.
class RowsReader {
  public:
    RowsReader() : start_(1) {}

    /// False for an entry that isn't from 0 to `limit` - 1.
    bool Add(const PackedArray<int>& entries, size_t count, unsigned limit) {
        for (size_t i = 0; i < count; ++i) {
            const int entry = entries[i];
            if (entry < 0 || static_cast<unsigned>(entry) >= limit) return false;
            entries_.push_back(entry);
        }
        start_.push_back(static_cast<uint32_t>(entries_.size()));
        return true;
    }
    size_t NumRows() const { return start_.size() - 1; }
    LIndexRows Take() {
        LIndexRows rows;
        rows.Adopt(std::move(start_), std::move(entries_));
        return rows;
    }

  private:
    std::vector<uint32_t> start_;
    std::vector<int> entries_;
};

/// What the record of an int_array says.
struct IntArrayRecord {
    unsigned size = 0, capacity = 0, step = 0;
    PackedArray<int> entries;

    int ReadFrom(LBlindData* stream) {
        const int code = ReadRecord(stream, 2096, [&](unsigned short tag) {
            if (tag == 2098) return stream->Read(size);
            if (tag == 2099) return stream->Read(capacity);
            if (tag == 2100) return stream->Read(step);
            if (tag == 2097) return ReadPacked(stream, entries);
            return 0;
        });
        if (code != 0) return code;
        const bool fits = size <= capacity && entries.size() == capacity;
        return fits ? 0 : int{LBlindData::kBadRecord};
    }
};

/// The record of an int_array of these entries; what is spare goes out as zero.
int WriteIntArray(LBlindData* stream, std::span<const int> entries, unsigned capacity,
                  unsigned step) {
    return RecordWriter(stream, 2096)
        .Field(2098, static_cast<unsigned>(entries.size()))
        .Field(2099, capacity)
        .Field(2100, step)
        .Values<int>(2097, capacity, [&](size_t i) { return i < entries.size() ? entries[i] : 0; })
        .End();
}

}  // namespace

int int_array::WriteTo(LBlindData* stream) const {
    return WriteIntArray(stream, {data_, size_}, capacity_, grow_);
}

int int_array::ReadFrom(LBlindData* stream) {
    clear();
    IntArrayRecord record;
    if (const int code = record.ReadFrom(stream)) return code;
    grow_ = record.step ? record.step : 4000;
    if (record.capacity == 0) return 0;
    data_ = static_cast<int*>(std::malloc(size_t{record.capacity} * sizeof(int)));
    if (!data_) return LBlindData::kNoMemory;
    size_ = record.size;
    capacity_ = record.capacity;
    for (unsigned i = 0; i < capacity_; ++i) data_[i] = record.entries[i];
    return 0;
}

int LAdjFaceList::WriteTo(LBlindData* stream) const {
    RecordWriter record(stream, 2112);
    record.Field(2113, static_cast<unsigned>(nverts())).Field(2114, static_cast<unsigned>(nfaces_));
    for (int v = 0; v < nverts(); ++v)
        record.Chunk(2115, [&] {
            const std::span<const int> row = rows_.Row(v);
            const auto steps = static_cast<unsigned>((row.size() + kRowStep - 1) / kRowStep);
            return WriteIntArray(stream, row, steps * kRowStep, kRowStep);
        });
    return record.End();
}

int LAdjFaceList::ReadFrom(LBlindData* stream) {
    rows_ = {};
    nfaces_ = 0;
    unsigned nverts = 0, nfaces = 0;
    RowsReader rows;
    const int code = ReadRecord(stream, 2112, [&](unsigned short tag) -> int {
        if (tag == 2113) return stream->Read(nverts);
        if (tag == 2114) return stream->Read(nfaces);
        if (tag != 2115) return 0;
        IntArrayRecord row;
        if (const int failed = row.ReadFrom(stream)) return failed;
        return rows.Add(row.entries, row.size, nfaces) ? 0 : int{LBlindData::kBadRecord};
    });
    if (code != 0) return code;
    if (rows.NumRows() != nverts || nfaces > INT_MAX) return LBlindData::kBadRecord;
    rows_ = rows.Take();
    nfaces_ = static_cast<int>(nfaces);
    return 0;
}

LAdjQuadList::LAdjQuadList(const LMeshTopology& splitQuads) {
    const std::vector<LFace>& faces = splitQuads.Faces();
    const int nquads = splitQuads.GetNumFaces() / 2;
    const bool built = rows_.Build(splitQuads.GetNumVerts(), [&](auto&& emit) {
        for (int q = 0; q < nquads; ++q) {
            const int *a = faces[2 * q].v, *b = faces[2 * q + 1].v;
            const int corners[] = {a[0], a[1], a[2], b[1]};
            for (int k = 0; k < 4; ++k)
                if (std::find(corners, corners + k, corners[k]) == corners + k) emit(corners[k], q);
        }
    });
    if (built) nquads_ = nquads;
}

int LAdjQuadList::WriteTo(LBlindData* stream) const {
    RecordWriter record(stream, 1844);
    record.Field(1845, static_cast<unsigned>(nquads_)).Field(1846, static_cast<unsigned>(nverts()));
    for (int v = 0; v < nverts(); ++v)
        record.Chunk(1847, [&] {
            const std::span<const int> row = rows_.Row(v);
            const int code = stream->Write(row.empty() ? 0 : 1);
            if (code != 0 || row.empty()) return code;
            return stream->Write(row.data(), static_cast<unsigned>(row.size_bytes()), 4);
        });
    return record.End();
}

int LAdjQuadList::ReadFrom(LBlindData* stream) {
    rows_ = {};
    nquads_ = 0;
    unsigned nquads = 0, nverts = 0;
    RowsReader rows;
    const int code = ReadRecord(stream, 1844, [&](unsigned short tag) -> int {
        if (tag == 1845) return stream->Read(nquads);
        if (tag == 1846) return stream->Read(nverts);
        if (tag != 1847) return 0;
        bool any = false;
        PackedArray<int> row;
        int failed = ReadBool(stream, any);
        if (failed == 0 && any) failed = ReadPacked(stream, row);
        if (failed != 0) return failed;
        return rows.Add(row, row.size(), nquads) ? 0 : int{LBlindData::kBadRecord};
    });
    if (code != 0) return code;
    if (rows.NumRows() != nverts || nquads > INT_MAX) return LBlindData::kBadRecord;
    rows_ = rows.Take();
    nquads_ = static_cast<int>(nquads);
    return 0;
}

int LEdgeListFlagged::WriteTo(LBlindData* stream) const {
    return RecordWriter(stream, 1830).Array(1831, edges_).Array(1832, faces_).End();
}

int LEdgeListFlagged::ReadFrom(LBlindData* stream) {
    edges_ = {};
    faces_ = {};
    std::vector<Edge> edges;
    std::vector<Face> faces;
    const int code = ReadRecord(stream, 1830, [&](unsigned short tag) {
        if (tag == 1831) return ReadArray(stream, edges);
        if (tag == 1832) return ReadArray(stream, faces);
        return 0;
    });
    if (code != 0) return code;
    const auto none = [](int i) { return i < -1; };
    for (const Edge& edge : edges)
        if (none(edge.v[0]) || none(edge.v[1]) || none(edge.faces[0]) || none(edge.faces[1]))
            return LBlindData::kBadRecord;
    const int count = static_cast<int>(edges.size());
    for (const Face& face : faces)
        for (const int e : face)
            if (none(e) || e >= count) return LBlindData::kBadRecord;
    edges_ = std::move(edges);
    faces_ = std::move(faces);
    return 0;
}

}  // namespace VantrelSDK
