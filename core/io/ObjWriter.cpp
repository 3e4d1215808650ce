#include "core/io/ObjWriter.h"

#include <fmt/format.h>

#include <charconv>
#include <cmath>
#include <functional>
#include <initializer_list>
#include <new>
#include <string_view>

#include "core/io/AtomicFile.h"

namespace VantrelSDK {

namespace {

/// Takes a piece of the text; false with a message when it can't.
using Sink = std::function<bool(std::string_view, std::string& error)>;

/// Turns a mesh into text, piece by piece.
class ObjFormatter {
  public:
    ObjFormatter(const PolyMesh& mesh, const Sink& sink, std::string& error)
        : mesh_(mesh), sink_(sink), error_(error) {
        text_.reserve(PieceSize + LongestElement);
    }

    bool Format() {
        return FormatPositions() && FormatUVs() && FormatPolygons() && sink_(text_, error_);
    }

  private:
    static constexpr size_t PieceSize = 1 << 20;
    static constexpr size_t LongestElement = 256;

    bool FormatPositions();
    bool FormatUVs();
    bool FormatPolygons();
    bool FormatStatements(int polygon);
    bool FormatCorners(int polygon);

    template <class Number>
    void Append(char before, Number number) {
        char digits[32];
        digits[0] = before;
        text_.append(digits, std::to_chars(digits + 1, digits + sizeof digits, number).ptr);
    }
    bool AppendFinite(std::initializer_list<float> numbers, const char* what, size_t index);
    /// Hands a full piece on.
    bool EndElement() {
        if (text_.size() < PieceSize) return true;
        const bool ok = sink_(text_, error_);
        text_.clear();
        return ok;
    }

    const PolyMesh& mesh_;
    const Sink& sink_;
    std::string& error_;
    std::string text_;
    size_t nextStatement_ = 0;
};

bool ObjFormatter::AppendFinite(std::initializer_list<float> numbers, const char* what,
                                size_t index) {
    for (const float number : numbers) {
        if (!std::isfinite(number)) {
            error_ = fmt::format("{} {} is not finite", what, index + 1);
            return false;
        }
        Append(' ', number);
    }
    return true;
}

bool ObjFormatter::FormatPositions() {
    for (size_t i = 0; i < mesh_.positions.size(); ++i) {
        const LPoint3& p = mesh_.positions[i];
        text_ += 'v';
        if (!AppendFinite({p.x, p.y, p.z}, "vertex", i)) return false;
        if (!mesh_.colours.empty()) {
            const LPoint3& c = mesh_.colours[i];
            if (!AppendFinite({c.x, c.y, c.z}, "the colour of vertex", i)) return false;
        }
        text_ += '\n';
        if (!EndElement()) return false;
    }
    return true;
}

bool ObjFormatter::FormatUVs() {
    for (size_t i = 0; i < mesh_.uvs.size(); ++i) {
        text_ += "vt";
        if (!AppendFinite({mesh_.uvs[i].x, mesh_.uvs[i].y}, "UV", i)) return false;
        text_ += '\n';
        if (!EndElement()) return false;
    }
    return true;
}

bool ObjFormatter::FormatPolygons() {
    for (int polygon = 0; polygon < mesh_.NumPolygons(); ++polygon) {
        if (!FormatStatements(polygon) || !FormatCorners(polygon)) return false;
    }
    return FormatStatements(mesh_.NumPolygons());
}

bool ObjFormatter::FormatStatements(int polygon) {
    for (; nextStatement_ < mesh_.statements.size(); ++nextStatement_) {
        const StatementList::Statement statement = mesh_.statements[nextStatement_];
        if (statement.polygon > polygon) break;
        if (statement.text.find_first_of("\r\n") != std::string::npos) {
            error_ = fmt::format("statement {} is not one line", nextStatement_ + 1);
            return false;
        }
        (text_ += statement.text) += '\n';
        if (!EndElement()) return false;
    }
    return true;
}

bool ObjFormatter::FormatCorners(int polygon) {
    text_ += 'f';
    for (int c = mesh_.polygonStart[polygon]; c < mesh_.polygonStart[polygon + 1]; ++c) {
        Append(' ', mesh_.cornerVerts[c] + 1ll);
        if (!mesh_.cornerUVs.empty() && mesh_.cornerUVs[c] >= 0) {
            Append('/', mesh_.cornerUVs[c] + 1ll);
        }
        if (!EndElement()) return false;
    }
    text_ += '\n';
    return EndElement();
}

bool Format(const PolyMesh& mesh, const Sink& sink, std::string& error) {
    try {
        return ObjFormatter(mesh, sink, error).Format();
    } catch (const std::bad_alloc&) {
        error = "not enough memory";
        return false;
    }
}

}  // namespace

bool FormatObj(const PolyMesh& mesh, std::string& text, std::string& error) {
    text.clear();
    return Format(
        mesh, [&](std::string_view piece, std::string&) { return text += piece, true; }, error);
}

bool WriteObj(const std::string& path, const PolyMesh& mesh, std::string& error) {
    AtomicFile file;
    const auto write = [&](std::string_view piece, std::string& why) {
        return file.Write(piece, why);
    };
    return file.Open(path, error) && Format(mesh, write, error) && file.Commit(error);
}

}  // namespace VantrelSDK
