#pragma once

#include <malloc.h>

#include <fstream>
#include <string>

namespace VantrelSDK::bench {

/// What the process takes from the system from now on.
class MemoryWatch {
  public:
    MemoryWatch() {
        malloc_trim(0);
        // Takes the peak back to what is held.
        std::ofstream("/proc/self/clear_refs") << 5;
        start_ = Status("VmRSS:");
    }
    double Held() const {
        malloc_trim(0);
        return Status("VmRSS:") - start_;
    }
    double Peak() const { return Status("VmHWM:") - start_; }

  private:
    /// Bytes that the system tells of this process.
    static double Status(const std::string& key) {
        std::ifstream file("/proc/self/status");
        double kilobytes = 0;
        for (std::string word; file >> word;)
            if (word == key && file >> kilobytes) break;
        return kilobytes * 1024;
    }

    double start_;
};

}  // namespace VantrelSDK::bench
