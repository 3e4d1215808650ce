#pragma once

#include <maya/MObject.h>
#include <maya/MStatus.h>
#include <maya/MString.h>

#include <array>

namespace VantrelSDK {

/// The two kinds of node: the one that stands in the graph with plugs of its own for its geometry,
/// and the older one that is a deformer and takes the host's.
enum class NodeClass { kNode, kNode2 };

/// The attributes of a node class: all settings and the tool's live state, hidden from general
/// editors. NodeAttributes.def is the list.
///
/// No limits are set: who reads a value checks it. Objects of the class that lacks an attribute are
/// null. Each node class owns its own set.
class NodeAttributes {
  public:
    enum class Kind {
        kBool,
        kInt,
        kFloat,
        kDouble,
        kFloat2,
        kFloat3,
        kInt2,
        kTime,
        kMatrix,
        kMesh,
        kString,
        kRamp,
        kGeneric,
        kBlindData,
        kSurfaceCallback,
        kStencilCallback,
        kRefImageCallback,
    };
    enum Flag : unsigned {
        kVolatile = 1,  ///< not stored in scenes
        kArray = 2,
        kKeyable = 4,
        kDropsCut = 8,  ///< an element whose input is cut goes away
        kNode2Only = 16,
        kNodeOnly = 32,
    };
    struct Row {
        MObject NodeAttributes::*object;
        const char *longName, *shortName;
        Kind kind;
        /// For all children of a pair or triple.
        double value;
        unsigned flags;

        bool Has(NodeClass which) const {
            return !(flags & (which == NodeClass::kNode ? kNode2Only : kNodeOnly));
        }
    };
    using Member = MObject NodeAttributes::*;

    /// Makes those of a class and adds them to the node type whose `initialize` is running, with
    /// what makes which output stale. Stops at the first failure, which it tells as the class.
    MStatus Add(NodeClass which);
    /// Lets go of them, before the module goes.
    void Clear() { *this = NodeAttributes(); }

    static const std::array<Row, 183>& Rows();

#define ATTRIBUTE(member, longName, shortName, kind, value, flags) MObject m_mo##member;
#include "host/nodes/NodeAttributes.def"
#undef ATTRIBUTE

  private:
    MStatus AddDependencies(NodeClass which);
};

/// "KelmoNode2" or "KelmoNode": what messages begin with.
const char* NameOf(NodeClass which);

}  // namespace VantrelSDK
