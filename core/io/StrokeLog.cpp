#include "core/io/StrokeLog.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>
#include <cmath>
#include <concepts>
#include <cstdint>
#include <limits>
#include <new>
#include <nlohmann/json.hpp>
#include <ostream>
#include <span>
#include <type_traits>
#include <utility>

#include "core/io/Quoted.h"

namespace VantrelSDK {

namespace {

/// The numbers that a field takes, ends included, and the words for them.
struct Range {
    double least, most;
    const char* expected;
};

constexpr float MaxFloat = std::numeric_limits<float>::max();
constexpr Range AnyInt{INT_MIN, INT_MAX, "a whole number in the range of an int"};
constexpr Range Count{0, INT_MAX, "a whole number from 0"};
constexpr Range Mode{0, 19, "a whole number from 0 to 19"};
constexpr Range Curve{1, 2, "1 or 2"};
constexpr Range Side{1, ScreenMask::kMostSide, "a whole number from 1 to 32768"};
constexpr Range Unit{0, 1, "a number from 0 to 1"};
constexpr Range Positive{std::numeric_limits<float>::denorm_min(), MaxFloat, "a number above 0"};
constexpr Range AnyFloat{-MaxFloat, MaxFloat, "a number in the range of a float"};

/// The texts that name a target.
struct TargetName {
    const char* expected = "the name of a target, not empty";
};

enum class Presence { Needed, Optional };

// The fields of each operation, in the order in which they are written. `field` is called with the
// name, the member, the range where there is a choice, and the presence; the reader and the writer
// of fields are both such a visitor.

template <class Op, class T>
concept Is = std::same_as<std::remove_const_t<Op>, T>;

template <class Visitor, class Op>
void VisitFields(Visitor&, Op&) {}

template <class Visitor, Is<SetOp> Op>
void VisitFields(Visitor& field, Op& op) {
    field("name", op.name);
    field("value", op.value);
    field("index", op.index, AnyInt);
}

template <class Visitor, Is<FalloffOp> Op>
void VisitFields(Visitor& field, Op& op) {
    field("curve", op.curve, Curve);
    field("points", op.points);
}

template <class Visitor, Is<SubdivideOp> Op>
void VisitFields(Visitor& field, Op& op) {
    field("kind", op.kind);
}

template <class Visitor, Is<LevelOp> Op>
void VisitFields(Visitor& field, Op& op) {
    field("value", op.value, Count);
}

template <class Visitor, Is<PressOp> Op>
void VisitFields(Visitor& field, Op& op) {
    field("mode", op.mode, Mode);
    field("pos", op.pos);
    field("dir", op.dir);
    field("orth", op.orth);
    field("normal", op.normal);
    field("screen", op.screen);
    field("radius", op.radius, Positive);
    field("pressure", op.pressure, Unit, Presence::Optional);
}

template <class Visitor, Is<MoveOp> Op>
void VisitFields(Visitor& field, Op& op) {
    field("pos", op.pos);
    field("screen", op.screen);
    field("normal", op.normal);
    field("pressure", op.pressure, Unit, Presence::Optional);
}

template <class Visitor, Is<ModifiersOp> Op>
void VisitFields(Visitor& field, Op& op) {
    field("shift", op.shift);
    field("ctrl", op.ctrl);
}

template <class Visitor, class Op>
requires Is<Op, SelectOp> || Is<Op, HideOp> || Is<Op, ShowOp>
void VisitFields(Visitor& field, Op& op) {
    field("faces", op.faces, Count);
}

template <class Visitor, Is<PaintOp> Op>
void VisitFields(Visitor& field, Op& op) {
    field("edit", op.edit);
}

template <class Visitor, Is<MaskOp> Op>
void VisitFields(Visitor& field, Op& op) {
    field("width", op.mask.width, Side);
    field("height", op.mask.height, Side);
    field("to_clip", op.mask.toClip);
    field("runs", op.mask.runs, Count);
}

template <class Visitor, class Op>
requires Is<Op, StoreOp> || Is<Op, LoadOp>
void VisitFields(Visitor& field, Op& op) {
    field("target", op.target, TargetName());
}

template <class Visitor, Is<ApplyOp> Op>
void VisitFields(Visitor& field, Op& op) {
    field("target", op.target, TargetName());
    field("weight", op.weight, AnyFloat);
}

/// By the value of PaintEdit.
constexpr std::array<std::string_view, 5> PaintEdits{"clear", "invert", "fill", "color_to_stencil",
                                                     "stencil_to_color"};

enum class Place { Anywhere, InStroke, OutsideStroke };

Place PlaceOf(const StrokeOp& op) {
    const auto is = [&]<class... Ops>() { return (std::holds_alternative<Ops>(op) || ...); };
    if (is.template operator()<SetOp, FalloffOp, ModifiersOp>()) return Place::Anywhere;
    return is.template operator()<MoveOp, ReleaseOp>() ? Place::InStroke : Place::OutsideStroke;
}

using Pairs = std::vector<std::array<double, 2>>;
using Value = std::variant<bool, double, std::string, std::vector<double>, Pairs>;

struct Field {
    std::string name;
    Value value;
};

/// Collects the fields of one line. It takes what a line may hold and stops at anything else, so
/// that what it keeps is bounded by the line, however deep or wide the line is.
class LineHandler : public nlohmann::json::json_sax_t {
  public:
    std::vector<Field> fields;
    std::string message;

