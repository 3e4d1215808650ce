#pragma once

/// A 4 x 4 matrix in single precision; the identity when it is made.
class MFloatMatrix {
  public:
    float matrix[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
};
