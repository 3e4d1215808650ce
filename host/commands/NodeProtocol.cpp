#include "host/commands/NodeProtocol.h"

#include <maya/MFnDependencyNode.h>

#include <utility>

namespace VantrelSDK {

NodeProtocol::NodeProtocol(const MObject& node) : node_(node) {
    const MFnDependencyNode known(node);
    command_ = known.findPlug("commnad");
    execute_ = known.findPlug("execute");
    execute0_ = known.findPlug("execute0");
    param0_ = known.findPlug("param0");
    param1_ = known.findPlug("param1");
    param2_ = known.findPlug("param2");
}

const char* NodeProtocol::missing() const {
    for (const auto& [plug, name] : {std::pair{&command_, "commnad"},
                                     {&execute_, "execute"},
                                     {&execute0_, "execute0"},
                                     {&param0_, "param0"},
                                     {&param1_, "param1"},
                                     {&param2_, "param2"}})
        if (plug->isNull()) return name;
    return nullptr;
}

void NodeProtocol::Send(MPlug& channel, int command, int label) {
    command_.setValue(command);
    channel.setValue(label);
}

}  // namespace VantrelSDK