    bool null() override { return Refuse(); }
    bool boolean(bool value) override { return Take(value); }
    bool number_integer(int64_t value) override { return Number(static_cast<double>(value)); }
    bool number_unsigned(uint64_t value) override { return Number(static_cast<double>(value)); }
    bool number_float(double value, const std::string&) override { return Number(value); }
    bool string(std::string& value) override { return Take(std::move(value)); }
    bool binary(nlohmann::json::binary_t&) override { return Refuse(); }

    bool start_object(size_t) override { return depth_++ == 0 || Refuse(); }
    bool end_object() override { return true; }
    bool key(std::string& name) override {
        if (fields.size() == MaxFields) return Fail("no operation has so many fields");
        for (const Field& field : fields) {
            if (field.name == name) return Fail(Quoted(name) + " stands there twice");
        }
        fields.push_back({std::move(name), {}});
        return true;
    }

    bool start_array(size_t) override {
        if (++depth_ == InArray) return Take(std::vector<double>());
        if (depth_ != InPair) return Refuse();
        Value& value = fields.back().value;
        const auto* numbers = std::get_if<std::vector<double>>(&value);
        if (numbers && !numbers->empty()) return Refuse();
        if (numbers) value = Pairs();
        inPair_ = 0;
        std::get<Pairs>(value).emplace_back();
        return true;
    }
    bool end_array() override { return depth_-- != InPair || inPair_ == 2 || Refuse(); }

    bool parse_error(size_t column, const std::string&,
                     const nlohmann::json::exception& e) override {
        constexpr int NumberTooLarge = 406;
        return Fail(fmt::format("{} at column {}",
                                e.id == NumberTooLarge ? "a number out of range" : "broken JSON",
                                column));
    }

  private:
    static constexpr size_t MaxFields = 16;
    static constexpr int InObject = 1, InArray = 2, InPair = 3;

    bool Fail(std::string why) {
        message = std::move(why);
        return false;
    }
    bool Refuse() {
        if (fields.empty()) return Fail("a line must be a JSON object");
        return Fail(
            Quoted(fields.back().name) +
            " must be true, false, a number, a text, an array of numbers or an array of pairs");
    }
    template <class T>
    bool Take(T&& value) {
        const bool isArray = std::is_same_v<std::decay_t<T>, std::vector<double>>;
        if (depth_ != (isArray ? InArray : InObject)) return Refuse();
        fields.back().value = std::forward<T>(value);
        return true;
    }
    bool Number(double number) {
        if (depth_ <= InObject) return Take(number);
        Value& value = fields.back().value;
        if (depth_ == InPair) {
            if (inPair_ == 2) return Refuse();
            std::get<Pairs>(value).back()[inPair_++] = number;
            return true;
        }
        auto* numbers = std::get_if<std::vector<double>>(&value);
        if (numbers) numbers->push_back(number);
        return numbers || Refuse();
    }

