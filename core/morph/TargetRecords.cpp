#include <climits>

#include "core/io/BlindRecord.h"
#include "core/mesh/LMeshObject.h"
#include "core/morph/LMixTarget.h"
#include "core/morph/LMorphGroup.h"
#include "core/morph/LPoseTarget.h"
#include "core/sculpt/LNode.h"

namespace VantrelSDK {

namespace {

/// Calls field(tag) for the chunks up to the end of the one that is open.
template <class Field>
int ReadFields(LBlindData* stream, const Field& field) {
    while (!stream->IsEndOfChunk()) {
        unsigned short tag = 0;
        int code = stream->BeginReadChunk(tag);
        if (code == 0) code = field(tag);
        if (code == 0) code = stream->EndReadChunk();
        if (code != 0) return code;
    }
    return 0;
}

/// What the chunks of single values of a target say.
class SparseReader {
  public:
    /// Vertices from 0 to `limit` - 1 may have a value, those below `level0nv` a proxy.
    SparseReader(LBlindData* stream, int limit, int level0nv)
        : stream_(stream), limit_(limit), level0nv_(level0nv) {}

    int ReadOffset() {
        LPoint3 offset, inProxy;
        int vert = -1;
        bool hasProxy = false;
        const int code = ReadFields(stream_, [&](unsigned short tag) {
            if (tag == 18) return stream_->Read(vert);
            if (tag == 19) return stream_->Read(offset);
            if (tag != 27) return 0;
            hasProxy = true;
            return stream_->Read(inProxy);
        });
        if (code != 0) return code;
        const bool added = vert < limit_ && geom.Append(vert, offset) &&
                           (!hasProxy || (vert < level0nv_ && proxy.Append(vert, inProxy)));
        return added ? 0 : int{LBlindData::kBadRecord};
    }

    int ReadColor() {
        LAColor color;
        int vert = -1;
        const int code = ReadFields(stream_, [&](unsigned short tag) {
            if (tag == 18) return stream_->Read(vert);
            return tag == 23 ? stream_->Read(color) : 0;
        });
        if (code != 0) return code;
        return vert < limit_ && colors.Append(vert, color) ? 0 : int{LBlindData::kBadRecord};
    }

    SparseOffsets geom, proxy;
    SparseColors colors;

