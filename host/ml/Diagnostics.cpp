#include "host/ml/Diagnostics.h"

#include <maya/MGlobal.h>
#include <maya/MStringArray.h>

#include <cstdio>

#include "core/io/Profile.h"
#include "core/sculpt/LNode.h"

namespace VantrelSDK {

namespace {

LStrFile diag;

void PrintAndShow(const MString& text) {
    std::printf("%s\n", text.asChar());
    MGlobal::displayInfo(text);
}

/// "2012 x64" is "2012.0-x64".
MString VersionFolder() {
    MStringArray words;
    MGlobal::mayaVersion().split(' ', words);
    MString folder = words.length() > 0 ? words[0] : MString();
    if (folder.index('.') < 0) folder += ".0";
    for (unsigned i = 1; i < words.length(); ++i)
        if (words[i] == "x64") return folder + "-x64";
    return folder;
}

MString InstallFolder() {
    return MString(KELMO_INSTALL_ROOT "/") + VersionFolder() + "/icons/";
}

MString SearchPath() {
    return MGlobal::executeCommandStringResult("getenv \"XBMLANGPATH\";");
}

/// A folder of a search path; "%B" stands for the file's name there.
MString SearchFolder(const MString& entry) {
    const int end = static_cast<int>(entry.length()) - 1;
    const bool named = end >= 1 && entry.substring(end - 1, end) == "%B";
    if (!named) return entry + "/";
    return (end >= 2 ? entry.substring(0, end - 2) : MString()) + "/";
}

}  // namespace

void OpenDiagFile() {
    MString folder;
    MGlobal::executeCommand("internalVar -userTmpDir", folder);
    if (folder.length() == 0) {
        std::printf("cant write log, internalVar -userBitmapsDir returned empty path\n");
        return;
    }
    const MString path = folder + "kelmo_maya.log";
    if (!diag.Open(path.asChar(), "wt")) return PrintAndShow("Vantrel: can't write log to " + path);
    SetDiagFile(&diag);
    PrintAndShow("Vantrel: writing log to " + path);
    ProfileStart(&diag);
}

void CloseDiagFile() {
    SetDiagFile(nullptr);
    diag.Close();
}

void SetPrefDoDumpDiags(int value) {
    LNode::prefDumpDiagnostics = value;
    if (value == 0)
        CloseDiagFile();
    else if (!diag.IsOpen())
        OpenDiagFile();
}

void Log(const MString& text) {
    if (LStrFile* file = GetDiagFile()) ProfileDump(text.asChar(), file);
}

bool IsFilePresent(const MString& path) {
    std::FILE* file = std::fopen(path.asChar(), "r");
    if (!file) file = std::fopen(path.asChar(), "rb");
    if (file) std::fclose(file);
    return file != nullptr;
}

MString FindPatternsPath(const MString& name) {
    if (IsFilePresent(InstallFolder() + name)) return InstallFolder();
    MStringArray entries;
    SearchPath().split(':', entries);
    if (entries.length() == 0) entries.append(SearchPath());
    for (const MString& entry : entries)
        if (IsFilePresent(SearchFolder(entry) + name)) return SearchFolder(entry);
    return MString();
}

MString GetPatternsPath(const MString& name, bool check) {
    const bool named = name.length() > 0;
    if (!named && check)
        MGlobal::displayWarning(
            "Vantrel: can not check file existance, file name is not specified.\n"
            "Default path will be returned.");
    if (!named || !check) return InstallFolder();
    const MString found = FindPatternsPath(name);
    if (found.length() == 0)
        MGlobal::displayError(
            "Vantrel: file " + name + " not found in default location:\n//" + InstallFolder() +
            "\n//nor in any of paths specified by XBMLANGPATH:\n//\n//" + SearchPath());
    return found;
}

}  // namespace VantrelSDK
