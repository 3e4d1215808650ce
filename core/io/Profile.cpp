#include "core/io/Profile.h"

#include <fmt/format.h>

#include <cstdint>
#include <ctime>
#include <string>

namespace VantrelSDK {

namespace {

constexpr int64_t kNanoseconds = 1000000000;

LStrFile* g_diag = nullptr;
bool g_first = true;
int64_t g_start = 0, g_last = 0;

std::string Clock() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    localtime_r(&now, &parts);
    return fmt::format("{}:{}:{}", parts.tm_hour, parts.tm_min, parts.tm_sec);
}

bool ProcessTime(int64_t& nanoseconds) {
    std::timespec time{};
    if (clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time) != 0) return false;
    nanoseconds = int64_t{time.tv_sec} * kNanoseconds + time.tv_nsec;
    return true;
}

void Put(const std::string& line, LStrFile* file) {
    if (file)
        file->Write(line.c_str());
    else
        std::fputs(line.c_str(), stdout);
}

}  // namespace

LStrFile* GetDiagFile() {
    return g_diag;
}

void SetDiagFile(LStrFile* file) {
    g_diag = file;
}

void ProfileStart(LStrFile* file) {
    g_first = true;
    Put(fmt::format("[{}] initalized\n", Clock()), file);
}

void ProfileDump(const char* text, LStrFile* file) {
    int64_t now = g_last;
    const bool known = ProcessTime(now);
    if (g_first) {
        g_first = false;
        g_start = g_last = now;
        const char* const format =
            known ? "[{}] started | {}\n" : "[{}] Profiling: start failed! | {}\n";
        return Put(fmt::format(fmt::runtime(format), Clock(), text), file);
    }
    const int64_t since = now - g_last, total = now - g_start;
    g_last = now;
    Put(fmt::format("[{}] {}.{:09} (total {}.{:09}) | {}\n", Clock(), since / kNanoseconds,
                    since % kNanoseconds, total / kNanoseconds, total % kNanoseconds, text),
        file);
}

}  // namespace VantrelSDK
