#pragma once

#include <memory>
#include <string>
#include <vector>

#include "maya/MPoint.h"
#include "minihost/view/View.h"

namespace minihost {

class GLContext;
class ViewWindow;

/// What a picture is to be.
struct PictureOptions {
    /// Of a camera, a transform above one, or one of the named views: "persp", "front", "side",
    /// "top".
    std::string camera = "persp";
    int width = 960, height = 720;
    /// A pixel, averaged; 0 for one.
    int samples = 4;
};

/// The views that there are, in one context: those in windows, and one for each camera that a
/// picture was drawn through.
class Views {
  public:
    Views();
    ~Views();

    /// The view through a camera, of a size, and made active. A named view gets its camera when it
    /// is asked for; as long as nobody moves that, it frames all that is visible. Null with the
    /// reason in `error`.
    View* Open(const PictureOptions& options, std::string& error);
    /// Forgets all views and the context, so that another one can be made: drivers let a thread
    /// have one of a kind.
    void Forget();
    /// A view for a window, which stays until it is forgotten and is the active one meanwhile. All
    /// views draw in `context` from here on. To be called when there are none.
    View* OpenWindow(std::unique_ptr<GLContext> context, ViewWindow& window,
                     const PictureOptions& options, std::string& error);
    /// What a view sees from here on: a camera, or a named view, as Open makes it. Empty, or why
    /// not.
    std::string LookThrough(View& view, const std::string& camera);
    /// When the scene is a new one: views of windows get its cameras in the place of those that
    /// went with the old one.
    void Renew();
    /// Draws through a camera and reads what was drawn. Empty, or why not.
    std::string Draw(const PictureOptions& options, Picture& picture);
    /// Moves a camera so that all that is visible, or only `nodes`, fits into its view, which has
    /// the size of the options where it is not open. Empty, or why not.
    std::string Frame(const PictureOptions& options, const std::vector<NodePtr>& nodes);
    void Frame(View& view, const std::vector<NodePtr>& nodes);

    /// That of the window; without one, the one that was opened last, null while there is none.
    View* active() const { return active_; }
    size_t count() const { return views_.size(); }
    View& At(size_t index) const { return *views_[index].view; }
    /// Forgets the views of cameras that are gone.
    void Tidy();

    /// Makes the context where there is none, and makes it current. Empty, or why not.
    std::string Begin();
    /// Tests put another in the place of the context, null for a machine without one.
    void Disable() { disabled_ = true; }
    void Enable() { disabled_ = false; }

  private:
    struct Entry {
        std::unique_ptr<View> view;
        /// Where a named view's camera was put; it follows the scene while it stands there.
        MMatrix framed;
        bool follows = false;
        /// Of a window's view: what it looks through.
        std::string camera;
    };

    DagNodePtr FindCamera(const std::string& name, bool& made, std::string& error);
    /// The view of pictures through a camera.
    std::vector<Entry>::iterator FindPicture(const DagNodePtr& camera);

    std::unique_ptr<GLContext> context_;
    std::vector<Entry> views_;
    View* active_ = nullptr;
    bool disabled_ = false;
};

/// Points of the world about what is visible of a node and below it: of a mesh some or all of its
/// vertices, of other shapes the corners of their boxes.
void AddVisiblePoints(DagNode& node, std::vector<MPoint>& points);

}  // namespace minihost
