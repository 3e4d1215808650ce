#include "minihost/view/ShapeDrawing.h"

#include <GL/gl.h>

#include <algorithm>

#include "maya/M3dView.h"
#include "maya/MDrawInfo.h"
#include "maya/MDrawRequestQueue.h"
#include "maya/MPxLocatorNode.h"
#include "maya/MPxSurfaceShapeUI.h"
#include "minihost/Host.h"
#include "minihost/graph/Evaluation.h"
#include "minihost/mesh/MeshTypes.h"
#include "minihost/plugin/PluginLogic.h"

namespace minihost {
namespace {

/// Keeps OpenGL's state while it lives.
class KeptState {
  public:
    KeptState() {
        glPushAttrib(GL_ALL_ATTRIB_BITS);
        glPushClientAttrib(GL_CLIENT_ALL_ATTRIB_BITS);
    }
    ~KeptState() {
        glPopClientAttrib();
        glPopAttrib();
    }
    KeptState(const KeptState&) = delete;
    KeptState& operator=(const KeptState&) = delete;
};

/// A light above the camera's left shoulder, for whoever turns lighting on.
void PlaceLight() {
    const float from[] = {-0.35f, 0.5f, 0.8f, 0}, dark[] = {0.12f, 0.12f, 0.13f, 1},
                light[] = {0.72f, 0.72f, 0.70f, 1};
    glEnable(GL_LIGHT0);
    glPushMatrix();
    glLoadIdentity();
    glLightfv(GL_LIGHT0, GL_POSITION, from);
    glPopMatrix();
    glLightfv(GL_LIGHT0, GL_AMBIENT, dark);
    glLightfv(GL_LIGHT0, GL_DIFFUSE, light);
}

/// One colour for both sides.
void LightGrey() {
    const float grey[] = {0.8f, 0.8f, 0.8f, 1};
    glEnable(GL_LIGHTING);
    glEnable(GL_NORMALIZE);
    glLightModeli(GL_LIGHT_MODEL_TWO_SIDE, 1);
    glMaterialfv(GL_FRONT_AND_BACK, GL_AMBIENT_AND_DIFFUSE, grey);
}

/// Fans from first corners.
std::vector<GLuint> Triangles(const Polygons& polygons) {
    std::vector<GLuint> triangles;
    triangles.reserve(polygons.corners.size() * 3);
    for (int p = 0; p < polygons.count(); ++p) {
        const auto corners = polygons.Of(p);
        for (size_t i = 2; i < corners.size(); ++i)
            for (const int corner : {corners[0], corners[i - 1], corners[i]})
                triangles.push_back(static_cast<GLuint>(corner));
    }
    return triangles;
}

std::vector<MFloatVector> Normals(const std::vector<MFloatVector>& points,
                                  const std::vector<GLuint>& triangles) {
    std::vector<MFloatVector> normals(points.size());
    for (size_t i = 0; i + 2 < triangles.size(); i += 3) {
        const MFloatVector &a = points[triangles[i]], &b = points[triangles[i + 1]],
                           &c = points[triangles[i + 2]];
        const MFloatVector n = (b - a) ^ (c - a);
        for (size_t k = i; k < i + 3; ++k) normals[triangles[k]] += n;
    }
    return normals;
}

void DrawMesh(const MeshData& mesh) {
    const std::vector<GLuint> triangles = Triangles(mesh.polygons());
    if (triangles.empty()) return;
    const std::vector<MFloatVector> normals = Normals(mesh.points(), triangles);
    static_assert(sizeof(MFloatVector) == 3 * sizeof(float));
    LightGrey();
    glEnableClientState(GL_VERTEX_ARRAY);
    glEnableClientState(GL_NORMAL_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, mesh.points().data());
    glNormalPointer(GL_FLOAT, 0, normals.data());
    glDrawElements(GL_TRIANGLES, static_cast<GLsizei>(triangles.size()), GL_UNSIGNED_INT,
                   triangles.data());
}

/// Polygons that are selected, over the mesh.
void DrawSelected(const DagNode& shape, const MeshData& mesh) {
    const Polygons& polygons = mesh.polygons();
    glDisable(GL_LIGHTING);
    glEnable(GL_POLYGON_OFFSET_FILL);
    glPolygonOffset(-1, -1);
    glEnable(GL_BLEND);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glColor4f(1, 0.55f, 0.1f, 0.6f);
    for (const Selected& item : Host::Get().scene.selection) {
        const bool here = item.node.get() == &shape || item.node.get() == shape.parent();
        if (!here || item.component.kind != MFn::kMeshPolygonComponent) continue;
        for (const int p : item.component.elements) {
            if (p < 0 || p >= polygons.count()) continue;
            glBegin(GL_TRIANGLE_FAN);
            for (const int corner : polygons.Of(p))
                glVertex3fv(&mesh.points()[static_cast<size_t>(corner)].x);
            glEnd();
        }
    }
}

void DrawLocator(Node& locator) {
    double at[3], half[3];
    for (unsigned i = 0; i < 3; ++i) {
        at[i] = NumberOf(Pull(*locator.FindSlot("localPosition")->parts[i]));
        half[i] = NumberOf(Pull(*locator.FindSlot("localScale")->parts[i]));
    }
    glDisable(GL_LIGHTING);
    glColor3f(0.1f, 0.1f, 0.12f);
    glBegin(GL_LINES);
    for (unsigned axis = 0; axis < 3; ++axis)
        for (const double side : {-1., 1.}) {
            double end[3] = {at[0], at[1], at[2]};
            end[axis] += side * half[axis];
            glVertex3dv(end);
        }
    glEnd();
}

void DrawModules(View& view, DagNode& shape, const MPxSurfaceShapeUI& look) {
    M3dView port(&view);
    MDrawRequestQueue queue;
    const_cast<MPxSurfaceShapeUI&>(look).getDrawRequests(
        MDrawInfo(port, MDagPath(MObject(shape.ShareDag()))), false, queue);
    for (const MDrawRequest& request : queue.requests())
        if (request.component()) request.component()->draw(request, port);
}

void DrawModules(View& view, DagNode& shape, MPxLocatorNode& locator) {
    M3dView port(&view);
    const bool selected =
        std::ranges::any_of(Host::Get().scene.selection, [&shape](const Selected& item) {
            return item.node.get() == &shape || item.node.get() == shape.parent();
        });
    locator.draw(port, MDagPath(MObject(shape.ShareDag())), M3dView::kGouraudShaded,
                 selected ? M3dView::kActive : M3dView::kDormant);
}

bool IsOn(Node& node, const char* attribute) {
    return NumberOf(Pull(*node.FindSlot(attribute))) != 0;
}

}  // namespace

bool IsShown(DagNode& node) {
    if (!node.FindSlot("visibility")) return true;  // the world
    return IsOn(node, "visibility") && !IsOn(node, "intermediateObject");
}

void DrawShape(View& view, DagNode& shape) {
    const KeptState kept;
    PlaceLight();
    if (auto* logic = shape.LogicAs<PluginLogic>()) {
        if (MPxSurfaceShapeUI* look = logic->Look()) DrawModules(view, shape, *look);
        if (auto* locator = dynamic_cast<MPxLocatorNode*>(logic->user()))
            DrawModules(view, shape, *locator);
    } else if (shape.type().name == "mesh") {
        if (const MeshPtr mesh = MeshOf(shape)) {
            DrawMesh(*mesh);
            DrawSelected(shape, *mesh);
        }
    } else if (shape.type().name == "locator") {
        DrawLocator(shape);
    }
}

}  // namespace minihost
