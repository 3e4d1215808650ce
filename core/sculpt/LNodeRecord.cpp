#include "core/sculpt/LNodeRecord.h"

#include <fmt/core.h>

#include "core/anim/LControlCollection.h"
#include "core/io/BlindRecord.h"
#include "core/morph/LMeshBases.h"
#include "core/sculpt/LNode.h"
#include "core/subdiv/LUVSubdivChannel.h"

namespace VantrelSDK {

namespace {

/// The chunks of a node.
enum Tag : unsigned short {
    kNode = 257,
    kStdTarget = 258,
    kExtTarget = 259,
    kOldTracks = 260,
    kGroup = 261,
    kDelta = 263,
    kObject = 266,
    kColorDelta = 268,
    kPose = 269,
    kOldPoseTracks = 270,
    kNeutralBackup = 272,
    kFlexor = 273,
    kTracks = 274,
    kNeutral = 275,
    kMixTargets = 277,
    kNeutralLimit = 279,
    kNeutralLimit0 = 280,
};

/// What is said when a chunk can't be begun, filled or ended.
struct Texts {
    unsigned short tag;
    const char *begin, *content, *end;
};

constexpr Texts kTexts[] = {
    {kNode, "MLNode: can not begin write node chunk\n", "",
     "MLNode: can not finish to write class chunk\n"},
    {kObject, "MLNode: can not start to write eLObjectDataChunk chunk\n",
     "MLNode: can not write eLObjectDataChunk data \n",
     "MLNode: can not finish to write eLObjectDataChunk chunk\n"},
    {kNeutral, "MLNode: can not begin to write neutral targt chunk.",
     "MLNode: can not write neutral targt chunk.",
     "MLNode: can not finish to write neutral targt chunk."},
    {kNeutralLimit, "MLNode: can not begin to write neutralLimit chunk.",
     "MLNode: can not write neutralLimit chunk.",
     "MLNode: can not finish to write neutralLimit chunk."},
    {kNeutralLimit0, "MLNode: can not begin to write neutralLimit0 chunk.",
     "MLNode: can not write neutralLimit0 chunk.",
     "MLNode: can not finish to write neutralLimit0 chunk."},
    {kNeutralBackup, "MLNode: can not start to write neutral backup chunk.",
     "MLNode: can not write neutral backup.",
     "MLNode: can not finish to write neutral backup chunk."},
    {kStdTarget, "MLNode: can not begin to write standard targt chunk\n",
     "MLNode: can not write standard targt chunk\n",
     "MLNode: can not finish to write standard targt chunk\n"},
    {kExtTarget, "MLNode: can not begin to write extra target chunk\n",
     "MLNode: can not write extra target chunk\n",
     "MLNode: can not finish to write extra target chunk\n"},
    {kGroup, "MLNode: can not start to write morph groupchunk\n",
     "MLNode: can not write morph groupchunk\n",
     "MLNode: can not finish to write morph groupchunk\n"},
    {kTracks, "MLNode: can not begin to write anim contrller collectin chunk.",
     "MLNode: can not write anim contrller collection chunk.",
     "MLNode: can not finish to write anim contrller collection chunk."},
    {kDelta, "MLNode: can not start to write delta chunk\n", "MLNode: can not write delta \n",
     "MLNode: can not finish to write delta chunk\n"},
    {kColorDelta, "MLNode: can not start to write color delta chunk\n",
     "MLNode: can not write color delta \n", "MLNode: can not finish to write color delta chunk\n"},
    {kPose, "MLNode: can not begin to write pose chunk.", "MLNode: can not write pose chunk\n",
     "MLNode: can not finish to write pose chunk\n"},
    {kFlexor, "MLNode: can not begin to write flexor chunk.", "MLNode: can not write flexor chunk.",
     "MLNode: can not finish to write flexor chunk."},
    {kMixTargets, "MLNode: can not start to write mixtargets set chunk.",
     "MLNode: can not write mixtargets set chunk.",
     "MLNode: can not finish to write mixtargets set chunk."},
};

const Texts& TextsOf(unsigned short tag) {
    const Texts* texts = kTexts;
    while (texts->tag != tag) ++texts;
    return *texts;
}

/// The host's classes wrap what is the core's: a chunk of their own, and in it one for the core's
/// record.
struct Wrapper {
    unsigned short outer, inner;
};
constexpr Wrapper kMeshObject{1574, 1575}, kUVChannel{1568, 1569}, kMorphTarget{528, 529},
    kMorphGroup{800, 801}, kPoseTarget{1606, 1607}, kFlexorTarget{1888, 1889};
constexpr unsigned short kChannels = 1576, kChannelName = 1570;
/// Blocks before this version have the mesh object's record without its wrapper.
constexpr int kWrappedObjectSince = 3;
/// Blocks before this version count the neutral among the targets of keys.
constexpr int kNeutralApartSince = 7;

template <class T>
int WriteWrapped(LBlindData* stream, const Wrapper& wrapper, const T& object) {
    return RecordWriter(stream, wrapper.outer).Record(wrapper.inner, object).End();
}

template <class T>
int ReadWrapped(LBlindData* stream, const Wrapper& wrapper, T& object) {
    return ReadRecord(stream, wrapper.outer, [&](unsigned short tag) {
        return tag == wrapper.inner ? object.ReadFrom(stream) : 0;
    });
}

int WriteChannel(LBlindData* stream, const LUVSubdivChannel& channel) {
    RecordWriter record(stream, kUVChannel.outer);
    record.Record(kUVChannel.inner, channel);
    if (!channel.name().empty()) record.Text(kChannelName, channel.name());
    return record.End();
}

int WriteObject(LBlindData* stream, const LMeshObject& object) {
    RecordWriter record(stream, kMeshObject.outer);
    record.Record(kMeshObject.inner, object);
    for (int i = 0; object.GetUVChannel(i); ++i)
        record.Chunk(kChannels, [&] { return WriteChannel(stream, *object.GetUVChannel(i)); });
    return record.End();
}

int ReadChannel(LBlindData* stream, LMeshObject& object) {
    if (!object.GetOrigGeom()) return LBlindData::kBadRecord;
    auto channel = std::make_unique<LUVSubdivChannel>();
    const int code = ReadRecord(stream, kUVChannel.outer, [&](unsigned short tag) {
        if (tag == kUVChannel.inner) return channel->ReadFrom(stream, *object.GetOrigGeom());
        return tag == kChannelName ? ReadText(stream, channel->_name()) : 0;
    });
    if (code == 0) object.AddChannel(std::move(channel));
    return code;
}

int ReadWrappedObject(LBlindData* stream, LMeshObject& object) {
    if (stream->GetReadVersion() < kWrappedObjectSince) return object.ReadFrom(stream);
    return ReadRecord(stream, kMeshObject.outer, [&](unsigned short tag) {
        if (tag == kChannels) return ReadChannel(stream, object);
        if (tag != kMeshObject.inner) return 0;
        object.ClearUVChannels();
        return object.ReadFrom(stream);
    });
}

/// Adds a target that was read to its list, when that went well.
template <class T, class Add>
int ReadTarget(LBlindData* stream, const Wrapper& wrapper, std::unique_ptr<T> target,
               const Add& add) {
    const int code = ReadWrapped(stream, wrapper, *target);
    if (code == 0) add(std::move(target));
    return code;
}

}  // namespace

int GetKelmoVersionInt() {
    return 6503;
}

std::string GetKelmoVersionString(int version) {
    return fmt::format("v {}.{}.{:02}", version / 1000, version % 1000 / 100, version % 100);
}

int LNodeRecord::Failed(int code, const char* text) {
    if (code != 0) message_ = text;
    return code;
}

/// A chunk of the node; false when it or one before it failed.
template <class Write>
bool LNodeRecord::Put(unsigned short tag, const Write& write) {
    const Texts& texts = TextsOf(tag);
    if (code_ == 0) code_ = Failed(stream_->BeginWriteChunk(tag), texts.begin);
    if (code_ == 0) code_ = Failed(write(), texts.content);
    if (code_ == 0) code_ = Failed(stream_->EndWriteChunk(), texts.end);
    return code_ == 0;
}

int LNodeRecord::WriteTo(LBlindData* stream) {
    node_.UpdateSubdivLevels();
    const LNode::InTangentSpace space(node_);
    stream_ = stream;
    message_.clear();
    code_ = Failed(stream->BeginWriteChunk(kNode), TextsOf(kNode).begin);
    if (node_.lobject()) Put(kObject, [&] { return WriteObject(stream, *node_.lobject()); });
    if (node_.GetNeutral())
        Put(kNeutral, [&] { return WriteWrapped(stream, kFlexorTarget, *node_.GetNeutral()); });
    const auto put = [&](unsigned short tag, const auto& held) {
        if (held) Put(tag, [&] { return held->WriteTo(stream); });
    };
    put(kNeutralLimit, node_._lneutralLimit());
    put(kNeutralLimit0, node_._lneutralLimit0());
    if (PutTargets()) code_ = Failed(stream->EndWriteChunk(), TextsOf(kNode).end);
    return code_;
}

/// What stands behind the neutral, in its order.
bool LNodeRecord::PutTargets() {
    const auto put = [&](unsigned short tag, const Wrapper& wrapper, const auto& target) {
        Put(tag, [&] { return WriteWrapped(stream_, wrapper, target); });
    };
    for (int i = 0; i < node_.GetNumMorphs(); ++i)
        put(i < node_.GetNumStdMorphs() ? kStdTarget : kExtTarget, kMorphTarget,
            *node_.GetMorph(i));
    if (const LControlCollection* tracks = node_.GetAnimControls())
        Put(kTracks, [&] { return tracks->WriteTo(stream_); });
    for (int i = 0; i < node_.GetNumGroups(); ++i)
        put(kGroup, kMorphGroup, *node_.GetMorphGroup(i));
    if (node_.GetDelta()) Put(kDelta, [&] { return node_.GetDelta()->WriteTo(stream_); });
    if (node_.lcolorDelta())
        Put(kColorDelta, [&] { return node_.lcolorDelta()->WriteTo(stream_); });
    for (int i = 0; i < node_.GetNumPoseMorphs(); ++i)
        put(kPose, kPoseTarget, *node_.GetPoseMorph(i));
    for (int i = 0; i < node_.GetNumFlexorMorphs(); ++i)
        put(kFlexor, kFlexorTarget, *node_.GetFlexorMorph(i));
    if (const LMesh* backup = node_._lneutralBackup().get())
        Put(kNeutralBackup, [&] { return backup->WriteTo(stream_); });
    if (node_.GetNumMixTargets() == 0) return code_ == 0;
    return Put(kMixTargets, [&] {
        RecordWriter record(stream_, 1942);
        for (int i = 0; i < node_.GetNumMixTargets(); ++i)
            record.Record(1943, *node_.GetMixTarget(i));
        return record.End();
    });
}

int LNodeRecord::ReadFrom(LBlindData* stream) try {
    stream_ = stream;
    message_.clear();
    if (node_.IsSculpting()) node_.FinishSculpt(false);
    node_.deleteAllLevelTrees();
    const int level0nv = node_.GetLevel0Size();
    ClearTargets();
    if (node_.GetAnimControls()) node_.GetAnimControls()->RemoveAll();
    hasTracks_ = false;
    node_.SetLevel0Size(level0nv);
    const unsigned short depth = stream->GetDepth();
    for (bool first = true; first || stream->GetDepth() != depth; first = false) {
        if (stream->IsEndOfData()) break;
        int code = 0;
        if (!stream->IsEndOfChunk()) {
            unsigned short tag = 0;
            code = stream->BeginReadChunk(tag);
            if (code != 0) return Failed(code, "MLNode: can not open chunk\n");
            if (tag == kNode) continue;
            code = ReadChunk(tag);
            if (code != 0) return Failed(code, "MLNode: can not read chunk data\n");
        }
        code = stream->EndReadChunk();
        if (code != 0) return Failed(code, "MLNode: can not finish to read chunk\n");
    }
    if (stream->GetReadVersion() < kNeutralApartSince && node_.GetAnimControls())
        node_.GetAnimControls()->LowerTargets();
    if (node_.GetNeutral()) return 0;
    node_.SetNeutral(std::make_unique<LFlexorTarget>(&node_, "NEUTRAL", node_.GetLevel0Size()));
    return 0;
} catch (const std::bad_alloc&) {
    return Failed(LBlindData::kNoMemory, "MLNode: can not read chunk data\n");
}

void LNodeRecord::ClearTargets() {
    node_.clearMorphs();
    node_._lneutralLimit().reset();
    node_._lneutralLimit0().reset();
    node_._lneutralBackup().reset();
}

int LNodeRecord::ReadChunk(unsigned short tag) {
    const int level0nv = node_.GetLevel0Size();
    switch (tag) {
        case kObject:
            return ReadObject();
        case kStdTarget:
        case kExtTarget: {
            const int count = tag == kStdTarget ? node_.GetNumStdMorphs() : node_.GetNumMorphs();
            return ReadTarget(stream_, kMorphTarget,
                              std::make_unique<LMorphTarget>(
                                  &node_, LTargetLists::GetDefMorphName(count), level0nv),
                              [&](auto target) {
                                  if (tag == kStdTarget)
                                      node_.AddStdMorph(std::move(target));
                                  else
                                      node_.AddExtMorph(std::move(target));
                              });
        }
        case kNeutral:
            return ReadTarget(stream_, kFlexorTarget,
                              std::make_unique<LFlexorTarget>(&node_, "NEUTRAL", level0nv),
                              [&](auto target) { node_.SetNeutral(std::move(target)); });
        case kPose:
            return ReadTarget(stream_, kPoseTarget,
                              std::make_unique<LPoseTarget>(&node_, "", level0nv),
                              [&](auto target) { node_.AddPoseMorph(std::move(target)); });
        case kFlexor:
            return ReadTarget(stream_, kFlexorTarget,
                              std::make_unique<LFlexorTarget>(&node_, "", level0nv),
                              [&](auto target) { node_.AddFlexorMorph(std::move(target)); });
        case kNeutralLimit:
            return ReadFrames(node_._lneutralLimit());
        case kNeutralLimit0:
            return ReadFrames(node_._lneutralLimit0());
        case kNeutralBackup:
            node_._lneutralBackup() = std::make_unique<LMesh>();
            return node_._lneutralBackup()->ReadFrom(stream_);
        case kGroup:
            return ReadGroup();
        case kDelta:
            return ReadDelta();
        case kColorDelta:
            if (!node_.lcolorDelta() && !node_.CreateColorDelta()) return LBlindData::kBadRecord;
            return node_.lcolorDelta()->ReadFrom(stream_);
        case kMixTargets:
            return ReadMixTargets();
        case kTracks:
            hasTracks_ = true;
            return node_.NeedAnimControls().ReadFrom(stream_);
        case kOldTracks:
            return ReadOldTracks(LMorphControl2::kPhoneme);
        case kOldPoseTracks:
            return ReadOldTracks(LMorphControl2::kPoses);
        default:
            return 0;
    }
}

int LNodeRecord::ReadObject() {
    std::unique_ptr<LMeshObject> made = node_.lobject() ? nullptr : makeObject_();
    LMeshObject& object = made ? *made : *node_.lobject();
    const int code = ReadWrappedObject(stream_, object);
    if (object.IsEmpty()) return code != 0 ? code : int{LBlindData::kBadRecord};
    // What belongs to a former object goes, even when only a part of the new one could be read.
    if (made) node_.Init(std::move(made));
    ClearTargets();
    node_.SetLevel0Size(object.GetOrigGeom()->GetNumLevelVerts(0));
    node_.CreateDelta();
    return code;
}

int LNodeRecord::ReadDelta() {
    if (!node_.GetDelta() && !node_.CreateDelta()) return LBlindData::kBadRecord;
    return node_.GetDelta()->ReadFrom(stream_);
}

/// Frames on levels of the object.
int LNodeRecord::ReadFrames(std::unique_ptr<LMeshBasesUV2>& frames) {
    const LMeshObject* object = node_.lobject();
    if (!object) return LBlindData::kBadRecord;
    const LSubdivMesh& geom = *object->GetOrigGeom();
    auto read = std::make_unique<LMeshBasesUV2>(&geom, object->GetActiveUVChannel(), 0);
    if (const int code = static_cast<LMeshBases&>(*read).ReadFrom(stream_)) return code;
    bool fits = read->GetNumSubivLevels() <= geom.GetNumSubivLevels();
    for (int level = 0; fits && level < read->GetNumSubivLevels(); ++level)
        fits = read->GetNumLevelVerts(level) == geom.GetNumLevelVerts(level) &&
               read->GetNumLevelFaces(level) == geom.GetNumLevelFaces(level);
    if (!fits) return LBlindData::kBadRecord;
    frames = std::move(read);
    return 0;
}

int LNodeRecord::ReadGroup() {
    auto group = std::make_unique<LMorphGroup>(&node_, "", node_.GetLevel0Size());
    if (const int code = ReadWrapped(stream_, kMorphGroup, *group)) return code;
    return node_.AddMorphGroup(std::move(group)) ? 0 : int{LBlindData::kBadRecord};
}

/// What was kept beside tracks of the present form is what they were made of.
int LNodeRecord::ReadOldTracks(int type) {
    if (!hasTracks_) return node_.NeedAnimControls().ImportTracks(stream_, type);
    LControlCollection passed(node_);
    return passed.ImportTracks(stream_, type);
}

int LNodeRecord::ReadMixTargets() {
    return ReadRecord(stream_, 1942, [&](unsigned short tag) {
        if (tag != 1943) return 0;
        auto target = std::make_unique<LMixTarget>(&node_, "", node_.GetLevel0Size());
        const int code = target->ReadFrom(stream_);
        if (code == 0) node_.AddMixTarget(std::move(target));
        return code;
    });
}

}  // namespace VantrelSDK
