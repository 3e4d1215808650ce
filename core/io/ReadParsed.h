#pragma once

#include <new>
#include <string>
#include <string_view>

#include "core/io/FileError.h"
#include "core/io/InputFile.h"
#include "core/io/LProgressCallback.h"

namespace VantrelSDK {

// What every reader of mesh files does around its parser.

/// Runs parse() with the progress, which may be null, shown. False with a message without memory.
template <class Parse>
bool ParseWatched(FileError& error, LProgressCallback* progress, const Parse& parse) {
    error.line = 0;
    if (progress) progress->Show();
    bool ok = false;
    try {
        ok = parse();
    } catch (const std::bad_alloc&) {
        error.message = "not enough memory";
    }
    if (progress) progress->Hide();
    return ok;
}

/// Reads a whole file for parse(bytes).
template <class Parse>
bool ReadParsed(const std::string& path, FileError& error, const Parse& parse) {
    error.file = path;
    error.line = 0;
    try {
        FileBytes bytes;
        return ReadWholeFile(path, bytes, error.message) && parse(bytes.View());
    } catch (const std::bad_alloc&) {
        error.message = "not enough memory";
        return false;
    }
}

}  // namespace VantrelSDK
