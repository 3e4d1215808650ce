#pragma once

namespace VantrelSDK {

/// How masks are cut: a node's settings at one time.
struct MaskSettings {
    /// The active one, -1 while none is used.
    int active = -1;
    /// Shifts what is closed: 0.5 closes what is above a half, less closes less. Gamma has no
    /// effect.
    float ceiling = 0.3f, gamma = 0;
    /// The direction that counts, seen from the camera, in degrees.
    int altitude = 0, azimuth = -85;

    bool operator==(const MaskSettings&) const = default;
};

}  // namespace VantrelSDK
