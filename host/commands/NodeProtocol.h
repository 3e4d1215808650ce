#pragma once

#include <maya/MObject.h>
#include <maya/MPlug.h>
#include <maya/MString.h>

namespace VantrelSDK {

/// The channel by which commands, callbacks and the tool make a node do things: they set parameters
/// and the number of what is to be done, then write the plug that makes the node do it at once, and
/// read answers from the parameters.
class NodeProtocol {
  public:
    explicit NodeProtocol(const MObject& node);

    /// The first of the plugs that the node lacks; null when it has them all.
    const char* missing() const;
    const MObject& node() const { return node_; }

    void SetIndex(int value) { param0_.setValue(value); }
    void SetNumber(double value) { param1_.setValue(value); }
    void SetText(const MString& value) { param2_.setValue(value); }
    void SetData(const MObject& value) { param2_.setValue(value); }
    int index() const { return param0_.asInt(); }
    double number() const { return param1_.asDouble(); }
    MString text() const { return param2_.asString(); }
    MObject data() const { return param2_.asMObject(); }

    /// What may change the node's outputs. The label means nothing to the node; it tells callers
    /// apart in a log.
    void Run(int command, int label = 1) { Send(execute_, command, label); }
    /// What leaves the outputs alone.
    void Ask(int command, int label = 1) { Send(execute0_, command, label); }

  private:
    void Send(MPlug& channel, int command, int label);

    MObject node_;
    MPlug command_, execute_, execute0_, param0_, param1_, param2_;
};

}  // namespace VantrelSDK
