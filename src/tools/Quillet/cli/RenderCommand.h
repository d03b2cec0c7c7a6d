// `quillet-cli render`: a layout page's picture, drawn as its window draws it.
#pragma once

#include <string>
#include <vector>

// render PROJECT.qlt LAYOUT OUT.tga: loads the project as File Open does and writes the page
// at zoom 1, without outlines or selection, as an uncompressed 32-bit bottom-up TGA. Exit 1
// for an unknown layout or a page that cannot be drawn, 3 for an unreadable project, 4 for
// an OUT that cannot be written.
int RunRender(const std::vector<std::string>& arguments);
