#pragma once

/// The version of the interface that a module is built against.
#define MAYA_API_VERSION 201200

using MCallbackId = unsigned long long;

using double2 = double[2];
using double3 = double[3];
using double4 = double[4];
using float2 = float[2];
using float3 = float[3];
using int2 = int[2];
using int3 = int[3];
using uint = unsigned int;
using uchar = unsigned char;
