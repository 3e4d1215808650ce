#include "minihost/view/View.h"

#include <GL/gl.h>

#include "minihost/Host.h"
#include "minihost/view/Camera.h"
#include "minihost/view/GLContext.h"
#include "minihost/view/ShapeDrawing.h"

namespace minihost {
namespace {

constexpr float kBackground[3] = {0.36f, 0.37f, 0.40f};

void DrawVisible(View& view, DagNode& node) {
    if (!IsShown(node)) return;
    if (node.IsShape()) {
        const MMatrix modelView = node.WorldMatrix() * view.ModelView();
        glLoadMatrixd(&modelView.matrix[0][0]);
        DrawShape(view, node);
    }
    // A shape may bring or take nodes: what is below now is what is drawn.
    const std::vector<DagNodePtr> children = node.children();
    for (const DagNodePtr& child : children) DrawVisible(view, *child);
}

}  // namespace

View::~View() {
    context_.MakeCurrent();
}

std::string View::Resize(int width, int height, int samples) {
    if (!context_.MakeCurrent()) return "the context of OpenGL is lost";
    return pixels_.Resize(width, height, samples);
}

bool View::BeginGL() {
    if (!context_.MakeCurrent()) return false;
    pixels_.Bind();
    return true;
}

void View::EndGL() {
    glFlush();
}

std::string View::Draw() {
    if (!BeginGL()) return "the context of OpenGL is lost";
    glPushAttrib(GL_ALL_ATTRIB_BITS);
    glClearColor(kBackground[0], kBackground[1], kBackground[2], 1);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glMatrixMode(GL_PROJECTION);
    const MMatrix projection = Projection();
    glLoadMatrixd(&projection.matrix[0][0]);
    glMatrixMode(GL_MODELVIEW);
    DrawVisible(*this, Host::Get().scene.world());
    glPopAttrib();
    EndGL();
    return {};
}

Picture View::Read() {
    context_.MakeCurrent();
    return pixels_.Read();
}

MMatrix View::ModelView() const {
    return Camera(*camera_).ModelView();
}

MMatrix View::Projection() const {
    return Camera(*camera_).Projection(width(), height());
}

bool View::Project(const MPoint& world, MPoint& place) const {
    MPoint clip = world * ModelView() * Projection();
    if (!(clip.w > 0)) return false;
    clip.cartesianize();
    place = MPoint((clip.x + 1) / 2 * width(), (clip.y + 1) / 2 * height(), (clip.z + 1) / 2);
    return true;
}

MPoint View::Unproject(const MPoint& place) const {
    MPoint world = MPoint(place.x / width() * 2 - 1, place.y / height() * 2 - 1, place.z * 2 - 1) *
                   (ModelView() * Projection()).inverse();
    world.cartesianize();
    return world;
}

}  // namespace minihost
