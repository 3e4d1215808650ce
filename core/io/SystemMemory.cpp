#include "core/io/SystemMemory.h"

#include <sys/resource.h>

#include <algorithm>
#include <climits>
#include <fstream>
#include <string>

namespace VantrelSDK {

namespace {

/// The number that a file holds, behind `key` when that is given; -1 when it can't be read.
long long NumberIn(const char* path, const std::string& key = {}) {
    std::ifstream file(path);
    long long number = -1;
    if (key.empty()) return file >> number ? number : -1;
    for (std::string word; file >> word;)
        if (word == key) return file >> number ? number : -1;
    return -1;
}

}  // namespace

long long AvailableMemory() {
    long long available = LLONG_MAX;
    if (const long long kb = NumberIn("/proc/meminfo", "MemAvailable:"); kb >= 0)
        available = kb * 1024;
    const long long limit = NumberIn("/sys/fs/cgroup/memory.max"),
                    used = NumberIn("/sys/fs/cgroup/memory.current");
    if (limit >= 0 && used >= 0) available = std::min(available, std::max(limit - used, 0LL));
    return available;
}

long long PeakMemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss * 1024LL;
}

}  // namespace VantrelSDK
