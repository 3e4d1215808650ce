#include "host/gl/glslShadowedProgram.h"

#include "host/gl/glslSources.h"

namespace VantrelSDK {

struct glslShadowedProgram::Filter {
    float below;
    const char* name;
};

const glslShadowedProgram::Filter glslShadowedProgram::kFilters[] = {
    {2, "noFilter"},      {3, "filter2x2flat"},    {6, "filter5x5flat"},
    {9, "filter8x8flat"}, {13, "filter12x12flat"}, {1e9f, "filter18x18flat"},
};

/// One of the programs; what it uploads is the front's.
class glslShadowedProgram::Variant : public glslGenericProgram {
  public:
    explicit Variant(const glslShadowedProgram& front)
        : front_(front),
          fragment_(front.FragmentSource()),
          occluded_(front.useSSAO),
          shadowed_(front.useShadow),
          stenciled_(front.ShowsStencilTex()) {}

    /// The first time loads it; one that can't be is not tried again.
    bool Use() {
        if (!tried_) LoadShaders();
        tried_ = true;
        return UseProgram();
    }

  protected:
    std::string VertexSource() const override { return front_.VertexSource(); }
    std::string FragmentSource() const override { return fragment_; }
    void BeforeLink() override { PlaceAttribute(kStencilLoc, "stencil"); }
    bool setupUniformVariables() override {
        if (front_.numLights == 0) return true;
        Upload to(*this);
        front_.Fill(to);
        if (shadowed_) to.Int("shadowTex", 0, "uniform variable 'shadowTex' not found\n");
        if (occluded_) {
            to.Float("viewWidth", front_.viewWidth, "uniform variable 'viewWidth' not found.");
            to.Float("viewHeight", front_.viewHeight, "uniform variable 'viewHeight' not found.");
            to.Int("ssaoTex", 1, "uniform variable 'ssaoTex' not found.");
        }
        if (stenciled_) {
            to.Int("stencilTex", 2, "uniform variable 'stencilTex' not found\n");
            to.Float("stencilTexOpac", front_.stencilTexOpac,
                     "uniform variable 'stencilTexOpac' not found\n");
        }
        return to.Done();
    }

  private:
    const glslShadowedProgram& front_;
    std::string fragment_;
    bool occluded_, shadowed_, stenciled_, tried_ = false;
};

glslShadowedProgram::glslShadowedProgram() = default;
glslShadowedProgram::~glslShadowedProgram() = default;

const glslShadowedProgram::Filter* glslShadowedProgram::ChooseFilter() const {
    const Filter* filter = kFilters;
    while (filterSize >= filter->below && filter->below < 1e9f) ++filter;
    return filter;
}

int glslShadowedProgram::Key() const {
    const int filter = useShadow ? static_cast<int>(ChooseFilter() - kFilters) + 1 : 0;
    return filter * 4 + (useSSAO ? 2 : 0) + (ShowsStencilTex() ? 1 : 0);
}

glslShadowedProgram::Variant& glslShadowedProgram::Due() const {
    std::unique_ptr<Variant>& due = variants_[Key()];
    if (!due) due = std::make_unique<Variant>(*this);
    return *due;
}

std::string glslShadowedProgram::VertexSource() const {
    return kSurfaceVertex;
}

std::string glslShadowedProgram::FragmentSource() const {
    std::string text = Defines();
    if (useShadow) text += std::string("#define SHADOW_FILTER ") + ChooseFilter()->name + "\n";
    if (useSSAO) text += "#define USE_SSAO\n";
    if (ShowsStencilTex()) text += "#define USE_STENCIL_TEX\n";
    return text + kSurfaceHeader + ShadowFilters() + kSurfaceMain;
}

bool glslShadowedProgram::LoadShaders() {
    return Due().LoadShaders();
}

void glslShadowedProgram::UnLoadShaders() {
    for (const auto& [key, variant] : variants_) variant->UnLoadShaders();
    variants_.clear();
}

bool glslShadowedProgram::UseProgram() {
    return Due().Use();
}

void glslShadowedProgram::Fill(Upload& to) const {
    to.Vector("lightDir", lightDir[0], "uniform variable 'lightDir' not found\n");
    to.Int("useColor", useColor, "uniform variable 'useColor' not found\n");
    to.Int("useSpecular", useSpeculars, "uniform variable 'useSpecular' not found\n");
    to.Int("useDiffuse", useDiffuse, "uniform variable 'useDiffuse' not found\n");
    FillOwn(to);
    to.Float("opac", opacity, "uniform variable 'opacity' not found\n");
    to.Int("useSelected", selected, "uniform variable 'useSelected' not found\n");
    to.Int("useStencil", useStencil, "uniform variable 'useStencil' not found\n");
    if (useStencil) to.Int("invStencil", invStencil, "uniform variable 'invStencil' not found\n");
    to.Attribute("stencil", "attribute variable 'stencil' not found\n");
}

void glslShadowedProgram::FillOwn(Upload& to) const {
    to.Int("mode", mode, "uniform variable 'mode' not found\n");
}

}  // namespace VantrelSDK
