#include "host/ml/PatternsReport.h"

#include <maya/MImage.h>

#include "core/io/LStrFile.h"
#include "host/ml/Diagnostics.h"

namespace VantrelSDK {

namespace {

MString ReportOf(const MString& file) {
    const MString folder = FindPatternsPath(file);
    LStrFile list;
    if (folder.length() == 0 || !list.Open((folder + file).asChar(), "rt"))
        return "  " + file + " is not there\n";
    MString report = "  " + folder + file + "\n";
    int count = 0;
    if (list.ReadNumPatternsTag(count) != 1) return report + "  it does not say how many\n";
    for (int i = 0; i < count; ++i) {
        LStrFile::Text name, field, image;
        if (list.ReadPatternTag(name, field, image) != 1 || !name || !image)
            return report + "  it breaks off after " + MString(std::to_string(i)) + " of " +
                   MString(std::to_string(count)) + "\n";
        MImage picture;
        const bool read = picture.readFromFile(folder + image->c_str()) == MS::kSuccess;
        report += MString("  ") + name->c_str() + "  " + image->c_str() +
                  (read ? "  OK\n" : "  can not be read\n");
    }
    return report;
}

}  // namespace

MString getPatternsReport() {
    return "\nPattern diagnostics:\nDefault patterns:\n" + ReportOf("patterns.cfg") +
           "\nUser patterns:\n" + ReportOf("userpatterns.cfg");
}

}  // namespace VantrelSDK