    int depth_ = 0;
    size_t inPair_ = 0;
};

bool ParseLine(std::string_view line, std::vector<Field>& fields, std::string& message) {
    if (line.empty()) {
        message = "an empty line; each line must be a JSON object";
        return false;
    }
    // The parser takes a zero byte for the end, and a byte order mark before any line.
    if (line.find('\0') != line.npos || line.starts_with('\xef')) {
        message = "broken JSON: a byte that no line may hold";
        return false;
    }
    LineHandler handler;
    if (!nlohmann::json::sax_parse(line.begin(), line.end(), &handler)) {
        message = std::move(handler.message);
        return false;
    }
    fields = std::move(handler.fields);
    return true;
}

bool Convert(double number, const Range& range, float& to) {
    // Rounded first: the text of the largest float may stand for a bit more than it.
    const auto narrow = static_cast<float>(number);
    if (!(narrow >= range.least && narrow <= range.most)) return false;
    to = narrow;
    return true;
}

bool Convert(double number, const Range& range, int& to) {
    const bool good = number >= range.least && number <= range.most && number == std::floor(number);
    if (good) to = static_cast<int>(number);
    return good;
}

bool Convert(std::span<const double> numbers, const Range& range, std::vector<int>& to) {
    to.resize(numbers.size());
    return std::equal(numbers.begin(), numbers.end(), to.begin(),
                      [&](double from, int& whole) { return Convert(from, range, whole); });
}

bool Convert(std::span<const double> numbers, std::initializer_list<float*> to) {
    return numbers.size() == to.size() &&
           std::equal(numbers.begin(), numbers.end(), to.begin(),
                      [](double number, float* part) { return Convert(number, AnyFloat, *part); });
}

bool Convert(const Pairs& pairs, Ramp& ramp) {
    float last = 0;
    for (const auto& [position, value] : pairs) {
        RampPoint point;
        const bool good =
            Convert(position, Unit, point.position) && Convert(value, Unit, point.value);
        if (!good || point.position < last) return false;
        last = point.position;
        ramp.push_back(point);
    }
    return !ramp.empty();
}

const Field* FindField(std::span<const Field> fields, std::string_view name) {
    const auto found =
        std::find_if(fields.begin(), fields.end(), [&](const Field& f) { return f.name == name; });
    return found == fields.end() ? nullptr : &*found;
}

/// Fills the members of an operation from the fields of a line. What is wrong shows in Check.
class FieldReader {
  public:
    FieldReader(std::string_view op, std::span<const Field> fields) : op_(op), fields_(fields) {}

