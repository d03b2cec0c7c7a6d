// `quillet-cli pack ...`: pack files from the command line.
#pragma once

#include <string>
#include <vector>

// pack create OUT.pack DIR: every file under DIR as one pack, written atomically; exit 4 when
// OUT cannot be written.
int RunPackCreate(const std::vector<std::string>& arguments);
// pack ls PACK: one line "SIZE NAME" per entry, in table order.
int RunPackLs(const std::vector<std::string>& arguments);
// pack cat PACK NAME: the entry's bytes on standard output, NAME found as the IO manager
// finds it (without regard to case).
int RunPackCat(const std::vector<std::string>& arguments);
