// `quillet-cli demo DIR`: a complete sample project, art drawn by our own code.
#pragma once

#include <string>
#include <vector>

int RunDemo(const std::vector<std::string>& arguments);
