#include "RenderCommand.h"

#include <iostream>

#include "HeadlessEditor.h"
#include "QltCommands.h"
#include "core_tga.h"
#include "layout/LayoutRenderer.h"

int RunRender(const std::vector<std::string>& arguments) {
    if (arguments.size() != 3) {
        std::cerr << "usage: quillet-cli render PROJECT.qlt LAYOUT OUT.tga\n";
        return kExitUsage;
    }
    HeadlessEditor editor;
    CQuilletDoc* project = editor.Open(arguments[0]);
    if (project == nullptr) return kExitUnreadable;
    const LPAGE* page = project->qlt_file().PageNamed(arguments[1]);
    if (page == nullptr) {
        std::cerr << "The project has no layout page " << arguments[1] << '\n';
        return kExitFailure;
    }
    // The size the page's window takes, drawn by the renderer the window holds.
    LayoutRenderer renderer;
    const ImagePtr picture = renderer.Render(*page, {page->width, page->height});
    if (picture == nullptr) return kExitFailure;
    const Core::Size size = picture->get_size();
    if (size.width == 0 || size.height == 0) {
        std::cerr << "The layout page " << arguments[1] << " has no pixels; nothing is written to "
                  << arguments[2] << '\n';
        return kExitFailure;
    }
    if (!Core::save_tga(*picture, arguments[2].c_str(), Core::PIXEL_FORMAT_8888)) {
        std::cerr << "Cannot write " << arguments[2] << '\n';
        return kExitWrite;
    }
    return kExitOk;
}
