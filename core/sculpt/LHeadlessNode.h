#pragma once

#include <functional>
#include <string>

#include "core/io/PolyMesh.h"
#include "core/morph/LTargetWeights.h"
#include "core/sculpt/LNode.h"
#include "core/sculpt/LNodeSettings.h"

namespace VantrelSDK {

/// A node without a host: settings are plain values, the geometry comes from a polygon mesh.
class LHeadlessNode : public LNode {
  public:
    using ProgressFactory = std::function<std::unique_ptr<LProgressCallback>()>;

    /// `workers` 0 means one per processor. `progress` may be empty.
    explicit LHeadlessNode(int workers = 0, ProgressFactory progress = {});

    /// Takes a mesh to sculpt. Its colours come in held to 0 to 1. False, with the reason, when
    /// there is nothing to sculpt or a number is out of range.
    bool Load(const PolyMesh& mesh, std::string& error);

    /// What was sculpted, at a level: object plus delta. At level 0 the polygons of `source` (what
    /// was loaded), above it quads where the level is made of quads, else triangles, with the UVs
    /// of the level (none in a polygon that lacks one) and the groups and materials of the polygons
    /// that they lie in. It has colours when the source has or something was painted; what was not
    /// painted has those of the source as they came. Levels above the active one have followed.
    /// False, with the reason, when a position has left the range of numbers.
    bool GetResult(const PolyMesh& source, int level, PolyMesh& result, std::string& error);
    /// The same for other offsets in object space, of all levels, than those sculpted.
    bool GetResult(const PolyMesh& source, int level, const LSubdivMesh& offsets, PolyMesh& result,
                   std::string& error) const;

    /// The weights that targets have in every frame; see SetTime.
    LTargetWeights& weights() { return weights_; }

    /// Writes the node's state to a file of its own, whole or not at all, or takes it from one, see
    /// LNodeRecord; settings are not in it. Both end a session. False with the reason; after a
    /// failed loading the node is not to be used on. `version` takes the file's, when it is asked
    /// for.
    bool SaveState(const std::string& path, std::string& error);
    bool LoadState(const std::string& path, std::string& error, int* version = nullptr);

    LNodeSettings& settings() { return settings_; }
    const LNodeSettings& settings() const { return settings_; }
    /// Samples the falloff curves anew after a change of the ramps in the settings.
    void UpdateFalloffs();
    /// The pen's pressure of the moment, 0 to 1.
    void SetPenPressure(float pressure) { penPressure_ = pressure; }
    float penPressure() const { return penPressure_; }

    std::unique_ptr<LProgressCallback> getProgressCallbck() override;
    int getTransformMode(bool modifiers) const override;
    int getPushPullMode() const override { return settings_.pushPullMode; }
    float getBrushPaintPressure(bool tablet) const override;
    bool getDoAccumulate() const override { return settings_.accumulate; }
    int getSymetryMode() const override { return settings_.symmetry; }
    bool getSymmetrySnaping() const override { return settings_.doSymmetrySnapping; }
    float getSymmetrySnapRadius() const override { return settings_.symmetrySnapRadius; }
    bool useSoftFalloff() const override { return settings_.useFalloff; }
    bool useSoftFalloff2() const override { return settings_.useFalloff2; }
    bool useBicubFalloff() const override { return settings_.useRamp; }
    bool useBicubFalloff2() const override { return settings_.useRamp2; }
    float getFalloffMin() const override { return settings_.falloffMin; }
    float getFalloffMax() const override { return settings_.falloffMax; }
    float getFalloffMin2() const override { return settings_.falloffMin2; }
    float getFalloffMax2() const override { return settings_.falloffMax2; }
    int getNumBrushSmoothIterations() const override { return settings_.brushSmoothIterations; }
    int getNumBrushSharpenIterations() const override { return settings_.brushSharpenIterations; }
    int getNumSculptSmoothIterations() const override { return settings_.sculptSmoothIterations; }
    int getNumSculptSharpenIterations() const override { return settings_.sculptSharpenIterations; }
    int getPatternMode() const override { return settings_.patternMode; }
    int getPatternUVchannel() const override { return settings_.patternUVchannel; }
    float getPatternUVopacity() const override { return settings_.uvsetpatternOpac; }
    bool getUseColorAsAlpha() const override { return settings_.colorAsAlpha; }
    bool getAffectGeometry() const override { return settings_.affectGeometry; }
    bool getAffectVertexColor() const override { return settings_.affectVertColor; }
    bool getAffectStencil() const override { return settings_.affectStencil; }
    bool getAffectTexture(bool withMap) const override {
        return settings_.affectTexture && (!withMap || HasMaps());
    }
    bool getAffectTexStencil(bool withMap) const override {
        return settings_.affectTexStencil && (!withMap || HasMaps());
    }
    float getVertColorStrength(bool tablet) const override;
    LColor getVertexPaintColor() const override;
    void setVertexPaintColor(LColor color) override {
        settings_.vertexPaintColor = {color.r, color.g, color.b};
    }
    bool getUseStencil() const override { return settings_.useStencil; }
    bool getDoInvertStencil() const override { return settings_.invertStencil; }
    bool getUseRandomPatternRotation() const override { return settings_.randPatternRotation; }
    bool getUseRandomPatternOffset() const override { return settings_.randPatternOffset; }
    bool getUseRandomPatternScale() const override { return settings_.randPatternScale; }
    int getMaxPatternRotation() const override { return settings_.maxPatternRotation; }
    float getMaxPatternOffset() const override { return settings_.maxPatternOffset; }
    float getMinPatternScale() const override { return settings_.minPatternScale; }
    float getMaxPatternScale() const override { return settings_.maxPatternScale; }
    bool getUseChainPatternStamps() const override { return settings_.useChainPatterns; }
    bool getDoSmoothGeomSubdivision() const override { return settings_.doSmoothGeomSubdivs; }
    bool getDoProtectOpenEdgesSmoothing() const override {
        return settings_.doSmoothProtectOpenEdges;
    }
    bool getUseMasks() const override { return settings_.dynMasksOn != 0; }
    int getActiveMask() const override { return settings_.dynMaskActive; }
    int getObjSmoothIt() const override { return settings_.objSmIt; }
    int getUVchannel() const override { return settings_.UVchannel; }
    int getBlendSpace() const override { return settings_.blendSpace; }
    int getCsSpace() const override { return settings_.csSpace; }
    int getPsdSpace() const override { return settings_.psdSpace; }
    bool getFullEvalForRecord() const override { return settings_.fullRecEval; }
    int getNumRenderSubdivisionLevels() const override { return settings_.numRenderSubdivLvls; }

  private:
    void TakeColours(const PolyMesh& source, PolyMesh& result) const;
    float ModeStrength(const SettingArray<float, 20>& strengths, bool tablet) const;

    LNodeSettings settings_;
    ProgressFactory progress_;
    float penPressure_ = 1;
    LTargetWeights weights_{*this};
};

}  // namespace VantrelSDK
