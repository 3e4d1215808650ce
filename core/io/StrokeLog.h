#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "core/io/FileError.h"
#include "core/io/LineReader.h"
#include "core/math/LPoint2.h"
#include "core/math/LPoint3.h"
#include "core/paint/PaintEdit.h"
#include "core/sculpt/LNodeSettings.h"
#include "core/sculpt/ScreenMask.h"

namespace VantrelSDK {

// The operations of a stroke log: one struct each, its name and fields as in the log.

/// Sets a node setting by its name; LNodeSettings::Set takes it.
struct SetOp {
    static constexpr std::string_view Name = "set";

    std::string name;
    SettingValue value;
    std::optional<int> index;

    bool operator==(const SetOp&) const = default;
};

/// Replaces the falloff curve 1 (sculpt modes) or 2 (paint modes).
struct FalloffOp {
    static constexpr std::string_view Name = "falloff";

    int curve = 1;
    /// At least one; positions and values from 0 to 1, positions not decreasing.
    Ramp points;

    bool operator==(const FalloffOp&) const = default;
};

enum class SubdivideKind { Quad, Loop };

/// Adds a level, which becomes active.
struct SubdivideOp {
    static constexpr std::string_view Name = "subdivide";

    SubdivideKind kind = SubdivideKind::Quad;

    bool operator==(const SubdivideOp&) const = default;
};

/// Removes the top level.
struct DeleteLevelOp {
    static constexpr std::string_view Name = "delete_level";
    bool operator==(const DeleteLevelOp&) const = default;
};

/// Makes a level active.
struct LevelOp {
    static constexpr std::string_view Name = "level";

    /// From 0; whether the level exists is for the player to check.
    int value = 0;

    bool operator==(const LevelOp&) const = default;
};

/// Begins a stroke. Positions and directions are in object space.
struct PressOp {
    static constexpr std::string_view Name = "press";

    /// 0 to 19.
    int mode = 0;
    LPoint3 pos, dir, orth, normal;
    LPoint2 screen;
    /// Above 0.
    float radius = 1;
    /// 0 to 1.
    float pressure = 1;

    bool operator==(const PressOp&) const = default;
};

/// A step of the stroke.
struct MoveOp {
    static constexpr std::string_view Name = "move";

    LPoint3 pos;
    LPoint2 screen;
    LPoint3 normal;
    /// 0 to 1.
    float pressure = 1;

    bool operator==(const MoveOp&) const = default;
};

/// Ends the stroke.
struct ReleaseOp {
    static constexpr std::string_view Name = "release";
    bool operator==(const ReleaseOp&) const = default;
};

/// Takes back the last stroke.
struct UndoOp {
    static constexpr std::string_view Name = "undo";
    bool operator==(const UndoOp&) const = default;
};

/// The keys that are held down.
struct ModifiersOp {
    static constexpr std::string_view Name = "modifiers";

    bool shift = false, ctrl = false;

    bool operator==(const ModifiersOp&) const = default;
};

/// Replaces the selection. In this and the next two, `faces` are polygon numbers of level 0, none
/// negative; whether they exist is for the player to check. Without a list, all polygons.
struct SelectOp {
    static constexpr std::string_view Name = "select";

    std::optional<std::vector<int>> faces;

    bool operator==(const SelectOp&) const = default;
};

struct HideOp {
    static constexpr std::string_view Name = "hide";

    std::optional<std::vector<int>> faces;

    bool operator==(const HideOp&) const = default;
};

struct ShowOp {
    static constexpr std::string_view Name = "show";

    std::optional<std::vector<int>> faces;

    bool operator==(const ShowOp&) const = default;
};

/// Stores the work delta as the target of that name, which is made when there is none.
struct StoreOp {
    static constexpr std::string_view Name = "store";

    /// Not empty. In this and the next two; whether it exists is for the player to check.
    std::string target;

    bool operator==(const StoreOp&) const = default;
};

/// Makes the neutral and the target the work delta.
struct LoadOp {
    static constexpr std::string_view Name = "load";

    std::string target;

    bool operator==(const LoadOp&) const = default;
};

/// Sets the weight of a target, and makes the neutral and all targets by their weights the work
/// delta.
struct ApplyOp {
    static constexpr std::string_view Name = "apply";

