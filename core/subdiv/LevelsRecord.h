#pragma once

#include <vector>

#include "core/io/BlindRecord.h"
#include "core/subdiv/LSubdivCollection.h"

namespace VantrelSDK {

/// What the record of an LSubdivCollection says. The layers themselves need the faces of their
/// levels, which lie elsewhere in the stream.
struct LevelsRecord {
    struct Level {
        bool isQuad = false;
        /// Vertices that the level adds, and its faces.
        int nextVerts = 0, numFaces = 0;
    };
    /// The counts of level 0.
    int noVerts = 0, noFaces = 0;
    std::vector<Level> levels;
    int active = 0;

    /// When it is 0, all ranges follow from the counts as they must, and no total passes 2^31 - 1.
    int ReadFrom(LBlindData* stream);
    /// What all levels have together, without level 0; and the faces of one, 0 the base.
    int NumExtVerts() const;
    int NumExtFaces() const;
    int NumFaces(int level) const { return level == 0 ? noFaces : levels[level - 1].numFaces; }
};

/// Writes the faces of all levels above the base, numbered through; their topologies are there.
void WriteExtFaces(RecordWriter& record, unsigned short tag, const LSubdivCollection& levels);
/// Writes the children of the faces of levels `from` to `to` - 1.
void WriteFaceSubs(RecordWriter& record, unsigned short tag, const LSubdivCollection& levels,
                   int from, int to);

}  // namespace VantrelSDK
