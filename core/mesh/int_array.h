#pragma once

namespace VantrelSDK {

class LBlindData;

/// A growable array of int that grows by fixed steps and takes no memory before its first entry.
class int_array {
  public:
    /// Capacity rises by `grow` entries at a time; 0 means 4000.
    explicit int_array(unsigned grow = 0) : grow_(grow ? grow : 4000) {}
    int_array(const int_array& o);
    int_array(int_array&& o) noexcept;
    virtual ~int_array() { clear(); }
    /// Without memory for the copy the array is left empty.
    int_array& operator=(const int_array& o);
    int_array& operator=(int_array&& o) noexcept;

    /// False, with the content as it was, when memory runs out.
    bool push_back(int value);
    /// Gives the memory back.
    void clear();

    /// The entry, or 0 past the end.
    int at(unsigned i) const { return i < size_ ? data_[i] : 0; }
    int& operator[](unsigned i) { return data_[i]; }
    int operator[](unsigned i) const { return data_[i]; }

    /// Null while nothing was ever added.
    int* data() { return data_; }
    const int* data() const { return data_; }
    unsigned size() const { return size_; }
    unsigned capacity() const { return capacity_; }
    unsigned grow() const { return grow_; }

    /// The array as a record. A failed reading, with one of LBlindData's codes, leaves it empty.
    int WriteTo(LBlindData* stream) const;
    int ReadFrom(LBlindData* stream);

  private:
    void Swap(int_array& o) noexcept;

    int* data_ = nullptr;
    unsigned size_ = 0;
    unsigned capacity_ = 0;
    unsigned grow_;
};

}  // namespace VantrelSDK
