#pragma once

#include <maya/MTypes.h>

namespace VantrelSDK {

/// In a session what is selected of a mesh is what brushes may touch.
class KelmoSelMessage {
  public:
    /// Once for each session that begins; listening starts with the first and ends with the last.
    static void RegisterCallbacks();
    static void DeregisterCallbacks();
    /// Hands the present selection on, as after a change of it.
    static void Update();

  private:
    inline static MCallbackId callbackID = 0;
    inline static int sessions = 0;
};

}  // namespace VantrelSDK
