#include "minihost/scene/PluginDataForm.h"

#include <climits>
#include <sstream>

#include "maya/MArgList.h"
#include "minihost/Host.h"
#include "minihost/scene/DataForms.h"

namespace minihost {
namespace {

/// What a module writes of its data, in the form of the file where it knows that form.
SceneWord::What Written(MPxData& data, SceneForm form) {
    for (const SceneForm tried :
         {form, form == SceneForm::Text ? SceneForm::Binary : SceneForm::Text}) {
        std::ostringstream out;
        const MStatus status =
            tried == SceneForm::Text ? data.writeASCII(out) : data.writeBinary(out);
        if (!status || !out) continue;
        if (tried == SceneForm::Text) return std::move(out).str();
        return Blob{std::move(out).str()};
    }
    return Blob();
}

/// The words of a text, numbers as numbers.
MArgList WordsOf(const std::string& text) {
    std::vector<Value> words;
    std::istringstream in(text);
    for (std::string word; in >> word;) {
        const MString number(word);
        if (number.isInt())
            words.emplace_back(number.asInt());
        else if (number.isDouble())
            words.emplace_back(number.asDouble());
        else
            words.emplace_back(word);
    }
    return MArgList(std::move(words));
}

/// Null where there is no such type, or the module cannot read the content.
std::shared_ptr<Data> Made(MTypeId id, const SceneWord::What& content) {
    std::unique_ptr<MPxData> data = Host::Get().dataTypes.Make(id);
    if (!data) return nullptr;
    if (const auto* text = std::get_if<std::string>(&content)) {
        unsigned next = 0;
        if (!data->readASCII(WordsOf(*text), next)) return nullptr;
    } else {
        const std::string& bytes = std::get<Blob>(content).bytes;
        std::istringstream in(bytes);
        if (bytes.size() > UINT_MAX) return nullptr;
        if (!data->readBinary(in, static_cast<unsigned>(bytes.size()))) return nullptr;
    }
    return std::make_shared<PluginData>(std::move(data));
}

}  // namespace

void WritePluginData(const Data& data, SceneForm form, SceneStatement& statement) {
    if (const auto* unknown = dynamic_cast<const UnknownPluginData*>(&data)) {
        statement.Add(unknown->name);
        statement.Add(static_cast<double>(unknown->id.id()));
        statement.Add(unknown->content);
        return;
    }
    MPxData& written = *static_cast<const PluginData&>(data).get();
    statement.Add(written.name().str());
    statement.Add(static_cast<double>(written.typeId().id()));
    statement.Add(Written(written, form));
}

std::shared_ptr<Data> ReadPluginData(StatementReader& words) {
    std::string name = words.TakeText("the name of a data type");
    const MTypeId id(words.TakeId());
    SceneWord::What content = words.NextIsText() ? SceneWord::What(words.TakeText("a text"))
                                                 : words.Take<Blob>("a text or b(...)");
    // What a module refuses, having told so, is not lost either.
    if (auto data = Made(id, content)) return data;
    return std::make_shared<UnknownPluginData>(std::move(name), id, std::move(content));
}

}  // namespace minihost
