#pragma once

/// Red, green, blue and opacity, 0 to 1 each where a display is to show them.
class MColor {
  public:
    MColor() = default;
    MColor(float r, float g, float b, float a = 1) : r(r), g(g), b(b), a(a) {}

    bool operator==(const MColor& o) const { return r == o.r && g == o.g && b == o.b && a == o.a; }
    bool operator!=(const MColor& o) const { return !(*this == o); }
    float operator[](unsigned i) const { return i == 0 ? r : i == 1 ? g : i == 2 ? b : a; }
    float& operator[](unsigned i) { return i == 0 ? r : i == 1 ? g : i == 2 ? b : a; }

    float r = 0, g = 0, b = 0, a = 1;
};
