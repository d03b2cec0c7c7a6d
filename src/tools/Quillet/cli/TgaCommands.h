// `quillet-cli tga ...`: pictures from the command line.
#pragma once

#include <string>
#include <vector>

// tga info FILE: one line describing the header; exit 1 when the picture cannot be loaded.
int RunTgaInfo(const std::vector<std::string>& arguments);
// tga convert IN OUT FORMAT: IN in its own format, written as OUT in FORMAT.
int RunTgaConvert(const std::vector<std::string>& arguments);
