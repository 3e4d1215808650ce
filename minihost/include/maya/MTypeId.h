#pragma once

/// The number by which scene files know a node or data type. 0 stands for none.
class MTypeId {
  public:
    MTypeId() = default;
    explicit MTypeId(unsigned id) : id_(id) {}
    MTypeId(unsigned prefix, unsigned id) : id_((prefix << 8) | (id & 0xff)) {}

    unsigned id() const { return id_; }
    bool operator==(const MTypeId& other) const { return id_ == other.id_; }
    bool operator!=(const MTypeId& other) const { return id_ != other.id_; }
    explicit operator bool() const { return id_ != 0; }

  private:
    unsigned id_ = 0;
};
