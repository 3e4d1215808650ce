#pragma once

/// The kinds of things that an MObject can stand for. A kind includes those below it: a mesh has
/// the function set of a shape, of a DAG node, of a dependency node. MFn::Parent tells the next one
/// up.
class MFn {
  public:
    enum Type {
        kInvalid = 0,
        kBase,
        // nodes
        kDependencyNode,
        kDagNode,
        kTransform,
        kJoint,
        kWorld,
        kShape,
        kMesh,
        kCamera,
        kLocator,
        kGeometryFilt,
        kSkinClusterFilter,
        kBlendShape,
        kTweak,
        kGroupParts,
        kGroupId,
        kSet,
        kShadingEngine,
        kLambert,
        kTexture2d,
        kFileTexture,
        kPlace2dTexture,
        kUvChooser,
        kAnimCurve,
        kTime,
        kRenderGlobals,
        kPluginDependNode,
        kPluginDeformerNode,
        kPluginLocatorNode,
        kPluginShape,
        // attributes
        kAttribute,
        kNumericAttribute,
        kUnitAttribute,
        kTypedAttribute,
        kMatrixAttribute,
        kGenericAttribute,
        kCompoundAttribute,
        kEnumAttribute,
        kMessageAttribute,
        // data
        kData,
        kGeometryData,
        kMeshData,
        kStringData,
        kStringArrayData,
        kMatrixData,
        kNumericData,
        kIntArrayData,
        kDoubleArrayData,
        kPointArrayData,
        kVectorArrayData,
        kComponentListData,
        kPluginData,
        // components
        kComponent,
        kSingleIndexedComponent,
        kMeshVertComponent,
        kMeshEdgeComponent,
        kMeshPolygonComponent,
        // edits of animation curves
        kKeyframeDelta,
        kKeyframeDeltaMove,
        kKeyframeDeltaScale,
        kKeyframeDeltaBreakdown,
        kKeyframeDeltaAddRemove,
        kKeyframeDeltaBlockAddRemove,
        // the rest
        kPlugin,
    };

    /// The kind that a kind belongs to, kInvalid above kBase.
    static Type Parent(Type type);
    /// Whether `type` is `kind` or belongs to it.
    static bool Is(Type type, Type kind);
};
