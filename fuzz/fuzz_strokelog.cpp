// Any text must be read or refused; what was read must survive being written and read again.

#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "core/io/StrokeLog.h"

using namespace VantrelSDK;

namespace {

void Demand(bool holds) {
    if (!holds) std::abort();
}

/// The operations up to the end or the first error.
std::vector<StrokeOp> ReadAll(std::string_view text, bool& good) {
    StrokeLogReader reader(text);
    std::vector<StrokeOp> ops;
    StrokeOp op;
    FileError error;
    StrokeLogReader::Result result;
    while ((result = reader.Next(op, error)) == StrokeLogReader::Result::Operation) {
        ops.push_back(op);
    }
    good = result == StrokeLogReader::Result::End;
    Demand(good || (error.line > 0 && !error.message.empty()));
    return ops;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    bool good = false;
    const auto ops = ReadAll({reinterpret_cast<const char*>(data), size}, good);
    if (ops.empty()) return 0;
    std::ostringstream out;
    StrokeLogWriter writer(out);
    for (const StrokeOp& op : ops) writer.Write(op);
    auto back = ReadAll(out.str(), good);
    Demand(good);
    // Where an error cut a stroke short, the written log ends in it and its end is a release.
    if (back.size() == ops.size() + 1) back.pop_back();
    Demand(back == ops);
    return 0;
}
