#pragma once

class M3dView;
class MDrawData;
class MDrawInfo;
class MDrawRequest;
class MDrawRequestQueue;
class MPxSurfaceShape;

namespace minihost {
class PluginLogic;
}

/// How a module's own shape is drawn. The host makes one for each such shape, by the creator that
/// the module registered, when it draws it for the first time, and owns it.
class MPxSurfaceShapeUI {
  public:
    virtual ~MPxSurfaceShapeUI() = default;

    /// Says, once in each refresh of a view, what there is to draw, in order.
    virtual void getDrawRequests(const MDrawInfo&, bool /*objectAndActiveOnly*/,
                                 MDrawRequestQueue&) {}
    /// Draws one of them. OpenGL goes to the view, and takes the shape's own coordinates.
    virtual void draw(const MDrawRequest&, M3dView&) const {}

    /// Null while there is none.
    MPxSurfaceShape* surfaceShape() const { return shape_; }
    /// Wraps what `draw` will want.
    void getDrawData(void* geometry, MDrawData& data) const;

  private:
    friend class minihost::PluginLogic;

    MPxSurfaceShape* shape_ = nullptr;
};
