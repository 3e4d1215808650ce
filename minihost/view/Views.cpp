#include "minihost/view/Views.h"

#include <algorithm>
#include <numbers>

#include "minihost/Host.h"
#include "minihost/graph/Evaluation.h"
#include "minihost/mesh/MeshTypes.h"
#include "minihost/view/Camera.h"
#include "minihost/view/GLContext.h"
#include "minihost/view/ShapeDrawing.h"

namespace minihost {
namespace {

/// How the named views look, in degrees about x and y.
struct NamedView {
    const char* name;
    double x, y;
    bool flat;
};
constexpr NamedView kNamed[] = {
    {"persp", -12, 28, false},
    {"front", 0, 0, true},
    {"side", 0, 90, true},
    {"top", -90, 0, true},
};

/// Enough of a mesh to say where it is.
constexpr size_t kMostPoints = 50000;

void Turn(DagNode& camera, const NamedView& view) {
    constexpr double kDegree = std::numbers::pi / 180;
    const double turn[3] = {view.x * kDegree, view.y * kDegree, 0};
    WriteNumbers(*camera.parent()->FindSlot("rotate"), turn, 3);
    Write(*camera.FindSlot("orthographic"), view.flat ? 1.0 : 0.0);
}

/// Of some nodes, or of the scene where there are none.
void AddPoints(const std::vector<NodePtr>& nodes, std::vector<MPoint>& points) {
    for (const NodePtr& node : nodes)
        if (auto* dag = dynamic_cast<DagNode*>(node.get())) AddVisiblePoints(*dag, points);
    if (nodes.empty()) AddVisiblePoints(Host::Get().scene.world(), points);
}

}  // namespace

void AddVisiblePoints(DagNode& node, std::vector<MPoint>& points) {
    if (!IsShown(node)) return;
    auto* shape = node.LogicAs<ShapeLogic>();
    if (shape && node.IsShape()) {
        const MMatrix world = node.WorldMatrix();
        const MeshPtr mesh = node.type().name == "mesh" ? MeshOf(node) : nullptr;
        const MBoundingBox box = mesh ? MBoundingBox() : shape->Bounds();
        const size_t count = mesh ? mesh->points().size() : 0, stride = 1 + count / kMostPoints;
        for (size_t i = 0; i < count; i += stride) {
            const MFloatVector& p = mesh->points()[i];
            points.push_back(MPoint(p.x, p.y, p.z) * world);
        }
        for (int corner = 0; corner < 8 && !box.isEmpty(); ++corner)
            points.push_back(MPoint(corner & 1 ? box.max().x : box.min().x,
                                    corner & 2 ? box.max().y : box.min().y,
                                    corner & 4 ? box.max().z : box.min().z) *
                             world);
    }
    for (const DagNodePtr& child : node.children()) AddVisiblePoints(*child, points);
}

Views::Views() = default;
Views::~Views() = default;

std::string Views::Begin() {
    if (disabled_) return "there is no OpenGL on this machine";
    std::string error;
    if (!context_) context_ = GLContext::MakeOffscreen(error);
    if (context_ && !context_->MakeCurrent()) error = "the context of OpenGL is lost";
    return error;
}

void Views::Tidy() {
    std::erase_if(views_, [this](const Entry& entry) {
        const bool gone = !entry.view->window && !entry.view->camera()->isInScene();
        if (gone && active_ == entry.view.get()) active_ = nullptr;
        return gone;
    });
}

DagNodePtr Views::FindCamera(const std::string& name, bool& made, std::string& error) {
    Host& host = Host::Get();
    made = false;
    if (const auto node = std::dynamic_pointer_cast<DagNode>(host.scene.Find(name))) {
        DagNode* shape = node->Shape();
        if (shape && shape->type().IsA("camera")) return shape->ShareDag();
        error = "\"" + name + "\" is no camera";
        return nullptr;
    }
    const auto* named = std::ranges::find(kNamed, name, &NamedView::name);
    if (named == std::end(kNamed)) {
        error =
            "there is no camera \"" + name + "\"; views with a name are persp, front, side, top";
        return nullptr;
    }
    const DagNodePtr camera = host.MakeDefaultCamera(name);
    Turn(*camera, *named);
    made = true;
    return camera;
}

View* Views::Open(const PictureOptions& options, std::string& error) {
    error = Begin();
    if (!error.empty()) return nullptr;
    Tidy();
    bool made = false;
    const DagNodePtr camera = FindCamera(options.camera, made, error);
    if (!camera) return nullptr;
    auto entry = FindPicture(camera);
    if (entry == views_.end())
        entry = views_.insert(entry, {std::make_unique<View>(*context_, camera), {}, made, {}});
    View& view = *entry->view;
    error = view.Resize(options.width, options.height, options.samples);
    if (!error.empty()) return nullptr;
    entry->follows = entry->follows && (made || entry->framed == view.ModelView());
    if (entry->follows) {
        std::vector<MPoint> points;
        AddVisiblePoints(Host::Get().scene.world(), points);
        Camera(*camera).Frame(points, view.width(), view.height());
        entry->framed = view.ModelView();
    }
    if (!active_ || !active_->window) active_ = &view;
    return &view;
}

std::vector<Views::Entry>::iterator Views::FindPicture(const DagNodePtr& camera) {
    return std::ranges::find_if(
        views_, [&](const Entry& e) { return !e.view->window && e.view->camera() == camera; });
}

View* Views::OpenWindow(std::unique_ptr<GLContext> context, ViewWindow& window,
                        const PictureOptions& options, std::string& error) {
    bool made = false;
    const DagNodePtr camera = FindCamera(options.camera, made, error);
    if (!camera) return nullptr;
    context_ = std::move(context);
    auto view = std::make_unique<View>(*context_, camera);
    error = view->Resize(options.width, options.height, options.samples);
    if (!error.empty()) return nullptr;
    view->window = &window;
    active_ = view.get();
    views_.push_back({std::move(view), {}, false, options.camera});
    Frame(*active_, {});
    return active_;
}

void Views::Forget() {
    active_ = nullptr;
    views_.clear();
    context_.reset();
}

std::string Views::LookThrough(View& view, const std::string& name) {
    bool made = false;
    std::string error;
    const DagNodePtr camera = FindCamera(name, made, error);
    if (!camera) return error;
    view.SetCamera(camera);
    for (Entry& entry : views_)
        if (entry.view.get() == &view) entry.camera = name;
    if (made) Frame(view, {});
    return {};
}

void Views::Renew() {
    for (const Entry& entry : views_)
        if (entry.view->window && !entry.view->camera()->isInScene())
            LookThrough(*entry.view, std::string(entry.camera));
    Tidy();
}

void Views::Frame(View& view, const std::vector<NodePtr>& nodes) {
    std::vector<MPoint> points;
    AddPoints(nodes, points);
    Camera(*view.camera()).Frame(points, view.width(), view.height());
}

std::string Views::Draw(const PictureOptions& options, Picture& picture) {
    std::string error;
    View* view = Open(options, error);
    if (view) error = view->Draw();
    if (error.empty()) picture = view->Read();
    return error;
}

std::string Views::Frame(const PictureOptions& options, const std::vector<NodePtr>& nodes) {
    bool made = false;
    std::string error;
    const DagNodePtr shape = FindCamera(options.camera, made, error);
    if (!shape) return error;
    const auto entry = FindPicture(shape);
    const bool open = entry != views_.end();
    if (open) entry->follows = false;
    std::vector<MPoint> points;
    AddPoints(nodes, points);
    Camera(*shape).Frame(points, open ? entry->view->width() : options.width,
                         open ? entry->view->height() : options.height);
    return {};
}

}  // namespace minihost
