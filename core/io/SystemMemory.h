#pragma once

namespace VantrelSDK {

/// Bytes that this process can still take before the system runs short, by the system's own count
/// and the limit of the control group; a very large number when the system doesn't tell.
long long AvailableMemory();
/// The most that this process has held, in bytes.
long long PeakMemory();

}  // namespace VantrelSDK