  private:
    LBlindData* stream_;
    int limit_, level0nv_;
};

int ReadSpace(LBlindData* stream, LSpacedTarget& target) {
    int space = 0;
    if (const int code = stream->Read(space)) return code;
    if (space != kObjectSpace && space != kTangentSpace) return LBlindData::kBadRecord;
    target.SetSpace(space);
    return 0;
}

int ReadEnabled(LBlindData* stream, LSpacedTarget& target) {
    bool enabled = true;
    const int code = ReadBool(stream, enabled);
    if (code == 0) target.SetEnabled(enabled);
    return code;
}

int ReadJoint(LBlindData* stream, const LMorphTarget& target,
              std::vector<std::unique_ptr<LJoint>>& joints) {
    return joints.emplace_back(target.newJoint())->ReadFrom(stream);
}

}  // namespace

int LJoint::WriteTo(LBlindData* stream) const {
    return RecordWriter(stream, 1622)
        .Field(1623, nodeid)
        .Text(1624, nodename)
        .Field(1625, rotation)
        .Field(1626, translation)
        .Field(1627, scale)
        .End();
}

int LJoint::ReadFrom(LBlindData* stream) {
    return ReadRecord(stream, 1622, [&](unsigned short tag) {
        if (tag == 1623) return stream->Read(nodeid);
        if (tag == 1624) return ReadText(stream, nodename);
        if (tag == 1625) return stream->Read(rotation);
        if (tag == 1626) return stream->Read(translation);
        return tag == 1627 ? stream->Read(scale) : 0;
    });
}

int LMorphTarget::WriteTo(LBlindData* stream) const {
    RecordWriter record(stream, 16);
    const auto field = [&](unsigned short tag, const auto& value) {
        int code = stream->BeginWriteChunk(tag);
        if (code == 0) code = stream->Write(value);
        return code == 0 ? stream->EndWriteChunk() : code;
    };
    record.Text(21, name_).Array(20, getImageBytes());
    geom_.ForEach(INT_MAX, [&](int v, const LPoint3& offset) {
        record.Chunk(17, [&] {
            const LPoint3* inProxy = v < level0nv_ ? proxy_.Find(v) : nullptr;
            int code = field(18, v);
            if (code == 0 && inProxy) code = field(27, *inProxy);
            return code == 0 ? field(19, offset) : code;
        });
        return false;
    });
    colors_.ForEach(INT_MAX, [&](int v, const LAColor& color) {
        record.Chunk(22, [&] {
            const int code = field(18, v);
            return code == 0 ? field(23, color) : code;
        });
        return false;
    });
    record.Field(24, isdefback_)
        .Chunk(25, [&] { return stream->Write(backcolor_.r, backcolor_.g, backcolor_.b); })
        .Array(26, skin_);
    for (const auto& joint : joints_)
        if (joint) record.Record(28, *joint);
    return record.End();
}

int LMorphTarget::ReadFrom(LBlindData* stream) {
    const LMeshObject* object = owner_ ? owner_->lobject() : nullptr;
    const LSubdivMesh* geom = object ? object->GetOrigGeom() : nullptr;
    const int nverts = geom ? geom->GetNumLevelVerts(geom->GetNumSubivLevels() - 1) : INT_MAX;
    SparseReader values(stream, nverts, level0nv_);
    std::vector<std::unique_ptr<LJoint>> joints;
    std::vector<LPoint3> skin;
    const int code = ReadRecord(stream, 16, [&](unsigned short tag) {
        switch (tag) {
            case 17:
                return values.ReadOffset();
            case 20: {
                std::vector<uint8_t> image;
                const int failed = ReadArray(stream, image);
                if (failed == 0) setImageBytes(image);
                return failed;
            }
            case 21:
                return ReadText(stream, name_);
            case 22:
                return values.ReadColor();
            case 24:
                return ReadBool(stream, isdefback_);
            case 25:
                return stream->Read(backcolor_.r, backcolor_.g, backcolor_.b);
            case 26:
                return ReadArray(stream, skin);
            case 28:
                return ReadJoint(stream, *this, joints);
            default:
                return 0;
        }
    });
    if (code != 0) return code;
    if (!skin.empty() && skin.size() != static_cast<size_t>(level0nv_))
        return LBlindData::kBadRecord;
    // Only vertices with a value are stored.
    if (geom && !values.geom.empty()) {
        values.geom.Pad(nverts);
        values.proxy.Pad(geom->GetNumLevelVerts(0));
    }
    if (geom && !values.colors.empty()) values.colors.Pad(nverts);
    SetGeom(std::move(values.geom), std::move(values.proxy));
    SetColors(std::move(values.colors));
    skin_ = std::move(skin);
    joints_ = std::move(joints);
    return 0;
}

int LPoseTarget::WriteTo(LBlindData* stream) const {
    return RecordWriter(stream, 1590)
        .Field(1593, GetSpace())
        .Field(1594, IsEnabled())
        .Chunk(1591, [&] { return LMorphTarget::WriteTo(stream); })
        .End();
}

int LPoseTarget::ReadFrom(LBlindData* stream) {
    std::vector<std::unique_ptr<LJoint>> oldJoints;
    const int code = ReadRecord(stream, 1590, [&](unsigned short tag) {
        if (tag == 1591) return LMorphTarget::ReadFrom(stream);
        if (tag == 1592) return ReadJoint(stream, *this, oldJoints);
        if (tag == 1593) return ReadSpace(stream, *this);
        return tag == 1594 ? ReadEnabled(stream, *this) : 0;
    });
    for (auto& joint : oldJoints) AddJoint(std::move(joint));
    return code;
}

int LFlexorTarget::WriteTo(LBlindData* stream) const {
    return RecordWriter(stream, 1872)
        .Chunk(1873, [&] { return LPoseTarget::WriteTo(stream); })
        .Field(1874, uniqid_)
        .End();
}

int LFlexorTarget::ReadFrom(LBlindData* stream) {
    return ReadRecord(stream, 1872, [&](unsigned short tag) {
        if (tag == 1873) return LPoseTarget::ReadFrom(stream);
        return tag == 1874 ? stream->Read(uniqid_) : 0;
    });
}

int LMixTarget::WriteTo(LBlindData* stream) const {
    return RecordWriter(stream, 1920)
        .Chunk(1921, [&] { return LMorphTarget::WriteTo(stream); })
        .Field(1922, GetSpace())
        .Field(1923, IsEnabled())
        .Field(1924, show_)
        .End();
}

int LMixTarget::ReadFrom(LBlindData* stream) {
    return ReadRecord(stream, 1920, [&](unsigned short tag) {
        if (tag == 1921) return LMorphTarget::ReadFrom(stream);
        if (tag == 1922) return ReadSpace(stream, *this);
        if (tag == 1923) return ReadEnabled(stream, *this);
        return tag == 1924 ? ReadBool(stream, show_) : 0;
    });
}

int LMorphGroup::WriteTo(LBlindData* stream) const {
    RecordWriter record(stream, 784);
    record.Text(785, name_);
    for (const auto& target : targets_)
        if (target) record.Record(786, *target);
    return record.Field(787, blur).Field(788, jointDelay).End();
}

int LMorphGroup::ReadFrom(LBlindData* stream) {
    int count = 0;
    return ReadRecord(stream, 784, [&](unsigned short tag) -> int {
        if (tag == 785) return ReadText(stream, name_);
        if (tag == 787) return stream->Read(blur);
        if (tag == 788) return stream->Read(jointDelay);
        if (tag != 786) return 0;
        LMorphTarget* target = GetTarget(count++);
        return target ? target->ReadFrom(stream) : int{LBlindData::kBadRecord};
    });
}

}  // namespace VantrelSDK