    void operator()(const char* name, LPoint3& to) {
        Read<std::vector<double>>(name, "3 numbers in the range of a float", Presence::Needed,
                                  [&](auto& v) {
                                      return Convert(v, {&to.x, &to.y, &to.z});
                                  });
    }
    void operator()(const char* name, LPoint2& to) {
        Read<std::vector<double>>(name, "2 numbers in the range of a float", Presence::Needed,
                                  [&](auto& v) {
                                      return Convert(v, {&to.x, &to.y});
                                  });
    }
    template <class Number>
    void operator()(const char* name, Number& to, const Range& range,
                    Presence presence = Presence::Needed) {
        Read<double>(name, range.expected, presence,
                     [&](double number) { return Convert(number, range, to); });
    }
    void operator()(const char* name, std::optional<int>& to, const Range& range) {
        Read<double>(name, range.expected, Presence::Optional,
                     [&](double number) { return Convert(number, range, to.emplace()); });
    }
    void operator()(const char* name, std::optional<std::vector<int>>& to, const Range& range) {
        Read<std::vector<double>>(
            name, "polygon numbers, whole and from 0", Presence::Optional,
            [&](auto& numbers) { return Convert(numbers, range, to.emplace()); });
    }
    void operator()(const char* name, std::vector<int>& to, const Range& range) {
        Read<std::vector<double>>(name, "whole numbers from 0", Presence::Needed,
                                  [&](auto& numbers) { return Convert(numbers, range, to); });
    }
    void operator()(const char* name, std::array<double, 16>& to) {
        Read<std::vector<double>>(name, "16 numbers", Presence::Needed, [&](auto& numbers) {
            if (numbers.size() != to.size()) return false;
            std::ranges::copy(numbers, to.begin());
            return std::ranges::all_of(to, [](double number) { return std::isfinite(number); });
        });
    }
    void operator()(const char* name, bool& to) {
        Read<bool>(name, "true or false", Presence::Needed, [&](bool b) { return to = b, true; });
    }
    void operator()(const char* name, std::string& to) {
        Read<std::string>(name, "a text", Presence::Needed,
                          [&](auto& text) { return to = text, true; });
    }
    void operator()(const char* name, std::string& to, const TargetName& rule) {
        Read<std::string>(name, rule.expected, Presence::Needed,
                          [&](auto& text) { return to = text, !text.empty(); });
    }
    void operator()(const char* name, SubdivideKind& to) {
        Read<std::string>(name, "\"quad\" or \"loop\"", Presence::Needed, [&](auto& text) {
            to = text == "loop" ? SubdivideKind::Loop : SubdivideKind::Quad;
            return text == "loop" || text == "quad";
        });
    }
    void operator()(const char* name, PaintEdit& to) {
        static const std::string expected = fmt::format("one of {}", fmt::join(PaintEdits, ", "));
        Read<std::string>(name, expected.c_str(), Presence::Needed, [&](auto& text) {
            const auto found = std::ranges::find(PaintEdits, text);
            to = static_cast<PaintEdit>(found - PaintEdits.begin());
            return found != PaintEdits.end();
        });
    }
    void operator()(const char* name, Ramp& to) {
        Read<Pairs>(name,
                    "[[position, value], ...], from 0 to 1 and ordered by position, at least one",
                    Presence::Needed, [&](auto& pairs) { return Convert(pairs, to); });
    }
    void operator()(const char* name, SettingValue& to) {
        Read<Value>(name, "true, false, a number or an array of numbers", Presence::Needed,
                    [&](const Value& value) {
                        return TakeAs<bool>(value, to) || TakeAs<double>(value, to) ||
                               TakeAs<std::vector<double>>(value, to);
                    });
    }

    /// True when all that was needed was there, was good, and there was nothing else.
    bool Check(std::string& message) const {
        for (size_t i = 0; i < fields_.size(); ++i) {
            if (known_ >> i & 1 || fields_[i].name == "op") continue;
            message = fmt::format("\"{}\" has no field {}", op_, Quoted(fields_[i].name));
            return false;
        }
        message = wrong_;
        return wrong_.empty();
    }

  private:
    template <class T, class Take>
    void Read(const char* name, const char* expected, Presence presence, Take take) {
        const Field* field = FindField(fields_, name);
        if (field) known_ |= 1u << (field - fields_.data());
        std::string wrong;
        if (!field && presence == Presence::Needed) {
            wrong = fmt::format("\"{}\" needs \"{}\": {}", op_, name, expected);
        } else if (field && !TakeFrom<T>(field->value, take)) {
            wrong = fmt::format("\"{}\" of \"{}\" must be {}", name, op_, expected);
        }
        if (wrong_.empty()) wrong_ = std::move(wrong);
    }
    template <class T, class Take>
    static bool TakeFrom(const Value& value, Take take) {
        if constexpr (std::is_same_v<T, Value>) {
            return take(value);
        } else {
            const T* held = std::get_if<T>(&value);
            return held && take(*held);
        }
    }
    template <class T>
    static bool TakeAs(const Value& value, SettingValue& to) {
        return TakeFrom<T>(value, [&](const T& held) { return to = held, true; });
    }

