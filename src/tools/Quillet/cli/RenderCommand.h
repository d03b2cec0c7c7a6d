// Placeholder: being written.
#pragma once
#include <string>
#include <vector>

int RunRender(const std::vector<std::string>& arguments);
