#pragma once

/// What a shape wants drawn, as it hands it to itself: a pointer of its own, borrowed.
class MDrawData {
  public:
    MDrawData() = default;
    explicit MDrawData(void* geometry) : geometry_(geometry) {}

    void* geometry() const { return geometry_; }

  private:
    void* geometry_ = nullptr;
};
