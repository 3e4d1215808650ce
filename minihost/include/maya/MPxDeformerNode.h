#pragma once

#include "maya/MItGeometry.h"
#include "maya/MMatrix.h"
#include "maya/MPxNode.h"

/// A module's own deformer. It has the attributes below beside its own; what `deform` reads is for
/// `initialize` to tell, by attributeAffects on outputGeom.
class MPxDeformerNode : public MPxNode {
  public:
    /// Calls `deform` for the geometry whose output is asked for, and passes it on as it is where
    /// the node's state is not normal.
    MStatus compute(const MPlug& plug, MDataBlock& data) override;
    /// Moves what `iterator` walks over: the vertices of one geometry that the deformer's group
    /// has. `localToWorld`: of the mesh that shows the geometry. `index`: its element of input and
    /// outputGeom. The envelope is for it to heed. By itself it moves nothing.
    virtual MStatus deform(MDataBlock& data, MItGeometry& iterator, const MMatrix& localToWorld,
                           unsigned index);
    Type type() const override { return kDeformerNode; }

    static MObject input, inputGeom, groupId, outputGeom, envelope;
};
