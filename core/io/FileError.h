#pragma once

#include <cstddef>
#include <string>

namespace VantrelSDK {

/// What is wrong with a file, and where.
struct FileError {
    std::string file;
    /// From 1; 0 when the error belongs to no line.
    size_t line = 0;
    std::string message;

    /// "file:line: message", without the parts that are not known.
    std::string Text() const {
        std::string text = file;
        if (line) text += (file.empty() ? "line " : ":") + std::to_string(line);
        return text.empty() ? message : text + ": " + message;
    }
};

}  // namespace VantrelSDK
