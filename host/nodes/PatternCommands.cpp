#include <maya/MGlobal.h>

#include "host/ml/MLNode.h"
#include "host/ml/MLPattern.h"
#include "host/ml/MLPatternCollection.h"
#include "host/nodes/NodeCommands.h"

namespace VantrelSDK {

std::span<const NodeCommands::Row> NodeCommands::PatternRows() {
    using C = NodeCommands;
    static constexpr Row rows[] = {
        {77, &C::PatternCount},  {78, &C::AddPattern},        {79, &C::DeletePattern},
        {80, &C::LoadPattern},   {81, &C::SelectPattern},     {82, &C::HitPattern},
        {83, &C::ActivePattern}, {84, &C::PatternName},       {85, &C::SetPatternName},
        {86, &C::WriteSwatches}, {87, &C::PatternSwatchName}, {88, &C::WriteSwatch},
        {89, &C::WriteSwatch},
    };
    return rows;
}

MLPatternCollection& NodeCommands::Patterns() {
    node_.loadPatterns();
    return *node_.patterns();
}

MLPattern* NodeCommands::Pattern() {
    MLPattern* pattern = Patterns().Pattern(Index());
    if (!pattern) Error("there is no pattern with such index.");
    return pattern;
}

void NodeCommands::PatternCount() {
    Answer(Patterns().GetNumPatterns());
}

/// Answers its number.
void NodeCommands::AddPattern() {
    Patterns().AddNewPattern();
    Answer(Patterns().GetNumPatterns() - 1);
}

void NodeCommands::DeletePattern() {
    if (!Pattern()) return;
    Patterns().DeletePattern(Index());
    PatternChanged();
}

/// Of the image in `param2`; a pattern that nobody has named is called as it is.
void NodeCommands::LoadPattern() {
    MLPattern* pattern = Pattern();
    if (!pattern) return;
    pattern->LoadFile(Text());
    PatternChanged();
}

void NodeCommands::Select(int index) {
    if (!Patterns().SetAciveIndex(index))
        MGlobal::displayError("KelmoNode: pattern is empty.");
    else
        PatternChanged();
}

/// -1 selects none.
void NodeCommands::SelectPattern() {
    const int index = Index();
    if (index == -1) return Select(-1);
    if (!Pattern()) return;
    if (Patterns().GetActiveIndex() == index)
        return MGlobal::displayInfo("Click pattern again to un select it.");
    Select(index);
}

void NodeCommands::HitPattern() {
    if (!Pattern()) return;
    const bool was = Patterns().GetActiveIndex() == Index();
    Select(was ? -1 : Index());
    if (!was && Patterns().GetActiveIndex() == Index())
        MGlobal::displayInfo("Click pattern again to un select it.");
}

void NodeCommands::ActivePattern() {
    if (!node_.patterns())
        return MGlobal::displayError(
            "KelmoNode: can not get selected pattern - null pattern collection\n");
    Answer(node_.patterns()->GetActiveIndex());
}

void NodeCommands::PatternName() {
    if (const MLPattern* pattern = Pattern()) Answer(MString(pattern->GetName()));
}

void NodeCommands::SetPatternName() {
    if (MLPattern* pattern = Pattern()) pattern->SetName(Text().asChar());
}

void NodeCommands::WriteSwatches() {
    Patterns().WriteSwatches();
}

void NodeCommands::PatternSwatchName() {
    if (const MLPattern* pattern = Pattern()) Answer(pattern->GetSwatchImageName());
}

void NodeCommands::WriteSwatch() {
    if (const MLPattern* pattern = Pattern()) pattern->WriteSwatch();
}

/// Another pattern, or none, or another picture is in use.
void NodeCommands::PatternChanged() {
    node_.PreparePattern();
    node_.displyDirtied = true;
    affected_->append(node_.plug(&NodeAttributes::m_moDisplayCbk));
}

}  // namespace VantrelSDK
