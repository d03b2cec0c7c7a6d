// The one conversion of piece geometry from float to integer.
#pragma once

#include <cstdint>

// Truncates toward zero. NaN, infinities and values outside 32-bit integers give INT32_MIN,
// where a bare conversion would be undefined.
int32_t FloatToInt(float value);
