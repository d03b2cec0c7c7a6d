#include "TileCommand.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <optional>

#include "HeadlessEditor.h"
#include "QltCommands.h"
#include "TileOutput.h"
#include "model/SaveGuard.h"
#include "model/qlt_paths.h"
#include "texture/TexturePageDoc.h"

namespace {

constexpr const char* kUsage =
    "usage: quillet-cli tile [--allow-outside] [--json] PROJECT.qlt PAGE ORDER [SPACING] "
    "[--overflow NEW.tga]\n"
    "ORDER: 0 area, 1 height then width, 2 width then height, 3 circumference, 4 best fit, "
    "5 tightest\n";

struct TileArguments {
    std::string project;
    std::string page;
    unsigned long order = 0;
    unsigned long spacing = 0;
    bool allow_outside = false;
    bool json = false;
    std::optional<std::string> overflow;  // the first new page's file name
};

// A whole number up to `maximum`, all of `text`.
bool ParseNumber(const std::string& text, unsigned long maximum, unsigned long& value) {
    if (text.empty() || text.find_first_not_of("0123456789") != std::string::npos ||
        text.size() > 9)
        return false;
    value = std::stoul(text);
    return value <= maximum;
}

// A name of a file in the project's folder, with no folder of its own: a project file's
// paths take a backslash for a separator too.
bool IsPlainFileName(const std::string& name) {
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of("/\\") == std::string::npos;
}

// The options wherever they stand, then the words in their places; false on a usage error.
bool ParseArguments(const std::vector<std::string>& given, TileArguments& parsed) {
    std::vector<std::string> words;
    for (size_t at = 0; at < given.size(); ++at) {
        if (given[at] == "--allow-outside") {
            parsed.allow_outside = true;
        } else if (given[at] == "--json") {
            parsed.json = true;
        } else if (given[at] == "--overflow") {
            if (parsed.overflow || at + 1 == given.size() || !IsPlainFileName(given[at + 1]))
                return false;
            parsed.overflow = given[++at];
        } else {
            words.push_back(given[at]);
        }
    }
    if (words.size() < 3 || words.size() > 4 ||
        !ParseNumber(words[2], TILE_TIGHTEST, parsed.order) ||
        (words.size() == 4 && !ParseNumber(words[3], 0xFFFF, parsed.spacing)))
        return false;
    parsed.project = words[0];
    parsed.page = words[1];
    return true;
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

// Tells of `names` on standard error, when there are any, and answers whether there were none.
bool NoneOf(const std::vector<std::string>& names, const std::string& one,
            const std::string& many) {
    if (names.empty()) return true;
    std::cerr << Counted(names.size(), one, many) << JoinNames(names) << '\n';
    return false;
}

// Regions parked beside a page would be cut off for good by the save: unless allowed, the
// command stops before anything is written.
bool AllFit(const TPAGE* page, PageSize size, const std::string& page_name) {
    return page == nullptr ||
           NoneOf(RegionsOutside(*page, size), " region does not fit on " + page_name + ": ",
                  " regions do not fit on " + page_name + ": ");
}

// Whether every parked region can move to a new page; those that cannot would stay parked
// and be lost at the save.
bool AllCanMove(const OverflowPlan& plan) {
    return NoneOf(plan.oversized,
                  " region is larger than the page: ", " regions are larger than the page: ") &&
           NoneOf(plan.same_named, " region shares its name with another on the page: ",
                  " regions share their names with others on the page: ");
}

// The files that new pages write when they are made, removed again unless the project that
// names them was saved: a command that fails leaves no stray page behind.
class NewPageFiles {
public:
    ~NewPageFiles() {
        std::error_code ignored;
        for (const std::string& path : paths_)
            std::filesystem::remove(path, ignored);
    }
    void Add(const std::string& path) { paths_.push_back(path); }
    void Keep() { paths_.clear(); }

private:
    std::vector<std::string> paths_;
};

// Moves what the tiling parked to new pages; false (told on standard error) when it cannot.
bool Overflow(CQuilletDoc& project, CTexturePageDoc& page, const TileArguments& arguments,
              TileOutcome& outcome, NewPageFiles& made) {
    const int order = static_cast<int>(arguments.order);
    const auto spacing = static_cast<unsigned>(arguments.spacing);
    const OverflowPlan plan = PlanOverflow(page.Page().regions, page.GetPageSize(), order, spacing);
    if (!arguments.allow_outside && !AllCanMove(plan)) return false;
    const std::vector<std::string> paths =
        OverflowPagePaths(PagePath(*arguments.overflow, project.GetPathName()), plan.pages.size());
    if (const std::string refusal = OverflowRefusal(project, paths); !refusal.empty()) {
        std::cerr << refusal << '\n';
        return false;
    }
    for (const std::string& path : paths)
        made.Add(path);
    outcome.overflow = MoveToOverflowPages(page, plan, paths, order, spacing);
    return true;
}

}  // namespace

int RunTile(const std::vector<std::string>& given) {
    TileArguments arguments;
    if (!ParseArguments(given, arguments)) {
        std::cerr << kUsage;
        return kExitUsage;
    }
    HeadlessEditor editor;
    if (!editor.HoldForChange(arguments.project)) return kExitFailure;
    CQuilletDoc* project = editor.Open(arguments.project);
    if (project == nullptr) return kExitUnreadable;
    const std::string path = PagePath(arguments.page, project->GetPathName());
    if (!project->TextureExists(path)) {
        std::cerr << "The project has no texture page " << arguments.page << '\n';
        return kExitFailure;
    }
    CTexturePageDoc* page = project->OpenTexture(path);
    if (page == nullptr) return kExitUnreadable;
    page->CutRegions();
    TileOutcome outcome;
    outcome.report =
        page->Tile(static_cast<int>(arguments.order), static_cast<unsigned>(arguments.spacing));
    outcome.overflow_asked = arguments.overflow.has_value();
    NewPageFiles made;
    const bool moved = !outcome.overflow_asked || outcome.report.parked.empty() ||
                       Overflow(*project, *page, arguments, outcome, made);
    std::cout << (arguments.json ? TileJson(outcome) : TileText(outcome)) << std::flush;
    if (!moved) return kExitFailure;
    if (!arguments.allow_outside) {
        if (!AllFit(&page->Page(), page->GetPageSize(), arguments.page)) return kExitFailure;
        for (const OverflowPage& overflow : outcome.overflow) {
            if (!AllFit(project->TextureIfAny(overflow.path), page->GetPageSize(), overflow.path))
                return kExitFailure;
        }
    }
    if (!project->DoFileSave()) return kExitWrite;
    made.Keep();
    return kExitOk;
}
