#pragma once

#include "maya/MArrayDataHandle.h"
#include "maya/MDataHandle.h"
#include "maya/MPlug.h"
#include "minihost/graph/Node.h"

/// The values of one node during a compute. Inputs are brought up to date as they are asked for,
/// outputs are not.
class MDataBlock {
  public:
    explicit MDataBlock(minihost::Node& node) : node_(&node) {}

    MDataHandle inputValue(const MPlug& plug, MStatus* status = nullptr);
    MDataHandle inputValue(const MObject& attribute, MStatus* status = nullptr);
    MDataHandle outputValue(const MPlug& plug, MStatus* status = nullptr);
    MDataHandle outputValue(const MObject& attribute, MStatus* status = nullptr);
    MArrayDataHandle inputArrayValue(const MPlug& plug, MStatus* status = nullptr);
    MArrayDataHandle inputArrayValue(const MObject& attribute, MStatus* status = nullptr);
    MArrayDataHandle outputArrayValue(const MPlug& plug, MStatus* status = nullptr);
    MArrayDataHandle outputArrayValue(const MObject& attribute, MStatus* status = nullptr);
    bool isClean(const MPlug& plug) const;
    MStatus setClean(const MPlug& plug);
    MStatus setClean(const MObject& attribute);

    minihost::Node& node() const { return *node_; }

  private:
    minihost::Slot* SlotOf(const MObject& attribute, MStatus* status) const;

    minihost::Node* node_;
};
