#include "minihost/dag/DagLogic.h"

#include "minihost/graph/Evaluation.h"

namespace minihost {
namespace {

void Append(Node& node, std::initializer_list<const char*> names, std::vector<Plug>& more) {
    for (const char* name : names) {
        const Plug array = node.FindPlug(name);
        if (!array.IsNull() && array.Element(0).Find()) more.push_back(array.Element(0));
    }
}

void SetMatrix(Node& node, const char* attribute, const MMatrix& m) {
    SetResult(*node.FindSlot(attribute), std::make_shared<MatrixData>(m));
}

MStatus SetElement(const Plug& plug, const MMatrix& m) {
    SetResult(*plug.Make(), std::make_shared<MatrixData>(m));
    return MS::kSuccess;
}

}  // namespace

void DagLogic::SetDependentsDirty(const Plug& plug, std::vector<Plug>& more) {
    const std::string& name = plug.attribute->longName;
    if (name != "worldMatrix" && name != "matrix") return;
    if (name == "matrix") Append(node_, {"worldMatrix", "worldInverseMatrix"}, more);
    if (name == "worldMatrix")
        for (const DagNodePtr& child : Dag().children())
            Append(*child,
                   {"worldMatrix", "worldInverseMatrix", "parentMatrix", "parentInverseMatrix"},
                   more);
}

MStatus DagLogic::Compute(const Plug& plug) {
    const std::string& name = plug.attribute->longName;
    if (name == "matrix" || name == "inverseMatrix") {
        const MMatrix m = Local();
        SetMatrix(node_, "matrix", m);
        SetMatrix(node_, "inverseMatrix", m.inverse());
        return MS::kSuccess;
    }
    DagNode* parent = Dag().parent();
    const MMatrix above = parent && parent->parent() ? parent->WorldMatrix() : MMatrix();
    if (name == "worldMatrix") return SetElement(plug, Dag().Matrix() * above);
    if (name == "worldInverseMatrix") return SetElement(plug, Dag().WorldMatrix().inverse());
    if (name == "parentMatrix") return SetElement(plug, above);
    if (name == "parentInverseMatrix") return SetElement(plug, above.inverse());
    return MS::kUnknownParameter;
}

}  // namespace minihost
