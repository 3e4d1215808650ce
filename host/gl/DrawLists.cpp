#include "host/gl/DrawLists.h"

#include <GL/gl.h>
#include <maya/MGlobal.h>

#include <utility>

#include "host/gl/UnusedNames.h"

namespace VantrelSDK {

DrawList::~DrawList() {
    LetGoOfList(name_);
}

DrawList::DrawList(DrawList&& other) noexcept
    : name_(std::exchange(other.name_, 0)), valid_(std::exchange(other.valid_, false)) {}

DrawList& DrawList::operator=(DrawList&& other) noexcept {
    std::swap(name_, other.name_);
    std::swap(valid_, other.valid_);
    return *this;
}

bool DrawList::Begin() {
    if (!name_) name_ = glGenLists(1);
    if (!name_) {
        MGlobal::displayError("LGLVoxel: Can not generate GL display list id");
        return false;
    }
    glNewList(name_, GL_COMPILE);
    return true;
}

void DrawList::End() {
    glEndList();
    valid_ = true;
}

void DrawList::Call() const {
    if (name_) glCallList(name_);
}

}  // namespace VantrelSDK
