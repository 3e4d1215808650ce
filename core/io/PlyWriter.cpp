#include <fmt/format.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <functional>
#include <new>

#include "core/io/AtomicFile.h"
#include "core/io/PlyFile.h"

namespace VantrelSDK {

namespace {

static_assert(std::endian::native == std::endian::little);

/// Takes a piece of the file; false with a message when it can't.
using Sink = std::function<bool(std::string_view, std::string& error)>;

class PlyFormatter {
  public:
    PlyFormatter(const PolyMesh& mesh, const Sink& sink, std::string& error)
        : mesh_(mesh), sink_(sink), error_(error) {
        for (int p = 0; p < mesh.NumPolygons(); ++p)
            most_ = std::max(most_, mesh.polygonStart[p + 1] - mesh.polygonStart[p]);
    }

    bool Format() { return FormatHeader() && FormatVertices() && FormatFaces() && Flush(); }

  private:
    static constexpr size_t kPieceSize = 1 << 20;

    bool HasColours() const { return !mesh_.colours.empty(); }
    bool HasUVs() const { return !mesh_.cornerUVs.empty(); }
    /// A list's length fits in a byte.
    bool IsShort(int length) const { return length <= UINT8_MAX; }

    bool FormatHeader() {
        bytes_ = fmt::format(
            "ply\nformat binary_little_endian 1.0\ncomment kelmo\nelement vertex {}\n"
            "property float x\nproperty float y\nproperty float z\n",
            mesh_.positions.size());
        if (HasColours())
            bytes_ += "property float red\nproperty float green\nproperty float blue\n";
        bytes_ += fmt::format("element face {}\nproperty list {} int vertex_indices\n",
                              mesh_.NumPolygons(), IsShort(most_) ? "uchar" : "int");
        if (HasUVs())
            bytes_ += fmt::format("property list {} float texcoord\n",
                                  IsShort(2 * most_) ? "uchar" : "int");
        bytes_ += "end_header\n";
        return true;
    }

    bool FormatVertices() {
        for (size_t v = 0; v < mesh_.positions.size(); ++v) {
            if (!Append(mesh_.positions[v], "vertex", v)) return false;
            if (HasColours() && !Append(mesh_.colours[v], "the colour of vertex", v)) return false;
            if (bytes_.size() >= kPieceSize && !Flush()) return false;
        }
        return true;
    }

    bool FormatFaces() {
        for (int p = 0; p < mesh_.NumPolygons(); ++p) {
            const int first = mesh_.polygonStart[p], last = mesh_.polygonStart[p + 1];
            AppendLength(last - first, IsShort(most_));
            for (int c = first; c < last; ++c) Append(mesh_.cornerVerts[c]);
            if (HasUVs() && !FormatUVs(first, last)) return false;
            if (bytes_.size() >= kPieceSize && !Flush()) return false;
        }
        return true;
    }

    /// Those of a polygon, when all of its corners have one.
    bool FormatUVs(int first, int last) {
        const auto corners = mesh_.cornerUVs.begin();
        const bool whole = std::find(corners + first, corners + last, -1) == corners + last;
        AppendLength(whole ? 2 * (last - first) : 0, IsShort(2 * most_));
        for (int c = first; whole && c < last; ++c) {
            const LPoint2& uv = mesh_.uvs[mesh_.cornerUVs[c]];
            if (!std::isfinite(uv.x) || !std::isfinite(uv.y)) {
                error_ = fmt::format("UV {} is not finite", mesh_.cornerUVs[c]);
                return false;
            }
            Append(uv.x), Append(uv.y);
        }
        return true;
    }

    bool Append(const LPoint3& p, const char* what, size_t index) {
        if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z)) {
            error_ = fmt::format("{} {} is not finite", what, index);
            return false;
        }
        Append(p.x), Append(p.y), Append(p.z);
        return true;
    }
    void AppendLength(int length, bool isShort) {
        if (isShort)
            Append(static_cast<uint8_t>(length));
        else
            Append(length);
    }
    template <class T>
    void Append(T number) {
        bytes_.append(reinterpret_cast<const char*>(&number), sizeof number);
    }
    /// Hands on what there is.
    bool Flush() {
        const bool ok = sink_(bytes_, error_);
        bytes_.clear();
        return ok;
    }

    const PolyMesh& mesh_;
    const Sink& sink_;
    std::string& error_;
    std::string bytes_;
    /// Corners of the largest polygon.
    int most_ = 0;
};

bool Format(const PolyMesh& mesh, const Sink& sink, std::string& error) {
    try {
        return PlyFormatter(mesh, sink, error).Format();
    } catch (const std::bad_alloc&) {
        error = "not enough memory";
        return false;
    }
}

}  // namespace

bool FormatPly(const PolyMesh& mesh, std::string& bytes, std::string& error) {
    bytes.clear();
    return Format(
        mesh, [&](std::string_view piece, std::string&) { return bytes += piece, true; }, error);
}

bool WritePly(const std::string& path, const PolyMesh& mesh, std::string& error) {
    AtomicFile file;
    const auto write = [&](std::string_view piece, std::string& why) {
        return file.Write(piece, why);
    };
    return file.Open(path, error) && Format(mesh, write, error) && file.Commit(error);
}

}  // namespace VantrelSDK
