#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/math/LPoint2.h"

namespace VantrelSDK {

class LBlindData;

/// One UV set of a mesh at level 0: points of its own, and for each face of the mesh, in the same
/// order of corners, the points that its corners have.
class LUVChannel {
  public:
    /// Three points, one a corner; -1 for a corner without one. 12 bytes, also in a stream.
    struct MFace {
        int32_t v[3] = {-1, -1, -1};
    };

    /// An empty channel. `channel` is the number of the host's UV set.
    explicit LUVChannel(int channel = 0) : channel_(channel) {}
    virtual ~LUVChannel() = default;

    /// Takes points and faces. False, with the reason and no change, unless there is a face for
    /// each of the `meshFaces` triangles of the mesh and all of them name points or nothing.
    virtual bool Init(std::vector<LPoint2> verts, std::vector<MFace> faces, size_t meshFaces,
                      std::string& error);

    int channel() const { return channel_; }
    /// The host's name of the UV set; empty where there is none.
    const std::string& name() const { return name_; }
    std::string& _name() { return name_; }
    /// Counts of level 0.
    int nverts() const { return nverts_; }
    int nfaces() const { return static_cast<int>(faces_.size()); }
    /// No face has points: no frame can use the channel.
    bool IsEmpty() const { return nverts_ == 0 || faces_.empty(); }

    /// The channel as a record; returns one of LBlindData's codes.
    virtual int WriteTo(LBlindData* stream) const;

  protected:
    int channel_;
    std::string name_;
    int nverts_ = 0;
    /// The first nverts_ are those of level 0.
    std::vector<LPoint2> verts_;
    std::vector<MFace> faces_;
};

static_assert(sizeof(LUVChannel::MFace) == 12);

}  // namespace VantrelSDK
