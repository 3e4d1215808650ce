#include "host/ml/MLProgressCallback.h"

#include <maya/MGlobal.h>
#include <maya/MString.h>

namespace VantrelSDK {

bool MLProgressCallback::shown = false;

void MLProgressCallback::Show() {
    if (shown) return;
    done_ = 0;
    percent_ = -1;
    MGlobal::executeCommand(
        "progressWindow\t\t -title \"Vantrel\"\t\t -minValue 0\t\t -maxValue 100         -progress "
        "0\t\t -status \"  Progress: 0%\"\t     -isInterruptable false;");
    shown = mine_ = true;
}

void MLProgressCallback::SetProgress(float done) {
    Show();
    if (!mine_) return;
    done_ = done > 1 ? 0 : done == -1 ? done_ + 0.02f : done;
    if (done_ > 1) done_ = 0;
    const int percent = static_cast<int>(100 * done_);
    // The host redraws a window at each command.
    if (percent == percent_) return;
    percent_ = percent;
    const std::string number = std::to_string(percent);
    const std::string text =
        status_.empty() ? "  Progress " + number + "%" : status_ + " (Progress " + number + "%)";
    MGlobal::executeCommand(
        ("progressWindow -edit -progress " + number + " -status \"" + text + "\";").c_str());
}

void MLProgressCallback::Hide() {
    if (!mine_) return;
    MGlobal::executeCommand("progressWindow -endProgress;");
    done_ = 0;
    shown = mine_ = false;
}

}  // namespace VantrelSDK
