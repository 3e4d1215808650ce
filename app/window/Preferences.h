#pragma once

#include <map>
#include <string>
#include <vector>

namespace kelmo {

class SculptNode;

/// What the program keeps of how a person works, in XDG_CONFIG_HOME/kelmo/preferences.json.
struct Preferences {
    int width = 1360, height = 860;
    /// Of texts and panels; 1 for a usual screen.
    float scale = 1;
    /// Of the view's pixels; -1: what suits the machine.
    int samples = -1;
    bool leftDock = true, rightDock = true;
    /// The card of first steps was seen.
    bool hasBegun = false;
    /// The last first.
    std::vector<std::string> recent;
    std::string folder;
    /// Settings of brushes and display by the node's attributes ("toolSize[8]").
    std::map<std::string, double> settings{{"displayMode", 2}};

    /// Where they are kept.
    static std::string File();
    /// What is there and makes sense; the rest stays as it is. The host's optionVars are set too.
    void Read();
    /// Empty, or why they could not be written.
    std::string Write() const;
    /// Takes the settings from a node, and gives them to one.
    void TakeFrom(const SculptNode& node);
    void GiveTo(SculptNode& node) const;
    void Remember(const std::string& path);
};

}  // namespace kelmo
