#include <bit>
#include <cstdint>
#include <cstring>

#include "minihost/scene/Forms.h"

namespace minihost {
namespace {

static_assert(std::endian::native == std::endian::little, "the format is little-endian");

class Writer {
  public:
    explicit Writer(std::string& out) : out_(out) {}

    void operator()(const std::string& text) { Many('s', text.data(), text.size()); }
    void operator()(double number) {
        out_ += 'n';
        Raw(&number, sizeof number);
    }
    void operator()(const std::vector<float>& v) { Many('f', v.data(), v.size()); }
    void operator()(const std::vector<int>& v) { Many('i', v.data(), v.size()); }
    void operator()(const std::vector<double>& v) { Many('d', v.data(), v.size()); }
    void operator()(const Blob& blob) { Many('b', blob.bytes.data(), blob.bytes.size()); }

  private:
    void Raw(const void* data, size_t size) { out_.append(static_cast<const char*>(data), size); }
    template <class T>
    void Many(char kind, const T* items, std::uint64_t count) {
        out_ += kind;
        Raw(&count, sizeof count);
        Raw(items, count * sizeof(T));
    }

    std::string& out_;
};

class Reader {
  public:
    explicit Reader(std::string_view content) : content_(content), at_(kBinaryHeader.size()) {}

    void Read(const std::function<void(SceneStatement&)>& take) {
        SceneStatement statement;
        while (at_ < content_.size()) {
            statement.tokens.clear();
            statement.at = at_;
            do {
                const size_t at = at_;
                statement.tokens.push_back({ReadWord(), at});
                if (at_ == content_.size()) Fail("expected ';' before the end of the file");
            } while (content_[at_] != ';');
            ++at_;
            take(statement);
        }
    }

  private:
    [[noreturn]] void Fail(const char* message) const { throw DocumentError{message, at_}; }

    SceneWord::What ReadWord() {
        switch (content_[at_++]) {
            case 's':
                return ReadMany<std::string>();
            case 'n':
                return ReadRaw<double>();
            case 'f':
                return ReadMany<std::vector<float>>();
            case 'i':
                return ReadMany<std::vector<int>>();
            case 'd':
                return ReadMany<std::vector<double>>();
            case 'b':
                return Blob{ReadMany<std::string>()};
            default:
                --at_;
                Fail("expected a word");
        }
    }
    template <class T>
    T ReadRaw() {
        T value;
        if (content_.size() - at_ < sizeof value) Fail("the file ends within a word");
        std::memcpy(&value, content_.data() + at_, sizeof value);
        at_ += sizeof value;
        return value;
    }
    template <class C>
    C ReadMany() {
        constexpr size_t kSize = sizeof(typename C::value_type);
        const size_t start = at_;
        const auto count = ReadRaw<std::uint64_t>();
        if (count > (content_.size() - at_) / kSize) {
            at_ = start;
            Fail("the word is longer than the rest of the file");
        }
        C items;
        items.resize(count);
        if (count > 0) std::memcpy(items.data(), content_.data() + at_, count * kSize);
        at_ += count * kSize;
        return items;
    }

    std::string_view content_;
    size_t at_;
};

}  // namespace

void AppendBinary(std::string& out, const SceneStatement& statement) {
    Writer writer(out);
    for (const SceneWord& token : statement.tokens) std::visit(writer, token.what);
    out += ';';
}

void ReadBinary(std::string_view content, const std::function<void(SceneStatement&)>& take) {
    Reader(content).Read(take);
}

}  // namespace minihost
