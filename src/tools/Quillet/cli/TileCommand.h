// `quillet-cli tile`: the texture page window's tiling commands from the command line.
#pragma once

#include <string>
#include <vector>

// tile [--allow-outside] [--json] PROJECT.qlt PAGE ORDER [SPACING] [--overflow NEW.tga]
// (options anywhere): holds the project against other writers, opens page PAGE of it (its
// path as the project file writes it, or absolute) as the editor does, tiles it by ORDER
// (0 area, 1 height then width, 2 width then height, 3 circumference, 4 best fit,
// 5 tightest) with SPACING pixels (default 0), prints the fit ratio and the placement, and
// saves the project, which rebuilds the page.
//
// With --overflow, the regions that do not fit move to a new page NEW.tga (a file name,
// made in the project's folder) of the page's size and format, tiled the same way, and on to
// NEW-2.tga, NEW-3.tga... while any still does not fit. A region too large for an empty
// page, and a NEW page that exists already, stop it before anything is written.
//
// Regions left outside a page stop it before anything is written (exit 1), unless
// --allow-outside lets their pixels go. --json prints the report as one JSON object instead.
int RunTile(const std::vector<std::string>& arguments);