    std::string_view op_;
    std::span<const Field> fields_;
    uint32_t known_ = 0;
    std::string wrong_;
};

/// Makes `op` a fresh operation of that name; false when there is none.
template <size_t... I>
bool MakeOp(std::string_view name, StrokeOp& op, std::index_sequence<I...>) {
    return ((std::variant_alternative_t<I, StrokeOp>::Name == name && (op.emplace<I>(), true)) ||
            ...);
}

bool ReadOp(std::span<const Field> fields, StrokeOp& op, std::string& message) {
    const Field* name = FindField(fields, "op");
    const auto* text = name ? std::get_if<std::string>(&name->value) : nullptr;
    if (!text) {
        message = "a line needs \"op\": the name of an operation";
        return false;
    }
    if (!MakeOp(*text, op, std::make_index_sequence<std::variant_size_v<StrokeOp>>())) {
        message = "there is no operation " + Quoted(*text);
        return false;
    }
    FieldReader reader(OpName(op), fields);
    std::visit([&](auto& o) { VisitFields(reader, o); }, op);
    return reader.Check(message);
}

bool CheckPlace(const StrokeOp& op, bool inStroke, std::string& message) {
    const Place place = PlaceOf(op);
    if (place == Place::Anywhere || (place == Place::InStroke) == inStroke) return true;
    message = fmt::format("\"{}\" {}", OpName(op),
                          inStroke ? "inside a stroke: release the stroke first"
                                   : "outside a stroke: a press must come first");
    return false;
}

/// Appends the fields of an operation to its line.
class FieldWriter {
  public:
    explicit FieldWriter(std::string& line) : line_(line) {}

    template <class T, class... Rules>
    void operator()(const char* name, const T& value, const Rules&...) {
        line_ += ",\"";
        line_ += name;
        line_ += "\":";
        Append(value);
    }
    template <class T, class... Rules>
    void operator()(const char* name, const std::optional<T>& value, const Rules&... rules) {
        if (value) (*this)(name, *value, rules...);
    }

  private:
    template <class Number>
    std::string_view Digits(Number number) {
        const char* const end = std::to_chars(digits_, digits_ + sizeof digits_, number).ptr;
        return {digits_, static_cast<size_t>(end - digits_)};
    }
    void Append(bool value) { line_ += value ? "true" : "false"; }
    void Append(int value) { line_ += Digits(value); }
    void Append(double value) {
        // As a whole number, "-0" would lose its sign.
        line_ += Digits(value);
        if (value == 0 && std::signbit(value)) line_ += ".0";
    }
    void Append(float value) {
        // The reader goes by way of a double, and so may round the shortest text of a float twice.
        double read = 0;
        const std::string_view text = Digits(value);
        std::from_chars(text.data(), text.data() + text.size(), read);
        if (value != 0 && static_cast<float>(read) == value) {
            line_ += text;
        } else {
            Append(static_cast<double>(value));
        }
    }
    void Append(const std::string& text) {
        line_ +=
            nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
    }
    void Append(SubdivideKind kind) {
        line_ += kind == SubdivideKind::Loop ? "\"loop\"" : "\"quad\"";
    }
    void Append(PaintEdit edit) {
        line_ += '"';
        line_ += PaintEdits[static_cast<size_t>(edit)];
        line_ += '"';
    }
    void Append(const LPoint2& p) { AppendAll(std::array{p.x, p.y}); }
    void Append(const LPoint3& p) { AppendAll(std::array{p.x, p.y, p.z}); }
    void Append(const RampPoint& point) { AppendAll(std::array{point.position, point.value}); }
    void Append(const SettingValue& value) {
        std::visit([&](const auto& held) { Append(held); }, value);
    }
    template <class T>
    void Append(const std::vector<T>& values) {
        AppendAll(values);
    }
    void Append(const std::array<double, 16>& values) { AppendAll(values); }
    void AppendAll(const auto& values) {
        char before = '[';
        for (const auto& value : values) {
            line_ += std::exchange(before, ',');
            Append(value);
        }
        if (before == '[') line_ += '[';
        line_ += ']';
    }

