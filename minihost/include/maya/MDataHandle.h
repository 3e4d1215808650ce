#pragma once

#include <memory>

#include "maya/MFloatVector.h"
#include "maya/MMatrix.h"
#include "maya/MObject.h"
#include "maya/MPoint.h"
#include "maya/MStatus.h"
#include "maya/MString.h"
#include "maya/MTime.h"
#include "maya/MVector.h"
#include "minihost/graph/Slot.h"

class MPxData;

/// The value of a plug during a compute. Reading does not evaluate: MDataBlock::inputValue did.
/// Writing tells nobody, as a compute's results do. Valid while the compute lasts and the element
/// exists.
class MDataHandle {
  public:
    MDataHandle() = default;
    explicit MDataHandle(minihost::Slot* slot) : slot_(slot) {}

    bool asBool() const { return Number() != 0; }
    char asChar() const { return static_cast<char>(Number()); }
    short asShort() const { return static_cast<short>(Number()); }
    int asInt() const { return static_cast<int>(Number()); }
    int asLong() const { return asInt(); }
    float asFloat() const { return static_cast<float>(Number()); }
    double asDouble() const { return Number(); }
    MTime asTime() const;
    /// Numbers of a pair or triple, by value.
    MFloatVector asFloatVector() const;
    MVector asVector() const;
    MString asString() const;
    MMatrix asMatrix() const;
    /// The mesh data, null for none: to be read with MFnMesh; shared with the plug.
    MObject asMesh() const { return data(); }
    MPxData* asPluginData() const;
    /// The data of the plug, shared with it.
    MObject data() const;

    void setBool(bool value) { Put(static_cast<double>(value)); }
    void setInt(int value) { Put(static_cast<double>(value)); }
    void setFloat(float value) { Put(static_cast<double>(value)); }
    void setDouble(double value) { Put(value); }
    void set(bool value) { setBool(value); }
    void set(int value) { setInt(value); }
    void set(float value) { setFloat(value); }
    void set(double value) { setDouble(value); }
    void set(const MTime& value);
    void set(float x, float y) { PutNumbers({x, y}); }
    void set(float x, float y, float z) { PutNumbers({x, y, z}); }
    void set(double x, double y, double z) { PutNumbers({x, y, z}); }
    void set3Float(float x, float y, float z) { PutNumbers({x, y, z}); }
    void set3Double(double x, double y, double z) { PutNumbers({x, y, z}); }
    void set(const MString& value);
    void setString(const MString& value) { set(value); }
    void set(const MMatrix& value);
    void setMMatrix(const MMatrix& value) { set(value); }
    /// Data made before by a function set.
    MStatus set(const MObject& data);
    MStatus setMObject(const MObject& data) { return set(data); }
    /// Plug-in data: the plug owns it from here on.
    MStatus set(MPxData* data);
    MStatus setMPxData(MPxData* data) { return set(data); }
    MStatus copy(const MDataHandle& other);

    MDataHandle child(const MObject& attribute) const;
    MObject attribute() const;
    bool isNumeric() const { return slot_ && slot_->attribute->IsNumber(); }
    bool isNull() const { return slot_ == nullptr; }
    void setClean() {
        if (slot_) slot_->SetClean();
    }

    minihost::Slot* slot() const { return slot_; }

  private:
    double Number() const;
    void Put(minihost::Datum value);
    void PutNumbers(std::initializer_list<double> numbers);

    minihost::Slot* slot_ = nullptr;
};
