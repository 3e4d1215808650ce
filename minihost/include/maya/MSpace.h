#pragma once

/// The coordinates that a position or a move is told in.
class MSpace {
  public:
    enum Space { kInvalid, kTransform, kPreTransform, kPostTransform, kWorld, kObject };
};
