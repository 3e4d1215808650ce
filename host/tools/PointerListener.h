#pragma once

class M3dView;

namespace VantrelSDK {

/// Hears what the pointer does over the views while no button makes a drag of it.
class PointerListener {
  public:
    virtual ~PointerListener() = default;

    /// The pointer is in a place of a view, in pixels from its lower left corner; also in a drag.
    virtual void onMouseMove(M3dView& view, short x, short y) = 0;
    virtual void onMouseLeave() = 0;
    /// Escape.
    virtual void onCancel() {}
    /// Before each motion.
    virtual void BeforeMove() {}
};

}  // namespace VantrelSDK
