#include "TileCommand.h"

#include <algorithm>
#include <iostream>

#include "HeadlessEditor.h"
#include "QltCommands.h"
#include "TileOutput.h"
#include "model/SaveGuard.h"
#include "model/qlt_paths.h"
#include "texture/TexturePageDoc.h"

namespace {

// A whole number up to `maximum`, all of `text`.
bool ParseNumber(const std::string& text, unsigned long maximum, unsigned long& value) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos ||
        text.size() > 9)
        return false;
    value = std::stoul(text);
    return value <= maximum;
}

// The page's path in memory: an absolute one as it is, else as the project file's reader
// would make it.
std::string PagePath(const std::string& page, const std::string& project_path) {
    if (!page.empty() && page.front() == '/') return page;
    SetProjectBaseDir(project_path);
    std::string path = page;
    MakeAbsolutePath(path);
    return path;
}

// Regions parked beside the page would be cut off for good by the save: unless allowed, the
// command stops before anything is written.
bool AllFit(CTexturePageDoc& page, const std::string& page_name) {
    const std::vector<std::string> outside = RegionsOutside(page.Page(), page.GetPageSize());
    if (outside.empty()) return true;
    std::cerr << outside.size() << (outside.size() == 1 ? " region does" : " regions do")
              << " not fit on " << page_name << ": " << JoinNames(outside) << '\n';
    return false;
}

// Takes `option` out of `arguments`, wherever it stands; whether it was there.
bool TakeOption(std::vector<std::string>& arguments, const std::string& option) {
    const auto found = std::find(arguments.begin(), arguments.end(), option);
    if (found == arguments.end()) return false;
    arguments.erase(found);
    return true;
}

}  // namespace

int RunTile(const std::vector<std::string>& given) {
    std::vector<std::string> arguments = given;
    const bool allow_outside = TakeOption(arguments, "--allow-outside");
    const bool json = TakeOption(arguments, "--json");
    unsigned long order = 0;
    unsigned long spacing = 0;
    if (arguments.size() < 3 || arguments.size() > 4 ||
        !ParseNumber(arguments[2], TILE_TIGHTEST, order) ||
        (arguments.size() == 4 && !ParseNumber(arguments[3], 0xFFFF, spacing))) {
        std::cerr << "usage: quillet-cli tile [--allow-outside] [--json] PROJECT.qlt PAGE ORDER "
                     "[SPACING]\n"
                     "ORDER: 0 area, 1 height then width, 2 width then height, "
                     "3 circumference, 4 best fit, 5 tightest\n";
        return kExitUsage;
    }
    HeadlessEditor editor;
    if (!editor.HoldForChange(arguments[0])) return kExitFailure;
    CQuilletDoc* project = editor.Open(arguments[0]);
    if (project == nullptr) return kExitUnreadable;
    const std::string path = PagePath(arguments[1], project->GetPathName());
    if (!project->TextureExists(path)) {
        std::cerr << "The project has no texture page " << arguments[1] << '\n';
        return kExitFailure;
    }
    CTexturePageDoc* page = project->OpenTexture(path);
    if (page == nullptr) return kExitUnreadable;
    page->CutRegions();
    const TilingReport report = page->Tile(static_cast<int>(order), static_cast<unsigned>(spacing));
    std::cout << (json ? TileJson(report) : TileText(report)) << std::flush;
    if (!allow_outside && !AllFit(*page, arguments[1])) return kExitFailure;
    return project->DoFileSave() ? kExitOk : kExitWrite;
}
