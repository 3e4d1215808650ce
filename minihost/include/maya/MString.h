#pragma once

#include <string>

#include "maya/MStatus.h"

class MStringArray;

/// Text in UTF-8.
class MString {
  public:
    MString() = default;
    MString(const char* text) : text_(text ? text : "") {}
    MString(const char* text, int length) : text_(text, static_cast<size_t>(length)) {}
    MString(std::string text) : text_(std::move(text)) {}

    const char* asChar() const { return text_.c_str(); }
    const std::string& str() const { return text_; }
    /// In bytes.
    unsigned length() const { return static_cast<unsigned>(text_.size()); }
    MStatus clear() {
        text_.clear();
        return MS::kSuccess;
    }

    MString& operator+=(const MString& other) {
        text_ += other.text_;
        return *this;
    }
    MString& operator+=(int value) { return *this += MString(std::to_string(value)); }
    MString& operator+=(unsigned value) { return *this += MString(std::to_string(value)); }
    MString& operator+=(double value);
    MString& operator+=(float value) { return *this += double{value}; }
    MString& operator+=(const char* value) { return *this += MString(value); }
    friend MString operator+(MString a, const MString& b) { return a += b; }
    friend MString operator+(MString a, const char* b) { return a += b; }
    friend MString operator+(const char* a, const MString& b) { return MString(a) += b; }
    friend MString operator+(MString a, int b) { return a += b; }
    friend MString operator+(MString a, unsigned b) { return a += b; }
    friend MString operator+(MString a, double b) { return a += b; }

    bool operator==(const MString& other) const { return text_ == other.text_; }
    bool operator!=(const MString& other) const { return text_ != other.text_; }
    bool operator==(const char* other) const { return text_ == other; }
    bool operator!=(const char* other) const { return text_ != other; }
    bool operator<(const MString& other) const { return text_ < other.text_; }

    /// The first or last place of a character, -1 for none.
    int index(char c) const { return Place(text_.find(c)); }
    int rindex(char c) const { return Place(text_.rfind(c)); }
    /// The first place of a text, -1 for none.
    int indexW(const MString& part) const { return Place(text_.find(part.text_)); }
    /// The bytes from `start` to `end`, both included; what lies past the text is left out.
    MString substring(int start, int end) const;
    /// The parts between the separators, empty ones left out.
    MStatus split(char separator, MStringArray& parts) const;

    /// The number that the text is, 0 for text that is none; isInt and isDouble tell.
    int asInt() const;
    double asDouble() const;
    float asFloat() const { return static_cast<float>(asDouble()); }
    unsigned asUnsigned() const { return static_cast<unsigned>(asInt()); }
    bool isInt() const;
    bool isDouble() const;

    MString& toLowerCase();
    MString& toUpperCase();

  private:
    static int Place(size_t at) { return at == std::string::npos ? -1 : static_cast<int>(at); }

    std::string text_;
};
