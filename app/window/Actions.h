#pragma once

#include <functional>
#include <string>
#include <vector>

#include "app/window/Keys.h"

namespace kelmo {

struct Desk;

/// One thing that a person can do by a menu, a button or a key.
struct Action {
    std::string id, menu, name, key, tip;
    std::function<void()> run;
    /// Whether it is on, for those that can be; null for others.
    std::function<bool()> isOn;
    /// Keys besides the one that is shown.
    std::string otherKey;
};

/// All of them, in the order of the menus.
class Actions {
  public:
    void Fill(Desk& desk);
    /// By a key; null where it does nothing.
    const Action* Find(const keys::Chord& chord) const;
    const Action& Get(const std::string& id) const;
    const std::vector<Action>& all() const { return actions_; }

  private:
    void AddFile(Desk& desk);
    void AddEdit(Desk& desk);
    void AddView(Desk& desk);
    void AddLevels(Desk& desk);
    void AddBrushes(Desk& desk);
    void AddHelp(Desk& desk);
    void Add(Action action) { actions_.push_back(std::move(action)); }

    std::vector<Action> actions_;
};

/// Opens a file and shows all of it.
void OpenFile(Desk& desk, const std::string& path);
/// Takes a brush, with what it needs: a node that is sculpted.
void TakeBrush(Desk& desk, int mode);
/// 0 geometry, 1 colour, 2 stencil.
void Affect(Desk& desk, int what);
/// Puts the sculpt tool on, or the one that selects faces.
void SetTool(Desk& desk, bool sculpt);
bool IsSelecting();

}  // namespace kelmo
