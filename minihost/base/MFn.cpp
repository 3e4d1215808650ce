#include "maya/MFn.h"

MFn::Type MFn::Parent(Type type) {
    switch (type) {
        case kInvalid:
        case kBase:
            return kInvalid;
        case kDependencyNode:
        case kAttribute:
        case kData:
        case kComponent:
        case kKeyframeDelta:
        case kPlugin:
            return kBase;
        case kTransform:
        case kShape:
            return kDagNode;
        case kJoint:
        case kWorld:
            return kTransform;
        case kMesh:
        case kCamera:
        case kLocator:
        case kPluginShape:
            return kShape;
        case kPluginLocatorNode:
            return kLocator;
        case kSkinClusterFilter:
        case kBlendShape:
        case kTweak:
        case kPluginDeformerNode:
            return kGeometryFilt;
        case kShadingEngine:
            return kSet;
        case kFileTexture:
            return kTexture2d;
        case kDagNode:
        case kGeometryFilt:
        case kGroupParts:
        case kGroupId:
        case kSet:
        case kLambert:
        case kTexture2d:
        case kPlace2dTexture:
        case kUvChooser:
        case kAnimCurve:
        case kTime:
        case kRenderGlobals:
        case kPluginDependNode:
            return kDependencyNode;
        case kNumericAttribute:
        case kUnitAttribute:
        case kTypedAttribute:
        case kMatrixAttribute:
        case kGenericAttribute:
        case kCompoundAttribute:
        case kEnumAttribute:
        case kMessageAttribute:
            return kAttribute;
        case kMeshData:
            return kGeometryData;
        case kGeometryData:
        case kStringData:
        case kStringArrayData:
        case kMatrixData:
        case kNumericData:
        case kIntArrayData:
        case kDoubleArrayData:
        case kPointArrayData:
        case kVectorArrayData:
        case kComponentListData:
        case kPluginData:
            return kData;
        case kSingleIndexedComponent:
            return kComponent;
        case kMeshVertComponent:
        case kMeshEdgeComponent:
        case kMeshPolygonComponent:
            return kSingleIndexedComponent;
        case kKeyframeDeltaMove:
        case kKeyframeDeltaScale:
        case kKeyframeDeltaBreakdown:
        case kKeyframeDeltaAddRemove:
        case kKeyframeDeltaBlockAddRemove:
            return kKeyframeDelta;
    }
    return kInvalid;
}

bool MFn::Is(Type type, Type kind) {
    if (type == kMeshData && kind == kMesh) return true;  // MFnMesh reads both
    for (; type != kInvalid; type = Parent(type))
        if (type == kind) return true;
    return kind == kInvalid;
}
