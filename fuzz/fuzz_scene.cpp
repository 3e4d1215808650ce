// Any scene file must be read or refused; what was read must be written in both forms and read from
// each as the same scene.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "minihost/Host.h"
#include "minihost/anim/KeyEdits.h"
#include "minihost/graph/Evaluation.h"
#include "minihost/scene/SceneReader.h"
#include "minihost/scene/SceneWriter.h"

using namespace minihost;

namespace {

void Demand(bool holds) {
    if (!holds) std::abort();
}

bool Load(Host& host, const std::string& content) {
    try {
        ScenePlan plan(host, content);
        host.NewScene();
        plan.Apply();
        return true;
    } catch (const DocumentError& error) {
        Demand(!error.message.empty() && error.at <= content.size());
        Demand(!PlaceIn(content, error.at).empty());
        return false;
    }
}

}  // namespace

/// The first byte says which header comes before the rest.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    Host& host = Host::Get();
    const SceneForm form = data[0] == 't' ? SceneForm::Text : SceneForm::Binary;
    std::string content(HeaderOf(form));
    content.append(reinterpret_cast<const char*>(data) + 1, size - 1);
    if (!Load(host, content)) return 0;
    host.playback.SetTime(host.playback.time() + 1);
    for (const NodePtr& node : host.scene.Nodes())
        for (Slot& root : node->roots()) Evaluate(root);
    const std::string text = WriteScene(host, SceneForm::Text);
    const std::string binary = WriteScene(host, SceneForm::Binary);
    Demand(Load(host, binary) && WriteScene(host, SceneForm::Text) == text);
    Demand(Load(host, text) && WriteScene(host, SceneForm::Binary) == binary);
    return 0;
}
