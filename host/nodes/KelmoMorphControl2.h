#pragma once

#include <maya/MObjectArray.h>
#include <maya/MPlug.h>
#include <maya/MTypes.h>

#include "core/anim/LControlCollection.h"

namespace VantrelSDK {

/// A track that follows what the person does to the keys of a curve of the host's, which shows
/// them. A curve's value at a key is the key's target. Edits that a track can't follow are told,
/// and the curve keeps them.
class KelmoMorphControl2 : public LMorphControl2 {
  public:
    using LMorphControl2::LMorphControl2;
    ~KelmoMorphControl2() override { UnRegisterKeysCallback(); }

    /// Follows the curve that feeds a plug from now on, and no other.
    void RegisterKeysCallback(const MPlug& plug);
    void UnRegisterKeysCallback();

  private:
    static void animMsgCallback(MObject& node, MObjectArray& editedKeys, void* clientData);
    void Follow(const MObject& edit);
    void KeyMoved(const MObject& edit);
    void KeyAddedOrRemoved(const MObject& edit);
    void BlockAddedOrRemoved(const MObject& edit);

    MCallbackId cbkid = 0;
};

class KelmoControlCollection : public LControlCollection {
  public:
    using LControlCollection::LControlCollection;

    std::unique_ptr<LMorphControl2> createNewControl() override {
        return std::make_unique<KelmoMorphControl2>(this);
    }
    KelmoMorphControl2* GetTrack(int i) const {
        return static_cast<KelmoMorphControl2*>(GetMorphCtrl(i));
    }
};

}  // namespace VantrelSDK
