#pragma once

#include <maya/MPxSurfaceShapeUI.h>

#include "host/gl/DisplaySettings.h"

namespace VantrelSDK {

class KelmoSurfaceCallback;

/// Decides in each refresh what of the surface is drawn: all of it, or the pixels that a stroke has
/// changed.
class KelmoSurfaceShapeUI : public MPxSurfaceShapeUI {
  public:
    static void* creator() { return new KelmoSurfaceShapeUI; }

    void getDrawRequests(const MDrawInfo& info, bool objectAndActiveOnly,
                         MDrawRequestQueue& queue) override;
    void draw(const MDrawRequest& request, M3dView& view) const override;

    /// Pixels that have not changed are kept; a preference.
    static bool m_dopix;

  private:
    /// What a picture depends on beside the surface and the view.
    struct Look {
        DisplaySettings settings;
        int level = -1;
        bool operator==(const Look&) const = default;
    };

    bool IsDirty(const MDrawInfo& info, KelmoSurfaceCallback& callback,
                 const DisplaySettings& settings);

    Look last_;
    bool wasStroking_ = false;
};

}  // namespace VantrelSDK
