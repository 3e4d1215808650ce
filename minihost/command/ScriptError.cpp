#include "minihost/command/ScriptError.h"

#include <fmt/core.h>

namespace minihost {

std::string ScriptError::Text() const {
    std::string text = fmt::format("{}:{}:{}: {}", source, position.line, position.column, message);
    for (const std::string& call : calls) text += "\n  " + call;
    return text;
}

}  // namespace minihost
