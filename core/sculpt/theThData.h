#pragma once

#include <cstdint>
#include <vector>

#include "core/math/LPoint3.h"
#include "core/paint/LColorDelta.h"

namespace VantrelSDK {

class LMeshObject;
class LMorphDelta;

/// The record of one worker for one step: the only way in which a brush writes.
///
/// Each worker writes vertices of its own through its record, which keeps the value that a vertex
/// had before the stroke and notes what is new; Join then brings the notes together on one thread.
class theThData {
  public:
    /// `colours` may be null; then colours and stencils may not be written.
    void Begin(LMorphDelta& delta, LMeshObject& object, LColorDelta* colours);

    /// Adds d to a vertex's delta.
    void OffsetVert(int v, const LPoint3& d) {
        Keep(v);
        delta_[v] += d;
        changed_ = true;
    }
    void SetVert(int v, const LPoint3& d) {
        Keep(v);
        delta_[v] = d;
        changed_ = true;
    }
    void SetPaint(int v, const LAColor& paint) {
        KeepColour(v);
        paints_[v] = paint;
        painted_ = true;
    }
    void SetStencil(int v, float s) {
        KeepColour(v);
        stencils_[v] = s;
        stencilled_ = true;
    }
    float GetWeight(int v) const { return weights_[v]; }
    void SetWeight(int v, float w) {
        if (weights_[v] == 0 && w != 0) weighted_.push_back(v);
        weights_[v] = w;
    }

    /// Hands the notes on; true when the worker moved a vertex.
    bool Join();

  private:
    /// LMorphDelta::Keep, inlined.
    void Keep(int v) {
        if (marks_[v]) return;
        marks_[v] = 1;
        back_[v] = delta_[v];
        kept_.push_back(v);
    }

    void KeepColour(int v) {
        if (colourMarks_[v]) return;
        colourMarks_[v] = 1;
        colourBack_[v] = {paints_[v], stencils_[v]};
        colourKept_.push_back(v);
    }

    LMorphDelta* morph_ = nullptr;
    LMeshObject* object_ = nullptr;
    LPoint3 *delta_ = nullptr, *back_ = nullptr;
    uint8_t* marks_ = nullptr;
    float* weights_ = nullptr;
    bool changed_ = false;
    std::vector<int> kept_, weighted_;
    LColorDelta* colours_ = nullptr;
    LAColor* paints_ = nullptr;
    float* stencils_ = nullptr;
    LColorDelta::Kept* colourBack_ = nullptr;
    uint8_t* colourMarks_ = nullptr;
    bool painted_ = false, stencilled_ = false;
    std::vector<int> colourKept_;
};

}  // namespace VantrelSDK