    std::string target;
    float weight = 1;

    bool operator==(const ApplyOp&) const = default;
};

/// Makes the work delta the neutral.
struct NeutralOp {
    static constexpr std::string_view Name = "neutral";
    bool operator==(const NeutralOp&) const = default;
};

/// Empties the neutral.
struct ClearNeutralOp {
    static constexpr std::string_view Name = "clear_neutral";
    bool operator==(const ClearNeutralOp&) const = default;
};

/// Edits the colours, or when only they are affected the stencils, of all vertices.
struct PaintOp {
    static constexpr std::string_view Name = "paint";

    PaintEdit edit = PaintEdit::Clear;

    bool operator==(const PaintOp&) const = default;
};

/// Brushes reach what this lets them.
struct MaskOp {
    static constexpr std::string_view Name = "mask";

    ScreenMask mask;

    bool operator==(const MaskOp&) const = default;
};

/// Brushes reach all again.
struct UnmaskOp {
    static constexpr std::string_view Name = "unmask";
    bool operator==(const UnmaskOp&) const = default;
};

/// Closes the session; the next press opens another.
struct FinishOp {
    static constexpr std::string_view Name = "finish";
    bool operator==(const FinishOp&) const = default;
};

using StrokeOp =
    std::variant<SetOp, FalloffOp, SubdivideOp, DeleteLevelOp, LevelOp, PressOp, MoveOp, ReleaseOp,
                 UndoOp, ModifiersOp, SelectOp, HideOp, ShowOp, StoreOp, LoadOp, ApplyOp, NeutralOp,
                 ClearNeutralOp, PaintOp, MaskOp, UnmaskOp, FinishOp>;

/// The name of an operation in the log, such as "delete_level".
std::string_view OpName(const StrokeOp& op);

/// Reads a stroke log (JSON Lines, UTF-8), one operation at a time, holding one line in memory.
///
/// Strict: an unknown key or operation, a missing field, a wrong type, a number out of range, a
/// setting that LNodeSettings would refuse, an operation that has no place inside or outside a
/// stroke, an empty line and a wrong first line are errors. A number is whole when its value is, so
/// 4.0 is. What depends on the mesh is not checked.
class StrokeLogReader {
  public:
    enum class Result { Operation, End, Failed };

    /// Reads nothing until Open.
    StrokeLogReader() = default;
    /// The text stays the caller's and must outlive the reader.
    explicit StrokeLogReader(std::string_view text) : lines_(text) {}

    /// False with `error` set when the file can't be opened.
    bool Open(const std::string& path, FileError& error);
    /// The next operation. When the log ends inside a stroke, a release comes before the end.
    /// Failed sets `error` to the line and what was expected, and leaves `op` alone; it and End
    /// stay the result of every further call.
    Result Next(StrokeOp& op, FileError& error);
    /// The line of the operation that Next gave last, from 1.
    size_t Line() const { return line_; }
    /// Bytes of the log that have been read.
    size_t BytesRead() const { return lines_.BytesRead(); }

  private:
    Result ReadNext(StrokeOp& op, std::string& message);
    bool ReadHeader(std::string& message);

    LineReader lines_;
    std::string file_;
    size_t line_ = 0;
    bool inStroke_ = false;
    /// What ended the reading.
    std::optional<Result> ended_;
    FileError endError_;
    /// Tells which settings are good.
    LNodeSettings settings_;
};

/// The first line of every log, without its end.
inline constexpr std::string_view StrokeLogHeader = R"({"kelmo":"strokes","version":1})";

/// One line of a log, without its end. Reading it gives the same operation, bit for bit. Numbers
/// must be finite.
std::string WriteOp(const StrokeOp& op);
/// The same, behind what `text` holds. Operations of a stroke allocate nothing where it has room.
void AppendOp(std::string& text, const StrokeOp& op);

/// Writes a log, line by line.
class StrokeLogWriter {
  public:
    /// Writes the first line. The stream stays the caller's, its state tells of errors.
    explicit StrokeLogWriter(std::ostream& out);
    void Write(const StrokeOp& op);

  private:
    std::ostream& out_;
};

}  // namespace VantrelSDK
