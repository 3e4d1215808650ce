#pragma once

/// What the pointer looks like: one of the host's own.
class MCursor {
  public:
    enum Kind { kDefault, kCrossHair, kDoubleCrossHair, kEdit, kPencil, kHand };

    constexpr MCursor() = default;
    constexpr explicit MCursor(Kind kind) : kind_(kind) {}

    constexpr bool operator==(const MCursor& other) const { return kind_ == other.kind_; }
    constexpr Kind kind() const { return kind_; }

    static const MCursor defaultCursor, crossHairCursor, doubleCrossHairCursor, editCursor,
        pencilCursor, handCursor;

  private:
    Kind kind_ = kDefault;
};

inline constexpr MCursor MCursor::defaultCursor(kDefault), MCursor::crossHairCursor(kCrossHair),
    MCursor::doubleCrossHairCursor(kDoubleCrossHair), MCursor::editCursor(kEdit),
    MCursor::pencilCursor(kPencil), MCursor::handCursor(kHand);
