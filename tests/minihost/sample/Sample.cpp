// A module with one of everything: a node, a data type, a command with flags that can be undone,
// a tool. It is the shortest that shows how each is done, and what the tests load.

#include <maya/MArgDatabase.h>
#include <maya/MDGModifier.h>
#include <maya/MFnDependencyNode.h>
#include <maya/MFnNumericAttribute.h>
#include <maya/MFnPlugin.h>
#include <maya/MFnTypedAttribute.h>
#include <maya/MGlobal.h>
#include <maya/MPxCommand.h>
#include <maya/MPxContext.h>
#include <maya/MPxContextCommand.h>
#include <maya/MPxData.h>
#include <maya/MPxNode.h>
#include <maya/MSceneMessage.h>

#include <istream>
#include <ostream>

namespace {

/// A number that travels as data of our own.
class SampleData : public MPxData {
  public:
    static void* creator() { return new SampleData; }
    static inline const MTypeId kId{0x7001};

    MStatus readBinary(std::istream& in, unsigned length) override {
        if (length != sizeof number) return MS::kFailure;
        in.read(reinterpret_cast<char*>(&number), sizeof number);
        return in ? MS::kSuccess : MS::kFailure;
    }
    MStatus writeBinary(std::ostream& out) override {
        out.write(reinterpret_cast<const char*>(&number), sizeof number);
        return out ? MS::kSuccess : MS::kFailure;
    }
    void copy(const MPxData& other) override {
        number = static_cast<const SampleData&>(other).number;
    }
    MTypeId typeId() const override { return kId; }
    MString name() const override { return "SampleData"; }

    double number = 0;
};

/// out = in * 2, and packed = the same as data. It counts what the host asks of it.
class SampleNode : public MPxNode {
  public:
    static void* creator() { return new SampleNode; }
    static inline const MTypeId kId{0x7002};

    static MStatus initialize() {
        MFnNumericAttribute number;
        in = number.create("input", "in", MFnNumericData::kDouble, 1);
        number.setKeyable(true);
        addAttribute(in);
        out = number.create("output", "out", MFnNumericData::kDouble);
        number.setStorable(false);
        addAttribute(out);
        computes = number.create("computes", "cps", MFnNumericData::kInt);
        number.setStorable(false);
        addAttribute(computes);
        MFnTypedAttribute typed;
        packed = typed.create("packed", "pk", SampleData::kId);
        addAttribute(packed);
        attributeAffects(in, out);
        return attributeAffects(in, packed);
    }

    MStatus compute(const MPlug& plug, MDataBlock& data) override {
        if (plug != out && plug != packed) return MS::kUnknownParameter;
        const double doubled = data.inputValue(in).asDouble() * 2;
        data.outputValue(out).set(doubled);
        auto* pack = new SampleData;
        pack->number = doubled;
        data.outputValue(packed).set(pack);
        MDataHandle count = data.outputValue(computes);
        count.set(count.asInt() + 1);
        data.setClean(plug);
        return MS::kSuccess;
    }

    static inline MObject in, out, packed, computes;
};

/// "sample -make NAME" makes a node, "sample -count" tells how many there were made.
class SampleCommand : public MPxCommand {
  public:
    static void* creator() { return new SampleCommand; }
    static MSyntax newSyntax() {
        MSyntax syntax;
        syntax.addFlag("mk", "make", MSyntax::kString);
        syntax.addFlag("c", "count");
        syntax.enableQuery(true);
        return syntax;
    }

    MStatus doIt(const MArgList& words) override {
        MStatus status;
        const MArgDatabase given(syntax(), words, &status);
        if (!status) return status;
        if (given.isQuery()) {
            setResult(count);
            return MS::kSuccess;
        }
        MString name;
        if (!given.getFlagArgument("make", 0, name)) {
            displayError("sample: say what to make with -make NAME");
            return MS::kFailure;
        }
        const MObject node = edits_.createNode(SampleNode::kId, &status);
        if (!status) return status;
        edits_.renameNode(node, name);
        made_ = true;
        status = redoIt();
        setResult(MFnDependencyNode(node).name());
        return status;
    }
    MStatus redoIt() override {
        ++count;
        return edits_.doIt();
    }
    MStatus undoIt() override {
        --count;
        return edits_.undoIt();
    }
    bool isUndoable() const override { return made_; }

    static inline int count = 0;

  private:
    MDGModifier edits_;
    bool made_ = false;
};

/// A tool that remembers a size, and says when it comes and goes.
class SampleTool : public MPxContext {
  public:
    void toolOnSetup(MEvent&) override { MGlobal::displayInfo("sample tool on"); }
    void toolOffCleanup() override { MGlobal::displayInfo("sample tool off"); }

    double size = 1;
};

class SampleToolCommand : public MPxContextCommand {
  public:
    static void* creator() { return new SampleToolCommand; }

    MPxContext* makeObj() override { return tool_ = new SampleTool; }
    MStatus appendSyntax() override { return editSyntax().addFlag("sz", "size", MSyntax::kDouble); }
    MStatus doEditFlags() override {
        return parser().isFlagSet("size") ? parser().getFlagArgument("size", 0, tool_->size)
                                          : MStatus();
    }
    MStatus doQueryFlags() override {
        if (parser().isFlagSet("size")) setResult(tool_->size);
        return MS::kSuccess;
    }

  private:
    SampleTool* tool_ = nullptr;
};

MCallbackId g_onNew = 0;

}  // namespace

MStatus initializePlugin(MObject object) {
    MFnPlugin plugin(object, "Sample", "1.0", "Any");
    CHECK_MSTATUS_AND_RETURN_IT(
        plugin.registerData("SampleData", SampleData::kId, SampleData::creator));
    CHECK_MSTATUS_AND_RETURN_IT(plugin.registerNode("sampleNode", SampleNode::kId,
                                                    SampleNode::creator, SampleNode::initialize));
    CHECK_MSTATUS_AND_RETURN_IT(
        plugin.registerCommand("sample", SampleCommand::creator, SampleCommand::newSyntax));
    CHECK_MSTATUS_AND_RETURN_IT(
        plugin.registerContextCommand("sampleTool", SampleToolCommand::creator));
    g_onNew = MSceneMessage::addCallback(
        MSceneMessage::kAfterNew, [](void*) { MGlobal::displayInfo("sample: a new scene"); });
    return MS::kSuccess;
}

MStatus uninitializePlugin(MObject object) {
    MFnPlugin plugin(object);
    MMessage::removeCallback(g_onNew);
    SampleNode::in = SampleNode::out = SampleNode::packed = SampleNode::computes = MObject();
    CHECK_MSTATUS_AND_RETURN_IT(plugin.deregisterContextCommand("sampleTool"));
    CHECK_MSTATUS_AND_RETURN_IT(plugin.deregisterCommand("sample"));
    CHECK_MSTATUS_AND_RETURN_IT(plugin.deregisterNode(SampleNode::kId));
    return plugin.deregisterData(SampleData::kId);
}
