// quillet-cli: the editor's document operations for build pipelines and tests.
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "QltCommands.h"
#include "TgaCommands.h"

namespace {

struct Command {
    const char* group;
    const char* name;
    const char* usage;
    std::function<int(const std::vector<std::string>&)> run;
};

const std::vector<Command>& Commands() {
    static const std::vector<Command> commands = {
        {"qlt", "roundtrip", "qlt roundtrip IN OUT", RunQltRoundtrip},
        {"tga", "info", "tga info FILE", RunTgaInfo},
        {"tga", "convert", "tga convert IN OUT FORMAT", RunTgaConvert},
    };
    return commands;
}

int Usage() {
    std::cerr << "usage: quillet-cli COMMAND ...\ncommands:\n";
    for (const Command& command : Commands())
        std::cerr << "  " << command.usage << '\n';
    return kExitUsage;
}

}  // namespace

int main(int argc, char** argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (words.size() < 2) return Usage();
    for (const Command& command : Commands()) {
        if (words[0] == command.group && words[1] == command.name)
            return command.run(std::vector<std::string>(words.begin() + 2, words.end()));
    }
    return Usage();
}
