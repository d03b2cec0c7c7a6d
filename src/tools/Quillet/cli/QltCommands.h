// `quillet-cli qlt ...`: project files from the command line.
#pragma once

#include <string>
#include <vector>

// Exit codes of quillet-cli.
enum CliExit { kExitOk = 0, kExitFailure = 1, kExitUsage = 2, kExitUnreadable = 3, kExitWrite = 4 };

// qlt roundtrip IN OUT: loads IN as File Open does and saves it to OUT as Save As does.
int RunQltRoundtrip(const std::vector<std::string>& arguments);
