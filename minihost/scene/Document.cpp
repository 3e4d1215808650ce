#include "minihost/scene/Document.h"

#include <algorithm>
#include <cmath>

#include "minihost/scene/Forms.h"

namespace minihost {

std::string_view HeaderOf(SceneForm form) {
    return form == SceneForm::Text ? kTextHeader : kBinaryHeader;
}

void AppendStatement(std::string& out, SceneForm form, const SceneStatement& statement) {
    form == SceneForm::Text ? AppendText(out, statement) : AppendBinary(out, statement);
}

SceneForm FormOf(std::string_view content) {
    for (const SceneForm form : {SceneForm::Text, SceneForm::Binary})
        if (content.starts_with(HeaderOf(form))) return form;
    if (content.starts_with("minihost scene "))
        throw DocumentError{"the scene is of another version; this host reads version 1", 0};
    throw DocumentError{"this is no scene: the first line is not \"minihost scene 1 text\"", 0};
}

void ReadStatements(std::string_view content, const std::function<void(SceneStatement&)>& take) {
    FormOf(content) == SceneForm::Text ? ReadText(content, take) : ReadBinary(content, take);
}

void StatementReader::Expected(const char* what) const {
    const std::string message = std::string("expected ") + what;
    if (AtEnd()) throw DocumentError{message + " before ';'", statement_.at};
    throw DocumentError{message, Peek()->at};
}

double StatementReader::TakeWhole(const char* expected, double least, double greatest) {
    const double number = Take<double>(expected);
    if (!(number >= least && number <= greatest) || number != std::trunc(number))
        Fail(std::string("expected ") + expected);
    return number;
}

std::string PlaceIn(std::string_view content, size_t at) {
    at = std::min(at, content.size());
    if (content.starts_with(kBinaryHeader)) return "byte " + std::to_string(at);
    const std::string_view before = content.substr(0, at);
    const auto line = std::ranges::count(before, '\n') + 1;
    const size_t start = before.rfind('\n') + 1;  // npos + 1 is 0
    return std::to_string(line) + ":" + std::to_string(at - start + 1);
}

}  // namespace minihost
