#pragma once

#include "maya/MObject.h"
#include "maya/MStatus.h"
#include "maya/MString.h"
#include "maya/MTime.h"
#include "minihost/graph/Plug.h"

class MAngle;
class MDataHandle;
class MIntArray;
class MPlugArray;

/// Names one place of a node that holds a value: an attribute, or an element of an array attribute.
/// Naming an element does not make it; writing or connecting does. Reading brings the value up to
/// date first. Writing makes what depends on it stale before the call comes back.
class MPlug {
  public:
    MPlug() = default;
    MPlug(const MObject& node, const MObject& attribute);
    explicit MPlug(minihost::Plug plug) : plug_(std::move(plug)) {}

    bool isNull() const { return plug_.IsNull(); }
    MObject node(MStatus* status = nullptr) const;
    MObject attribute(MStatus* status = nullptr) const;
    /// "head.translateX".
    MString name(MStatus* status = nullptr) const;
    /// Without the node. `useLongNames`: else short ones; `useFullAttributePath`: with the
    /// compounds that the attribute is in.
    MString partialName(bool includeNodeName = false, bool includeNonMandatoryIndices = false,
                        bool includeInstancedIndices = false, bool useAlias = false,
                        bool useFullAttributePath = false, bool useLongNames = false,
                        MStatus* status = nullptr) const;

    bool operator==(const MPlug& other) const { return plug_ == other.plug_; }
    bool operator!=(const MPlug& other) const { return !(*this == other); }
    bool operator==(const MObject& attribute) const;
    bool operator!=(const MObject& attribute) const { return !(*this == attribute); }

    bool isArray(MStatus* status = nullptr) const { return Check(status) && plug_.IsArray(); }
    bool isElement(MStatus* status = nullptr) const { return Check(status) && plug_.IsElement(); }
    bool isCompound(MStatus* status = nullptr) const;
    bool isChild(MStatus* status = nullptr) const;
    bool isNetworked() const { return plug_.Find() != nullptr; }
    bool isDestination() const;
    bool isSource() const;
    bool isConnected(MStatus* status = nullptr) const;

    /// The compound that a child is in; the array that an element is in.
    MPlug parent(MStatus* status = nullptr) const;
    MPlug array(MStatus* status = nullptr) const;
    MPlug child(unsigned index, MStatus* status = nullptr) const;
    MPlug child(const MObject& attribute, MStatus* status = nullptr) const;
    unsigned numChildren(MStatus* status = nullptr) const;
    unsigned numElements(MStatus* status = nullptr) const;
    unsigned evaluateNumElements(MStatus* status = nullptr) { return numElements(status); }
    /// How many elements, or children, are connected.
    unsigned numConnectedElements(MStatus* status = nullptr) const;
    /// Makes elements 0 to count - 1 where they are missing, and takes out those past them that are
    /// not connected.
    MStatus setNumElements(unsigned count);
    /// The element with a logical index; it need not exist.
    MPlug elementByLogicalIndex(unsigned index, MStatus* status = nullptr) const;
    /// The element at a place among those that exist.
    MPlug elementByPhysicalIndex(unsigned place, MStatus* status = nullptr) const;
    MPlug operator[](unsigned place) const { return elementByPhysicalIndex(place); }
    /// The connected element at a place among those that are connected.
    MPlug connectionByPhysicalIndex(unsigned place, MStatus* status = nullptr) const;
    unsigned logicalIndex(MStatus* status = nullptr) const;
    unsigned getExistingArrayAttributeIndices(MIntArray& indices, MStatus* status = nullptr) const;
    MPlug selectAncestorLogicalIndex(unsigned index, const MObject& attribute) const;

    /// What feeds this plug (asDst), and what this plug feeds (asSrc). True where there is any.
    bool connectedTo(MPlugArray& plugs, bool asDst, bool asSrc, MStatus* status = nullptr) const;
    MPlug source(MStatus* status = nullptr) const;

    /// Reading: kSuccess, or why the value stayed as it was. kInvalidParameter for a value of
    /// another kind, an array, or a compound.
    MStatus getValue(bool& value) const;
    MStatus getValue(char& value) const;
    MStatus getValue(short& value) const;
    MStatus getValue(int& value) const;
    MStatus getValue(float& value) const;
    MStatus getValue(double& value) const;
    MStatus getValue(MString& value) const;
    MStatus getValue(MTime& value) const;
    MStatus getValue(MAngle& value) const;
    /// The data of the plug, shared with it: to be read, not changed.
    MStatus getValue(MObject& value) const;
    bool asBool() const;
    int asInt() const;
    short asShort() const { return static_cast<short>(asInt()); }
    float asFloat() const;
    double asDouble() const;
    MString asString() const;
    MTime asMTime() const;
    MObject asMObject(MStatus* status = nullptr) const;

    MStatus setValue(bool value) { return Set(static_cast<double>(value)); }
    MStatus setValue(char value) { return Set(static_cast<double>(value)); }
    MStatus setValue(short value) { return Set(static_cast<double>(value)); }
    MStatus setValue(int value) { return Set(static_cast<double>(value)); }
    MStatus setValue(unsigned value) { return Set(static_cast<double>(value)); }
    MStatus setValue(float value) { return Set(static_cast<double>(value)); }
    MStatus setValue(double value) { return Set(value); }
    MStatus setValue(const char* value) { return setValue(MString(value)); }
    MStatus setValue(const MString& value);
    MStatus setValue(const MTime& value);
    MStatus setValue(const MAngle& value);
    /// The plug takes the data as it is; who made it does not change it after.
    MStatus setValue(const MObject& data);
    MStatus setValue(const MDataHandle& handle);

    bool isKeyable() const { return plug_.attribute && plug_.attribute->isKeyable; }
    bool isLocked() const { return false; }

    const minihost::Plug& plug() const { return plug_; }

  private:
    bool Check(MStatus* status) const;
    MStatus Set(minihost::Datum value);
    MStatus Get(minihost::Datum& value) const;
    template <class T>
    MStatus GetNumber(T& value) const;

    minihost::Plug plug_;
};
