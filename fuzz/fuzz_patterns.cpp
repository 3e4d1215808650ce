// Any text must be read as a list of patterns up to where it breaks; what was read must survive
// being written and read again.

#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "core/io/LStrFile.h"

using namespace VantrelSDK;

namespace {

void Demand(bool holds) {
    if (!holds) std::abort();
}

struct Record {
    LStrFile::Text name, field, file;
    bool operator==(const Record&) const = default;
};

std::vector<Record> ReadAll(const std::string& path) {
    LStrFile list;
    Demand(list.Open(path.c_str(), "rt"));
    std::vector<Record> records;
    int count = 0;
    if (list.ReadNumPatternsTag(count) != 1) return records;
    for (int i = 0; i < count; ++i) {
        Record record;
        if (list.ReadPatternTag(record.name, record.field, record.file) != 1) break;
        for (const LStrFile::Text* text : {&record.name, &record.field, &record.file})
            Demand(!*text || (!(*text)->empty() && (*text)->size() <= LStrFile::kMaxWord));
        records.push_back(record);
    }
    return records;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    static const std::string path = "/tmp/kelmo-fuzz-" + std::to_string(getpid()) + ".cfg";
    if (std::FILE* file = std::fopen(path.c_str(), "wb")) {
        std::fwrite(data, 1, size, file);
        std::fclose(file);
    }
    const std::vector<Record> records = ReadAll(path);
    {
        LStrFile list;
        Demand(list.Open(path.c_str(), "wt"));
        Demand(list.WriteNumPatternsTag(static_cast<int>(records.size())));
        for (const Record& record : records)
            Demand(list.WritePatternTag(record.name, record.field, record.file));
    }
    Demand(ReadAll(path) == records);
    std::remove(path.c_str());
    return 0;
}
