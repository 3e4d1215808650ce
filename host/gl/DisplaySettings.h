#pragma once

#include "host/gl/MaskSettings.h"

namespace VantrelSDK {

class LPattern;
class MLNode;

/// How a surface is drawn: a node's display settings at one time.
struct DisplaySettings {
    /// 0 isolines, 1 and wireframe, 2 shaded, 3 with isolines, 4 with both.
    int mode = 3;
    bool shaders = true, speculars = true, diffuse = true, cullBackface = true;
    float opacity = 1;
    bool shadow = false, ssao = false;
    /// The filter's taps along an axis; the light's place in degrees, seen from the camera.
    int shadowFilter = 7, shadowAzm = 27, shadowAlt = -142;
    /// Between taps, in parts of the view; taps along an axis.
    float ssaoRadius = 0.007f;
    int ssaoSamples = 20;
    bool affectGeometry = true, affectColor = false, affectStencil = false;
    bool useStencil = false, invertStencil = false;
    /// Brushes change maps, or the stencils over them, of materials that there are.
    bool affectTexture = false, affectTexStencil = false;
    /// How much of a map is seen, over the plain surface.
    float textureOpacity = 1;
    /// The pattern that lies over the surface by its UVs, and its state; null for none.
    const LPattern* pattern = nullptr;
    unsigned patternRevision = 0;
    int patternUVchannel = 0;
    float patternOpacity = 0.2f;
    /// UVs beyond a tile are brought back into it.
    bool wrapUVs = false;
    bool underNormals = false, underTangents = false, underVectors = false, underSkin = false,
         underSkinSolid = false;

    MaskSettings mask;

    /// The view is being moved by hand: a picture at once, of a coarser level where the mesh is
    /// large, rather than a fine one later.
    bool transforming = false;

    bool operator==(const DisplaySettings&) const = default;
    /// Colours or stencil are a part of what is compiled.
    bool ShowsColor() const { return affectColor; }
    bool ShowsStencil() const {
        return affectStencil || (useStencil && (affectGeometry || affectColor));
    }

    static DisplaySettings Of(const MLNode& node);
};

}  // namespace VantrelSDK
