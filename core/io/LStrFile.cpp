#include "core/io/LStrFile.h"

namespace VantrelSDK {

bool LStrFile::Open(const char* path, const char* mode) {
    file_.reset(std::fopen(path, mode));
    return IsOpen();
}

bool LStrFile::Write(const char* text) {
    return file_ && std::fputs(text, file_.get()) >= 0 && std::fflush(file_.get()) == 0;
}

}  // namespace VantrelSDK
