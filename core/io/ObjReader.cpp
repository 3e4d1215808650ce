#include "core/io/ObjReader.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstdint>
#include <span>
#include <utility>

#include "core/io/FloatText.h"
#include "core/io/Quoted.h"
#include "core/io/ReadParsed.h"

namespace VantrelSDK {

namespace {

constexpr size_t MaxCount = INT_MAX;
constexpr size_t ReportEvery = 4 << 20;  // bytes between two reports of progress

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\v' || c == '\f';
}
bool IsLineEnd(char c) {
    return c == '\n' || c == '\r';
}

/// The numbers that faces name before the file has got so far, checked when it has ended.
class ForwardReferences {
  public:
    void Note(int number, size_t line) {
        // The first line that is wrong names more than any line before it, so the rest may go.
        if (notes_.empty() || number > notes_.back().number) notes_.push_back({number, line});
    }
    /// The line and number of the first reference that is not below `count`, or line 0.
    std::pair<size_t, int> FirstBeyond(size_t count) const {
        const auto beyond = std::partition_point(notes_.begin(), notes_.end(), [&](const auto& n) {
            return static_cast<size_t>(n.number) < count;
        });
        if (beyond == notes_.end()) return {0, 0};
        return {beyond->line, beyond->number};
    }

  private:
    struct Reference {
        int number;
        size_t line;
    };
    std::vector<Reference> notes_;
};

enum class Values { Finite, Any };

/// Reads one text from front to back. The functions that read a part of a line leave `p_` behind
/// it, and after false the error is set.
class ObjParser {
  public:
    ObjParser(std::string_view text, FileError& error, LProgressCallback* progress)
        : begin_(text.data()),
          p_(text.data()),
          end_(text.data() + text.size()),
          nextReport_(text.data()),
          error_(error),
          progress_(progress) {}

    bool Parse();
    PolyMesh TakeMesh();

  private:
    bool ReadLine();
    bool ReadVertex();
    bool ReadUV();
    bool ReadNormal();
    bool ReadFace();
    bool ReadCorner();
    bool ReadIndex(size_t count, const char* what, ForwardReferences& forward, int& index);
    bool ReadNumber(int& number);
    bool ReadNumbers(std::span<float> numbers, Values values, size_t& count);
    void ReadStatement(const char* start);
    std::string_view ReadKeyword();

    bool AtLineEnd() const { return p_ == end_ || IsLineEnd(*p_) || *p_ == '#'; }
    bool AtTokenEnd() const { return AtLineEnd() || IsBlank(*p_) || IsContinuation(); }
    bool IsContinuation() const { return *p_ == '\\' && (p_ + 1 == end_ || IsLineEnd(p_[1])); }
    bool TakeContinuation();
    void TakeLineEnd();
    void SkipBlanks();
    void SkipLine();

    bool Report();
    bool CheckReferences(const ForwardReferences& forward, size_t count, const char* what);
    bool HasRoom(size_t size, const char* what);
    /// The token around `at`, for messages.
    std::string Token(const char* at) const;
    bool Fail(std::string message) { return Fail(line_, std::move(message)); }
    bool Fail(size_t line, std::string message);

