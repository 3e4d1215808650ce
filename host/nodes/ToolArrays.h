#pragma once

namespace VantrelSDK {

class MLNode;

/// Gives the tool's arrays, one element for each sculpt mode or paint channel, what the modes begin
/// with, where they have no elements: of a new node, or of one that came from a scene, which does
/// not store them. Failures are told.
void FillToolArrays(MLNode& node, bool restored);

}  // namespace VantrelSDK
