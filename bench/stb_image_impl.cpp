// stb_image, built once for the benchmarks' reference decoder.
#define STB_IMAGE_IMPLEMENTATION
#define STBI_ONLY_TGA
#include "stb_image.h"
