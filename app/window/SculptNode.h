#pragma once

#include <string>
#include <vector>

#include "minihost/Host.h"

namespace kelmo {

/// The node that is sculpted, by its attributes and numbered commands. What is set here is a
/// setting, not an edit: the undo queue doesn't know it.
class SculptNode {
  public:
    struct Level {
        int vertices = 0, faces = 0;
        bool quads = false;
    };

    /// The node behind the mesh that is selected, else the one that was, else any. None where the
    /// scene has none.
    void Find();
    bool exists() const { return node_ && node_->isInScene(); }
    std::string name() const { return exists() ? node_->UniqueName() : ""; }
    /// The transform of its mesh; empty without one.
    std::string mesh() const;
    /// The transforms of all meshes that are seen, or whose surface is while it is sculpted.
    static std::vector<std::string> Meshes();
    /// Whether a mesh has such a node.
    static bool Has(const std::string& mesh);

    /// A setting; element `index` of those that are arrays. 0 for what is not there.
    double Get(const char* attribute, int index = -1) const;
    int Int(const char* attribute, int index = -1) const {
        return static_cast<int>(Get(attribute, index));
    }
    bool Is(const char* attribute, int index = -1) const { return Get(attribute, index) != 0; }
    void Set(const char* attribute, double value, int index = -1);
    void GetColor(float color[3]) const;
    void SetColor(const float color[3]);
    /// Runs a numbered command; its answer.
    int Run(int command, int parameter = 0);
    bool isSculpting() const;

    int mode() const { return Int("sculptMode"); }
    /// What brushes change: 0 geometry, 1 colour, 2 stencil.
    int affects() const;
    /// The array that has the strength of brushes.
    const char* strength() const { return affects() == 0 ? "paintPressMult" : "vertColorStrength"; }

    /// A pattern as the window shows it.
    struct Pattern {
        std::string name;
        /// Its small picture: kSwatch a side from the top, packed as Dear ImGui has colours; empty
        /// for one without a picture.
        std::vector<unsigned> swatch;
    };
    static constexpr int kSwatch = 20;
    /// Reads the patterns, the first time from their lists; as ReadLevels.
    void ReadPatterns();
    const std::vector<Pattern>& patterns() const { return patterns_; }
    /// -1 for none.
    int activePattern() const { return activePattern_; }
    /// Makes one active, or where it is, none.
    void HitPattern(int index);
    /// Appends one of an image file and makes it active.
    void AddPattern(const std::string& file);

    /// Reads the levels; not to be called while drawing, since it writes to the node.
    void ReadLevels();
    const std::vector<Level>& levels() const { return levels_; }
    int activeLevel() const { return active_; }

  private:
    minihost::Slot* Slot(const char* attribute, int index) const;

    minihost::NodePtr node_;
    std::vector<Level> levels_;
    int active_ = 0;
    std::vector<Pattern> patterns_;
    int activePattern_ = -1;
};

/// Runs a script; what it answers. Errors go to the host's output. `keep` false: the undo queue
/// does not know of it.
minihost::Value RunScript(const std::string& script, bool keep = true, bool* good = nullptr);

}  // namespace kelmo
