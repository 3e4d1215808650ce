#include "host/gl/UnusedNames.h"

#include <vector>

#include "host/gl/GLFunctions.h"

namespace VantrelSDK {

namespace {

struct Names {
    std::vector<unsigned> textures, frames, buffers, lists;
};

Names& Unused() {
    static Names names;
    return names;
}

}  // namespace

void LetGoOfTexture(unsigned name) {
    if (name) Unused().textures.push_back(name);
}

void LetGoOfFrame(unsigned frame, unsigned renderBuffer) {
    if (frame) Unused().frames.push_back(frame);
    LetGoOfRenderBuffer(renderBuffer);
}

void LetGoOfRenderBuffer(unsigned name) {
    if (name) Unused().buffers.push_back(name);
}

void LetGoOfList(unsigned name) {
    if (name) Unused().lists.push_back(name);
}

void FreeUnusedNames() {
    Names& names = Unused();
    for (const unsigned name : names.lists) glDeleteLists(name, 1);
    for (const unsigned name : names.textures) glDeleteTextures(1, &name);
    if (GLUse()) {
        for (const unsigned name : names.frames) glDeleteFramebuffersEXT(1, &name);
        for (const unsigned name : names.buffers) glDeleteRenderbuffersEXT(1, &name);
    }
    names = {};
}

}  // namespace VantrelSDK
