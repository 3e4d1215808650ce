#include "host/commands/KelmoPatternsCmd.h"

#include <maya/MArgDatabase.h>
#include <maya/MIntArray.h>
#include <maya/MStringArray.h>

#include "host/commands/EditCommand.h"
#include "host/ml/MLNode.h"
#include "host/ml/MLPattern.h"
#include "host/ml/MLPatternCollection.h"
#include "host/nodes/Finders.h"

namespace VantrelSDK {

namespace {

MStatus Add(MLPatternCollection& patterns, const MString& file) {
    auto* pattern = static_cast<MLPattern*>(patterns.AddNewPattern());
    const int index = patterns.GetNumPatterns() - 1;
    if (!pattern->LoadFile(file)) {
        patterns.DeletePattern(index);
        return MS::kFailure;
    }
    MPxCommand::setResult(index);
    return MS::kSuccess;
}

MStatus Names(const MLPatternCollection& patterns) {
    MStringArray names;
    for (int i = 0; i < patterns.GetNumPatterns(); ++i)
        names.append(patterns.GetPattern(i)->GetName());
    MPxCommand::setResult(names);
    return MS::kSuccess;
}

MStatus Preview(const LPattern* pattern) {
    if (!pattern) return Failed("KelmoPatternsCmd: there is no pattern with such index.");
    MIntArray numbers;
    if (pattern->GetPreviewPixels())
        for (int y = LPattern::kSide - 1; y >= 0; --y)
            for (int x = 0; x < LPattern::kSide; ++x) {
                uint8_t rgb[3];
                pattern->getPreviewPixel(x, y, rgb[0], rgb[1], rgb[2]);
                for (const uint8_t channel : rgb) numbers.append(channel);
            }
    MPxCommand::setResult(numbers);
    return MS::kSuccess;
}

}  // namespace

MSyntax KelmoPatternsCmd::newSyntax() {
    MSyntax syntax;
    syntax.enableQuery(true);
    syntax.addFlag("a", "add", MSyntax::kString);
    syntax.addFlag("n", "names");
    syntax.addFlag("pr", "preview", MSyntax::kUnsigned);
    syntax.makeFlagQueryWithFullArgs("preview", true);
    syntax.setObjectType(MSyntax::kStringObjects, 1, 1);
    return syntax;
}

MStatus KelmoPatternsCmd::doIt(const MArgList& words) {
    MStatus status;
    const MArgDatabase parsed(syntax(), words, &status);
    if (!status) return Failed("KelmoPatternsCmd: can not parse arguments\n");
    MStringArray names;
    parsed.getObjects(names);
    MLNode* node = names.length() == 1 ? MLNode::FromObject(FindNodeByName(names[0])) : nullptr;
    if (!node) return Failed("KelmoPatternsCmd: can not find kelmo node.");
    node->loadPatterns();
    MString file;
    if (parsed.isFlagSet("add") && parsed.getFlagArgument("add", 0, file))
        return Add(*node->patterns(), file);
    if (parsed.isFlagSet("names")) return Names(*node->patterns());
    unsigned index = 0;
    if (parsed.isFlagSet("preview") && parsed.getFlagArgument("preview", 0, index))
        return Preview(node->patterns()->GetPattern(static_cast<int>(index)));
    return Failed("KelmoPatternsCmd: nothing to do; name it by a flag.");
}

}  // namespace VantrelSDK
