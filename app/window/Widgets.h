#pragma once

#include <initializer_list>
#include <utility>

namespace kelmo {

struct Desk;

// What the docks are made of: settings of the node by their attributes, with what a person reads
// while the pointer rests on them. Within a frame of Dear ImGui.

void Heading(const Desk& desk, const char* text);
void Toggle(Desk& desk, const char* name, const char* attribute, const char* tip);
/// `index` -1 for what is no array. A curved one is finer at its lower end.
void Slider(Desk& desk, const char* name, const char* attribute, int index, float least, float most,
            const char* format, const char* tip, bool curved = true);
void IntSlider(Desk& desk, const char* name, const char* attribute, int least, int most,
               const char* tip);
void Choice(Desk& desk, const char* name, const char* attribute,
            std::initializer_list<std::pair<const char*, int>> choices, const char* tip);

}  // namespace kelmo
