#pragma once

#include <string>

#include "maya/MMatrix.h"
#include "maya/MPoint.h"
#include "minihost/dag/DagNode.h"
#include "minihost/view/FrameBuffer.h"

namespace minihost {

class GLContext;
class ViewWindow;

/// The scene as a camera sees it, in a frame buffer of its own. Between BeginGL and EndGL, and
/// while it draws, the context is current and drawing goes to that buffer. The context must
/// outlive it.
class View {
  public:
    View(GLContext& context, DagNodePtr camera) : context_(context), camera_(std::move(camera)) {}
    ~View();

    /// See FrameBuffer::Resize.
    std::string Resize(int width, int height, int samples);
    /// Draws all shapes of the scene that are visible, over a plain background. Empty, or why not.
    std::string Draw();
    Picture Read();
    /// Puts what was drawn into the context's window, see FrameBuffer::Show.
    void Show(int x, int y) { pixels_.Show(x, y); }
    bool BeginGL();
    void EndGL();

    int width() const { return pixels_.width(); }
    int height() const { return pixels_.height(); }
    /// The camera's shape.
    const DagNodePtr& camera() const { return camera_; }
    void SetCamera(DagNodePtr camera) { camera_ = std::move(camera); }
    /// What shows it; null for one without a window. Borrowed.
    ViewWindow* window = nullptr;
    MMatrix ModelView() const;
    MMatrix Projection() const;
    /// Where a point of the world is, in pixels from the lower left corner, and its depth from 0 to
    /// 1. False for one behind the camera, with nothing in `place`.
    bool Project(const MPoint& world, MPoint& place) const;
    /// The point of the world that is seen in a place, with a depth as above.
    MPoint Unproject(const MPoint& place) const;

  private:
    GLContext& context_;
    DagNodePtr camera_;
    FrameBuffer pixels_;
};

}  // namespace minihost
