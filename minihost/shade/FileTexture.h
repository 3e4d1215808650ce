#pragma once

#include <string>

#include "maya/MFloatVector.h"
#include "minihost/graph/Node.h"
#include "minihost/image/ImageFile.h"

namespace minihost {

/// The image file that a "file" node names; empty without a name.
std::string ImagePathOf(Node& file);

/// The image of a "file" node, and where it lies in the UVs. V points up.
class FileTexture {
  public:
    /// Empty, or why the image can't be read.
    std::string Open(Node& file);

    /// The colour at a place, between texels a mean of four; `alpha` takes its opacity. Beside a
    /// frame that does not wrap it is the node's default colour. Noise takes no part.
    MFloatVector At(double u, double v, float& alpha) const;

  private:
    /// From the UVs of a surface to those of the image; false where there is no image.
    bool Place(double& u, double& v) const;

    Picture picture_;
    double coverage_[2], translate_[2], repeat_[2], offset_[2];
    double rotateFrame_ = 0, rotate_ = 0;
    bool mirror_[2], wrap_[2], stagger_ = false;
    MFloatVector default_;
};

}  // namespace minihost