    std::string& line_;
    char digits_[32];
};

}  // namespace

std::string_view OpName(const StrokeOp& op) {
    return std::visit([](const auto& o) { return o.Name; }, op);
}

bool StrokeLogReader::Open(const std::string& path, FileError& error) {
    file_ = path;
    line_ = 0;
    inStroke_ = false;
    ended_.reset();
    error.file = path;
    error.line = 0;
    return lines_.Open(path, error.message);
}

StrokeLogReader::Result StrokeLogReader::Next(StrokeOp& op, FileError& error) {
    if (!ended_) {
        std::string message;
        Result result = Result::Failed;
        try {
            result = ReadNext(op, message);
        } catch (const std::bad_alloc&) {
            message = "not enough memory";
        }
        if (result == Result::Operation) return result;
        ended_ = result;
        endError_ = {file_, line_, message};
    }
    if (*ended_ == Result::Failed) error = endError_;
    return *ended_;
}

StrokeLogReader::Result StrokeLogReader::ReadNext(StrokeOp& op, std::string& message) {
    if (line_ == 0 && !ReadHeader(message)) return Result::Failed;
    std::string_view line;
    const LineReader::Result got = lines_.Next(line, message);
    if (got == LineReader::Result::End && inStroke_) {
        inStroke_ = false;
        op = ReleaseOp();
        return Result::Operation;
    }
    if (got == LineReader::Result::End) return Result::End;
    ++line_;
    StrokeOp read;
    std::vector<Field> fields;
    if (got == LineReader::Result::Failed || !ParseLine(line, fields, message) ||
        !ReadOp(fields, read, message) || !CheckPlace(read, inStroke_, message)) {
        return Result::Failed;
    }
    if (const auto* set = std::get_if<SetOp>(&read)) {
        message = settings_.Set(set->name, set->value, set->index).message;
        if (!message.empty()) return Result::Failed;
    }
    inStroke_ = (inStroke_ || std::holds_alternative<PressOp>(read)) &&
                !std::holds_alternative<ReleaseOp>(read);
    op = std::move(read);
    return Result::Operation;
}

bool StrokeLogReader::ReadHeader(std::string& message) {
    std::string_view line;
    const LineReader::Result got = lines_.Next(line, message);
    line_ = 1;
    if (got == LineReader::Result::Failed) return false;
    if (line.starts_with("\xef\xbb\xbf")) line.remove_prefix(3);
    std::vector<Field> fields;
    const bool object = ParseLine(line, fields, message);
    const auto holds = [&](const char* name, const Value& value) {
        const Field* field = FindField(fields, name);
        return field && field->value == value;
    };
    if (object && fields.size() == 2 && holds("kelmo", std::string("strokes")) &&
        holds("version", 1.0)) {
        return true;
    }
    message = fmt::format("the first line must be {}", StrokeLogHeader);
    return false;
}

void AppendOp(std::string& text, const StrokeOp& op) {
    text += "{\"op\":\"";
    text += OpName(op);
    text += '"';
    FieldWriter writer(text);
    std::visit([&](const auto& o) { VisitFields(writer, o); }, op);
    text += '}';
}

std::string WriteOp(const StrokeOp& op) {
    std::string line;
    AppendOp(line, op);
    return line;
}

StrokeLogWriter::StrokeLogWriter(std::ostream& out) : out_(out) {
    out_ << StrokeLogHeader << '\n';
}

void StrokeLogWriter::Write(const StrokeOp& op) {
    out_ << WriteOp(op) << '\n';
}

}  // namespace VantrelSDK
