#include "host/tools/KelmoToolLocator.h"

#include <GL/gl.h>
#include <maya/MFnNumericAttribute.h>
#include <maya/MGlobal.h>

#include <cmath>
#include <numbers>

namespace VantrelSDK {

namespace {

constexpr int kSegments = 30;
/// Of the crosses: a share of the radius, and pixels.
constexpr double kCrossShare = 0.1;
constexpr int kCrossPixels = 6;

/// Lines over all that was drawn, whatever is in front of them.
class LinesOnTop {
  public:
    LinesOnTop() {
        glPushAttrib(GL_ALL_ATTRIB_BITS);
        glDisable(GL_LIGHTING);
        glDisable(GL_TEXTURE_2D);
        glDisable(GL_DEPTH_TEST);
        glEnable(GL_BLEND);
        glEnable(GL_LINE_SMOOTH);
        glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
        glLineWidth(1.5f);
    }
    ~LinesOnTop() { glPopAttrib(); }
    LinesOnTop(const LinesOnTop&) = delete;
    LinesOnTop& operator=(const LinesOnTop&) = delete;
};

void Vertex(const MVector& v) {
    glVertex3d(v.x, v.y, v.z);
}

/// Some direction across another.
MVector Across(const MVector& dir) {
    const MVector axis = std::abs(dir.x) < 0.9 ? MVector(1, 0, 0) : MVector(0, 1, 0);
    return (dir ^ axis).normal();
}

}  // namespace

MObject KelmoToolLocator::visibility2;
MObject KelmoToolLocator::brushShape;

MStatus KelmoToolLocator::initialize() {
    const auto add = [](MObject& object, const char* name, const char* brief,
                        MFnNumericData::Type kind) {
        MStatus status;
        MFnNumericAttribute number;
        object = number.create(name, brief, kind, 0, &status);
        if (status) {
            number.setStorable(false);
            number.setHidden(true);
            status = addAttribute(object);
        }
        if (!status)
            MGlobal::displayError(MString("KelmoToolLocator: can not add ") + name + " attribute");
        return status;
    };
    CHECK_MSTATUS_AND_RETURN_IT(add(visibility2, "visibility2", "vi2", MFnNumericData::kBoolean));
    return add(brushShape, "brushShape", "brs", MFnNumericData::kInt);
}

void KelmoToolLocator::setViewDir(const MVector& dir) {
    brush_.view = dir.normal();
}

void KelmoToolLocator::setUpDir(const MVector& dir) {
    up_ = dir.normal();
    brush_.orth = (brush_.view ^ up_).normal();
}

int KelmoToolLocator::Number(const MObject& attribute) const {
    return MPlug(thisMObject(), attribute).asInt();
}

/// What the keys that are held would make of the mode.
void KelmoToolLocator::SetColor() {
    const int mode = GetGlobMode();
    if (IsShiftPressed() && GetShiftMode(mode) != mode)
        glColor3f(0, 1, 1);
    else if (IsCtrlPressed() && GetCtrlMode(mode) != mode)
        glColor3f(1, 0, 0);
    else
        glColor3f(0, 1, 0);
}

void KelmoToolLocator::draw(M3dView& view, const MDagPath&, M3dView::DisplayStyle,
                            M3dView::DisplayStatus) {
    const LinesOnTop lines;
    SetColor();
    if (Number(visibility2)) {
        switch (Number(brushShape)) {
            case kLiesOnSurface:
                drawPlanar();
                break;
            case kSphere:
                drawSphere();
                break;
            default:
                drawViewAlignedCircle();
                drawCross();
        }
    }
    if (smallCross2) drawCross();
    if (smallCross) drawSmallCross(view);
}

void KelmoToolLocator::drawRing(const MVector& x, const MVector& y) {
    glBegin(GL_LINE_LOOP);
    for (int i = 0; i < kSegments; ++i) {
        const double angle = i * 2 * std::numbers::pi / kSegments;
        Vertex((x * std::cos(angle) + y * std::sin(angle)) * brush_.radius);
    }
    glEnd();
}

void KelmoToolLocator::drawViewAlignedCircle() {
    drawRing(brush_.orth, up_);
}

void KelmoToolLocator::drawPlanar() {
    const MVector across = Across(norm_);
    drawRing(across, norm_ ^ across);
}

void KelmoToolLocator::drawSphere() {
    drawViewAlignedCircle();
    drawRing(brush_.orth, brush_.view);
    drawRing(up_, brush_.view);
}

void KelmoToolLocator::drawCross() {
    const double half = brush_.radius * kCrossShare;
    glBegin(GL_LINES);
    for (const MVector& arm : {brush_.orth, up_}) {
        Vertex(arm * half);
        Vertex(arm * -half);
    }
    glEnd();
}

void KelmoToolLocator::drawSmallCross(const M3dView& view) {
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glOrtho(0, view.portWidth(), 0, view.portHeight(), -1, 1);
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    const double x = cursorx + 0.5, y = cursory + 0.5;
    glBegin(GL_LINES);
    glVertex2d(x - kCrossPixels, y);
    glVertex2d(x + kCrossPixels, y);
    glVertex2d(x, y - kCrossPixels);
    glVertex2d(x, y + kCrossPixels);
    glEnd();
    glPopMatrix();
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
}

}  // namespace VantrelSDK
