#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "core/math/LPoint2.h"
#include "core/math/LPoint3.h"

namespace VantrelSDK {

/// Lines of a file that stand between polygons, held in one text: a file may have more of them than
/// anything else.
class StatementList {
  public:
    /// The line stands before polygon `polygon`, which may be the number of polygons for lines at
    /// the end. The text is the whole line without its end, such as "usemtl skin".
    struct Statement {
        int polygon;
        std::string_view text;
        bool operator==(const Statement&) const = default;
    };

    StatementList() = default;
    StatementList(std::initializer_list<Statement> statements) {
        for (const Statement& statement : statements) Add(statement.polygon, statement.text);
    }

    /// Polygons come in order.
    void Add(int polygon, std::string_view text) {
        text_ += text;
        entries_.push_back({polygon, text_.size()});
    }
    size_t size() const { return entries_.size(); }
    Statement operator[](size_t i) const {
        const uint64_t start = i > 0 ? entries_[i - 1].end : 0;
        return {entries_[i].polygon,
                std::string_view(text_).substr(start, entries_[i].end - start)};
    }
    void clear() { *this = {}; }
    void shrink_to_fit() {
        text_.shrink_to_fit();
        entries_.shrink_to_fit();
    }
    bool operator==(const StatementList&) const = default;

  private:
    struct Entry {
        int polygon;
        uint64_t end;
        bool operator==(const Entry&) const = default;
    };

    std::string text_;
    std::vector<Entry> entries_;
};

/// A mesh of polygons as a file holds it: what the core reads its triangles from and what it
/// writes.
struct PolyMesh {
    std::vector<LPoint3> positions;
    /// One colour per position as the file gave it, or empty.
    std::vector<LPoint3> colours;
    std::vector<LPoint2> uvs;
    /// Number of polygons + 1 offsets into the corner arrays; polygon p has the corners
    /// polygonStart[p] up to polygonStart[p + 1], at least 3. Holds one 0 in an empty mesh.
    std::vector<int> polygonStart{0};
    /// Per corner: a position number, always in range.
    std::vector<int> cornerVerts;
    /// Per corner: a UV number, or -1 where there is none. Empty when no corner has one.
    std::vector<int> cornerUVs;
    /// Groups, objects, smoothing groups, material names, material libraries.
    StatementList statements;

    int NumPolygons() const { return static_cast<int>(polygonStart.size()) - 1; }
};

}  // namespace VantrelSDK
