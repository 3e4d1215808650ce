#pragma once

#include <functional>
#include <memory>
#include <string>

namespace VantrelSDK {

class LBlindData;
class LMeshBasesUV2;
class LMeshObject;
class LNode;

/// The version of a node's state, beside the block that holds it; and that of any as a text.
int GetKelmoVersionInt();
std::string GetKelmoVersionString(int version = GetKelmoVersionInt());

/// The state of a node as a record: object with UV channels, neutral, targets of all lists,
/// tracks, groups, delta and colour delta. Settings and what a session makes are not in it.
class LNodeRecord {
  public:
    /// Makes an object that belongs to the node, for a node that has none.
    using ObjectMaker = std::function<std::unique_ptr<LMeshObject>()>;

    /// The node is borrowed.
    LNodeRecord(LNode& node, ObjectMaker makeObject)
        : node_(node), makeObject_(std::move(makeObject)) {}

    /// Both return one of LBlindData's codes. Levels above the active one follow first what was
    /// sculpted on it; the delta goes out in tangent space, from an open session too. Reading ends
    /// a session and drops all targets first; a node that has an object keeps its input when it is
    /// of as many vertices. A failed reading leaves the node with what has been read up to there.
    int WriteTo(LBlindData* stream);
    int ReadFrom(LBlindData* stream);
    /// What could not be done, as the host shows it, when the last code wasn't 0.
    const std::string& Message() const { return message_; }

  private:
    template <class Write>
    bool Put(unsigned short tag, const Write& write);
    bool PutTargets();
    void ClearTargets();
    int ReadChunk(unsigned short tag);
    int ReadObject();
    int ReadDelta();
    int ReadFrames(std::unique_ptr<LMeshBasesUV2>& frames);
    int ReadGroup();
    int ReadMixTargets();
    int ReadOldTracks(int type);
    int Failed(int code, const char* text);

    LNode& node_;
    ObjectMaker makeObject_;
    LBlindData* stream_ = nullptr;
    int code_ = 0;
    bool hasTracks_ = false;
    std::string message_;
};

}  // namespace VantrelSDK
