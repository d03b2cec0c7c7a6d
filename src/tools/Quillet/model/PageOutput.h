// What rebuilding a texture page's .tga takes: held by the page's window while it is open,
// by the project for a page whose window closed before the project was saved, and by the
// recovery copy for a page with changes nobody saved.
#pragma once

#include <string>

#include "core_pixels.h"
#include "qlt_types.h"

struct PageOutput {
    std::string path;
    Core::PixelFormat save_format = Core::PIXEL_FORMAT_8888;
    ImagePtr image;  // the page as created or read, 8888; regions not cut yet come from it
    Core::Colour unused_colour{0xCD, 0xCD, 0xCD, 0xFF};
};
