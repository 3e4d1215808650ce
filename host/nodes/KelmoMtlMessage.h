#pragma once

#include <maya/MObject.h>
#include <maya/MTypes.h>

namespace VantrelSDK {

/// A mesh that is given another shader gets a node that parts its polygons by it; then what the
/// sculpted mesh knows of its materials is out of date.
class KelmoMtlMessage {
  public:
    static void RegisterCallbacks();
    static void DeregisterCallbacks();

    /// The materials of the current node are to be read again.
    inline static bool needRehash = false;

  private:
    static void Callback(MObject& node, void* client);

    inline static MCallbackId cID = 0;
};

}  // namespace VantrelSDK