    const char* const begin_;
    const char* p_;
    const char* const end_;
    const char* nextReport_;
    size_t line_ = 1;
    FileError& error_;
    LProgressCallback* progress_;
    PolyMesh mesh_;
    ForwardReferences forwardVerts_, forwardUVs_;
};

bool ObjParser::Fail(size_t line, std::string message) {
    error_.line = line;
    error_.message = std::move(message);
    return false;
}

bool ObjParser::Report() {
    nextReport_ = p_ + std::min<size_t>(ReportEvery, end_ - p_);
    if (!progress_) return true;
    if (progress_->IsCancelled()) return Fail(0, "stopped");
    progress_->SetProgress(static_cast<float>(p_ - begin_) / static_cast<float>(end_ - begin_));
    return true;
}

bool ObjParser::Parse() {
    while (p_ < end_) {
        if (p_ >= nextReport_ && !Report()) return false;
        if (!ReadLine()) return false;
    }
    return CheckReferences(forwardVerts_, mesh_.positions.size(), "vertex") &&
           CheckReferences(forwardUVs_, mesh_.uvs.size(), "UV");
}

bool ObjParser::CheckReferences(const ForwardReferences& forward, size_t count, const char* what) {
    const auto [line, index] = forward.FirstBeyond(count);
    if (line == 0) return true;
    return Fail(line,
                fmt::format("{} {} does not exist: the file has {}", what, index + 1ll, count));
}

PolyMesh ObjParser::TakeMesh() {
    // A mesh lives long: give back what the growing left over.
    if (mesh_.colours.size() != mesh_.positions.size()) mesh_.colours.clear();
    mesh_.positions.shrink_to_fit();
    mesh_.colours.shrink_to_fit();
    mesh_.uvs.shrink_to_fit();
    mesh_.polygonStart.shrink_to_fit();
    mesh_.cornerVerts.shrink_to_fit();
    mesh_.cornerUVs.shrink_to_fit();
    mesh_.statements.shrink_to_fit();
    return std::move(mesh_);
}

bool ObjParser::ReadLine() {
    SkipBlanks();
    const char* const start = p_;
    const std::string_view keyword = ReadKeyword();
    if (keyword == "g" || keyword == "o" || keyword == "s" || keyword == "usemtl" ||
        keyword == "mtllib") {
        ReadStatement(start);
        return true;
    }
    SkipBlanks();
    const bool ok = keyword == "v"    ? ReadVertex()
                    : keyword == "f"  ? ReadFace()
                    : keyword == "vt" ? ReadUV()
                    : keyword == "vn" ? ReadNormal()
                                      : true;
    if (ok) SkipLine();
    return ok;
}

std::string_view ObjParser::ReadKeyword() {
    const char* const start = p_;
    while (!AtLineEnd() && !IsBlank(*p_) && *p_ != '\\') ++p_;
    return {start, static_cast<size_t>(p_ - start)};
}

void ObjParser::ReadStatement(const char* start) {
    std::string text;
    const char* from = start;
    while (p_ < end_ && !IsLineEnd(*p_)) {
        const char* const here = p_;
        if (TakeContinuation()) {
            text.append(from, here) += ' ';
            from = p_;
        } else {
            ++p_;
        }
    }
    text.append(from, p_);
    TakeLineEnd();
    mesh_.statements.Add(mesh_.NumPolygons(), text);
}

bool ObjParser::ReadVertex() {
    // x y z, x y z w, x y z r g b or x y z w r g b
    float n[7];
    size_t count = 0;
    if (!ReadNumbers(n, Values::Finite, count)) return false;
    if (count != 3 && count != 4 && count != 6 && count != 7) {
        return Fail(
            fmt::format("a vertex has 3 coordinates, then at most a weight and the 3 parts of "
                        "a colour; this one has {} numbers",
                        count));
    }
    if (!HasRoom(mesh_.positions.size(), "vertices")) return false;
    if (count >= 6 && mesh_.colours.size() == mesh_.positions.size()) {
        mesh_.colours.emplace_back(n[count - 3], n[count - 2], n[count - 1]);
    }
    mesh_.positions.emplace_back(n[0], n[1], n[2]);
    return true;
}

bool ObjParser::ReadUV() {
    float n[3];
    size_t count = 0;
    if (!ReadNumbers(n, Values::Finite, count)) return false;
    if (count < 2) return Fail(fmt::format("a UV has 2 coordinates; this one has {}", count));
    if (!HasRoom(mesh_.uvs.size(), "UVs")) return false;
    mesh_.uvs.emplace_back(n[0], n[1]);
    return true;
}

bool ObjParser::ReadNormal() {
    // Exporters write NaN for the normal of a degenerate face; it is dropped like any other.
    float n[3];
    size_t count = 0;
    if (!ReadNumbers(n, Values::Any, count)) return false;
    return count == 3 || Fail(fmt::format("a normal has 3 coordinates; this one has {}", count));
}

bool ObjParser::ReadNumbers(std::span<float> numbers, Values values, size_t& count) {
    for (count = 0; !AtLineEnd(); SkipBlanks()) {
        if (count == numbers.size()) {
            return Fail(fmt::format("more than {} numbers", numbers.size()));
        }
        const char* const start = p_;
        const auto [behind, ec] = ParseFloat(p_, end_, numbers[count]);
        p_ = behind;
        if (ec == std::errc::invalid_argument || !AtTokenEnd()) {
            return Fail(Token(start) + " is not a number");
        }
        if (ec != std::errc() && values == Values::Finite) {
            return Fail(Token(start) + " is not a finite number in the range of a float");
        }
        ++count;
    }
    return true;
}

bool ObjParser::ReadFace() {
    const size_t line = line_;
    const size_t first = mesh_.cornerVerts.size();
    for (; !AtLineEnd(); SkipBlanks()) {
        if (!ReadCorner()) return false;
    }
    const size_t corners = mesh_.cornerVerts.size() - first;
    if (corners < 3) {
        return Fail(line,
                    fmt::format("a polygon has at least 3 corners; this one has {}", corners));
    }
    mesh_.polygonStart.push_back(static_cast<int>(mesh_.cornerVerts.size()));
    return true;
}

bool ObjParser::ReadCorner() {
    // v, v/vt, v//vn or v/vt/vn; some exporters leave the slashes in where nothing follows
    const char* const start = p_;
    const auto takeSlash = [&] { return p_ < end_ && *p_ == '/' && (++p_, true); };
    int vert = -1, uv = -1, normal = 0;
    if (!ReadIndex(mesh_.positions.size(), "vertex", forwardVerts_, vert)) return false;
    if (takeSlash()) {
        if (!AtTokenEnd() && *p_ != '/' && !ReadIndex(mesh_.uvs.size(), "UV", forwardUVs_, uv)) {
            return false;
        }
        if (takeSlash() && !AtTokenEnd() && !ReadNumber(normal)) return false;
    }
    if (!AtTokenEnd()) return Fail(Token(start) + " is not a corner of a polygon");
    if (!HasRoom(mesh_.cornerVerts.size(), "corners")) return false;
    if (uv >= 0 || !mesh_.cornerUVs.empty()) {
        mesh_.cornerUVs.resize(mesh_.cornerVerts.size(), -1);
        mesh_.cornerUVs.push_back(uv);
    }
    mesh_.cornerVerts.push_back(vert);
    return true;
}

bool ObjParser::ReadIndex(size_t count, const char* what, ForwardReferences& forward, int& index) {
    int number = 0;
    if (!ReadNumber(number)) return false;
    if (number == 0) return Fail(fmt::format("{} numbers start at 1, not at 0", what));
    if (number < 0) {
        index = static_cast<int>(count) + number;
        return index >= 0 ||
               Fail(fmt::format("{} {} does not exist: there are {} so far", what, number, count));
    }
    index = number - 1;
    if (static_cast<size_t>(index) >= count) forward.Note(index, line_);
    return true;
}

bool ObjParser::ReadNumber(int& number) {
    const char* const start = p_;
    if (end_ - p_ > 1 && *p_ == '+' && p_[1] != '-') ++p_;
    const auto [behind, ec] = std::from_chars(p_, end_, number);
    if (ec == std::errc::result_out_of_range) {
        return Fail(Token(start) + " is out of the range of a number in a face");
    }
    if (ec != std::errc()) return Fail(Token(start) + " is not a corner of a polygon");
    p_ = behind;
    return true;
}

bool ObjParser::HasRoom(size_t size, const char* what) {
    return size < MaxCount || Fail(fmt::format("more than {} {}", MaxCount, what));
}

std::string ObjParser::Token(const char* at) const {
    const char* last = at;
    while (last < end_ && !IsBlank(*last) && !IsLineEnd(*last)) ++last;
    return Quoted({at, static_cast<size_t>(last - at)});
}

bool ObjParser::TakeContinuation() {
    if (!IsContinuation()) return false;
    ++p_;
    TakeLineEnd();
    return true;
}

void ObjParser::TakeLineEnd() {
    if (p_ == end_) return;
    const bool pair = *p_ == '\r' && p_ + 1 < end_ && p_[1] == '\n';
    p_ += pair ? 2 : 1;
    ++line_;
}

void ObjParser::SkipBlanks() {
    while (p_ < end_) {
        if (IsBlank(*p_)) {
            ++p_;
        } else if (!TakeContinuation()) {
            return;
        }
    }
}

void ObjParser::SkipLine() {
    bool comment = false;
    while (p_ < end_ && !IsLineEnd(*p_)) {
        comment |= *p_ == '#';
        if (comment || !TakeContinuation()) ++p_;
    }
    TakeLineEnd();
}

void AppendUtf8(std::string& text, uint32_t c) {
    const auto tail = [&](int shift) { text += static_cast<char>(0x80 | (c >> shift & 0x3f)); };
    if (c < 0x80) {
        text += static_cast<char>(c);
    } else if (c < 0x800) {
        text += static_cast<char>(0xc0 | c >> 6);
        tail(0);
    } else if (c < 0x10000) {
        text += static_cast<char>(0xe0 | c >> 12);
        tail(6), tail(0);
    } else {
        text += static_cast<char>(0xf0 | c >> 18);
        tail(12), tail(6), tail(0);
    }
}

/// `text` stands behind the byte order mark. Half of a surrogate pair becomes U+FFFD.
std::string Utf8FromUtf16(std::string_view text, bool bigEndian) {
    const auto unit = [&](size_t i) {
        const auto high = static_cast<uint8_t>(text[i + !bigEndian]);
        const auto low = static_cast<uint8_t>(text[i + bigEndian]);
        return static_cast<uint32_t>(high << 8 | low);
    };
    std::string utf8;
    utf8.reserve(text.size() / 2);
    for (size_t i = 0; i + 1 < text.size(); i += 2) {
        uint32_t c = unit(i);
        if (c >= 0xd800 && c < 0xe000) {
            const uint32_t low = c < 0xdc00 && i + 3 < text.size() ? unit(i + 2) : 0;
            const bool pair = low >= 0xdc00 && low < 0xe000;
            c = pair ? 0x10000 + ((c - 0xd800) << 10) + (low - 0xdc00) : 0xfffd;
            if (pair) i += 2;
        }
        AppendUtf8(utf8, c);
    }
    return utf8;
}

bool ParseUtf8(std::string_view text, PolyMesh& mesh, FileError& error,
               LProgressCallback* progress) {
    // A picture or an archive would pass as a text of nothing but unknown lines.
    if (const size_t nul = text.find('\0'); nul != text.npos) {
        error.line = 1 + std::count(text.begin(), text.begin() + nul, '\n');
        error.message = "a byte that is 0: this is not a text file";
        return false;
    }
    ObjParser parser(text, error, progress);
    if (!parser.Parse()) return false;
    mesh = parser.TakeMesh();
    return true;
}

bool ParseText(std::string_view text, PolyMesh& mesh, FileError& error,
               LProgressCallback* progress) {
    if (text.starts_with("\xff\xfe") || text.starts_with("\xfe\xff")) {
        const bool bigEndian = text.starts_with("\xfe");
        return ParseUtf8(Utf8FromUtf16(text.substr(2), bigEndian), mesh, error, progress);
    }
    if (text.starts_with("\xef\xbb\xbf")) text.remove_prefix(3);
    return ParseUtf8(text, mesh, error, progress);
}

}  // namespace

bool ParseObj(std::string_view text, PolyMesh& mesh, FileError& error,
              LProgressCallback* progress) {
    return ParseWatched(error, progress, [&] { return ParseText(text, mesh, error, progress); });
}

bool ReadObj(const std::string& path, PolyMesh& mesh, FileError& error,
             LProgressCallback* progress) {
    return ReadParsed(path, error,
                      [&](std::string_view text) { return ParseObj(text, mesh, error, progress); });
}

}  // namespace VantrelSDK
