#pragma once

#include "maya/MFnGeometryData.h"

/// Mesh data, as plugs hold it. MFnMesh reads and writes what is in it.
class MFnMeshData : public MFnGeometryData {
  public:
    MFnMeshData() = default;
    explicit MFnMeshData(const MObject& data, MStatus* status = nullptr);

    MFn::Type type() const override { return MFn::kMeshData; }
    /// An empty mesh.
    MObject create(MStatus* status = nullptr);
};
