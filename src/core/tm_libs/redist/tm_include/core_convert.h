// Moving pixels between pictures: conversion between any two formats, scaling, and
// halving in place.
//
// Failure style: false, with the destination unchanged.
#pragma once

#include "core_pixels.h"

namespace Core {

enum ScaleFilter : int { SCALE_NEAREST = 0, SCALE_SMOOTH = 1, SCALE_BOX = 2 };

// Converts the top-left rectangle both locks share (the smaller width by the smaller
// height). False for a format that is not an image format, and for grey into 555, the one
// pair that has never had a routine.
bool convert_pixels(const PixelsLock& destination, const PixelsLock& source);

// Resamples `source` to the whole of `destination`; either may be of any image format.
bool scale_pixels(const PixelsLock& destination, int filter, const PixelsLock& source);

// Halves a square picture of side `size` in place, for every image format: each 2x2 block
// becomes the pixel at half its place, each channel (a + b + c + d + 2) >> 2 in its own
// bits. False for other formats or a side larger than the lock.
bool reduce_by_half(const PixelsLock& lock, int size);

}  // namespace Core
