#pragma once

#include <maya/MStatus.h>
#include <maya/MTypes.h>

namespace VantrelSDK {

/// What nodes do around a render of the host's: they leave the tool, show what a render shows, and
/// come back.
class KelmoRenderMessage {
  public:
    static MStatus RegisterRenderCallbacks();
    static void DeregisterRenderCallbacks();

    /// Makes the scene's render settings call the command KelmoRender around a render, behind what
    /// they call already.
    static void CheckRendererMELs();

    // The callbacks, which commands run too; `client` is not used.

    static void KelmoPreRender(void* client);
    static void KelmoPreRenderFrame(void* client);
    static void KelmoPostRender(void* client);

    /// Whether the host is rendering.
    inline static bool isRendering = false;

  private:
    inline static MCallbackId kelmoPreRenderCallbackID = 0, kelmoPostRenderCallbackID = 0;
};

}  // namespace VantrelSDK
