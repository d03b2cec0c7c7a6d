#include "RenderCommand.h"

#include "QltCommands.h"

int RunRender(const std::vector<std::string>& /*arguments*/) {
    return kExitFailure;
}
