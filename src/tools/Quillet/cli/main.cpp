// quillet-cli: the editor's document operations for build pipelines and tests.
#include <functional>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include "DemoProject.h"
#include "PackCommands.h"
#include "QltCommands.h"
#include "RenderCommand.h"
#include "TgaCommands.h"
#include "TileCommand.h"
#include "core.h"

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
        {"tile", "",
         "tile [--allow-outside] [--json] PROJECT.qlt PAGE ORDER [SPACING] [--overflow NEW.tga]",
         RunTile},
        {"render", "", "render PROJECT.qlt LAYOUT OUT.tga", RunRender},
        {"demo", "", "demo DIR", RunDemo},
        {"pack", "create", "pack create OUT.pack DIR", RunPackCreate},
        {"pack", "ls", "pack ls PACK", RunPackLs},
        {"pack", "cat", "pack cat PACK NAME", RunPackCat},
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
    for (const Command& command : Commands()) {
        // A command is one word ("demo") or two ("qlt roundtrip"); the rest are arguments.
        const size_t length = std::string_view(command.name).empty() ? 1 : 2;
        if (words.size() < length || words[0] != command.group ||
            (length == 2 && words[1] != command.name))
            continue;
        const int result = command.run(
            std::vector<std::string>(words.begin() + static_cast<long>(length), words.end()));
        // Commands start the core services as they need them; they stop once, at the end.
        Core::shutdown();
        return result;
    }
    return Usage();
}
