// The checks that come before a project save writes anything.
#include <sys/stat.h>

#include <map>
#include <memory>

#include "QuilletDoc.h"
#include "SaveGuard.h"
#include "framework/Application.h"
#include "framework/UserInterface.h"
#include "page_rect.h"
#include "texture/TexturePageDoc.h"

namespace {

using framework::Answer;
using framework::MessageButtons;
using framework::MessageIcon;

// One project is open at a time, so one table serves; paths are absolute.
std::map<std::string, DiskStamp>& Remembered() {
    static std::map<std::string, DiskStamp> stamps;
    return stamps;
}

struct PageToWrite {
    std::string path;
    PageSize size;
};

// Every file about to be replaced that someone else changed since this editor read or wrote
// it is overwritten only on the person's word.
bool OverwriteAllowed(framework::UserInterface& ui, const std::vector<std::string>& files) {
    for (const std::string& file : files) {
        if (!SaveGuard::ChangedOnDisk(file)) continue;
        const std::string text =
            file + " has changed on disk since it was read or last saved. Overwrite it?";
        if (ui.MessageBox(text, "File Changed", MessageIcon::Warning, MessageButtons::YesNo) !=
            Answer::Yes)
            return false;
    }
    return true;
}

// Regions off a page lose their pixels when the page is written: the person says so first.
bool LossAllowed(framework::UserInterface& ui, const CQuilletDoc& project,
                 const std::vector<PageToWrite>& pages) {
    for (const PageToWrite& page : pages) {
        const TPAGE* record = project.TextureIfAny(page.path);
        const std::vector<std::string> names =
            record != nullptr ? RegionsOutside(*record, page.size) : std::vector<std::string>{};
        if (names.empty()) continue;
        framework::ChoiceRequest request;
        request.text = Counted(names.size(), " region lies outside ", " regions lie outside ") +
                       page.path + " and will be lost: " + JoinNames(names) + ". Save anyway?";
        request.caption = "Regions Outside the Page";
        request.icon = MessageIcon::Warning;
        request.choices = {"Save anyway", "Cancel"};
        request.escape_choice = 1;
        if (ui.Choose(request) != 0) return false;
    }
    return true;
}

}  // namespace

std::string BusyMessage(const std::string& project) {
    return project + " is being changed by another process";
}

std::vector<std::string> RegionsOutside(const TPAGE& page, PageSize size) {
    std::vector<std::string> names;
    for (const TREGION& region : page.regions) {
        if (!LiesOnPage(region.rect, size)) names.push_back(region.name);
    }
    return names;
}

std::string Counted(size_t count, const std::string& one, const std::string& many) {
    return std::to_string(count) + (count == 1 ? one : many);
}

std::string JoinNames(const std::vector<std::string>& names) {
    std::string joined;
    for (const std::string& name : names)
        joined += (joined.empty() ? "" : ", ") + name;
    return joined;
}

DiskStamp StampOnDisk(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) return {};
    return {true, static_cast<uint64_t>(status.st_dev), static_cast<uint64_t>(status.st_ino),
            static_cast<int64_t>(status.st_size),
            static_cast<int64_t>(status.st_mtim.tv_sec) * 1000000000 + status.st_mtim.tv_nsec};
}

SaveGuard::SaveGuard(Core::FileLock lock, const std::vector<std::string>& files)
    : lock_(std::move(lock)) {
    for (const std::string& file : files)
        files_.emplace_back(file, StampOnDisk(file));
}

SaveGuard::~SaveGuard() {
    for (const auto& [file, before] : files_)
        if (StampOnDisk(file) != before) RememberOnDisk(file);
}

void SaveGuard::RememberOnDisk(const std::string& path) {
    Remembered()[path] = StampOnDisk(path);
}

bool SaveGuard::ChangedOnDisk(const std::string& path) {
    const auto found = Remembered().find(path);
    return found != Remembered().end() && found->second != StampOnDisk(path);
}

std::optional<DiskStamp> SaveGuard::StampRemembered(const std::string& path) {
    const auto found = Remembered().find(path);
    if (found == Remembered().end()) return std::nullopt;
    return found->second;
}

void SaveGuard::RememberStamp(const std::string& path, const DiskStamp& stamp) {
    Remembered()[path] = stamp;
}

std::unique_ptr<SaveGuard> CQuilletDoc::BeginSave(const std::string& path) {
    framework::UserInterface& ui = App().UI();
    // Held through the questions too: what they asked about must not change before the
    // files are written. A folder where no lock file can be made gets none; the save then
    // meets the same folder and says why it cannot write there.
    Core::FileLock lock = Core::FileLock::acquire(path, kOtherWriterWait);
    if (lock.state() == Core::FileLock::State::busy) {
        ui.MessageBox(BusyMessage(path), "Error", MessageIcon::Stop, MessageButtons::Ok);
        return nullptr;
    }
    std::vector<PageToWrite> pages;
    for (const std::unique_ptr<PageOutput>& kept : kept_pages_) {
        if (kept->image == nullptr) continue;
        const Core::Size size = kept->image->get_size();
        pages.push_back({kept->path, {size.width, size.height}});
    }
    for (const CTexturePageDoc* page : ChangedPageWindows())
        pages.push_back({page->GetPathName(), page->GetPageSize()});
    std::vector<std::string> files;
    for (const PageToWrite& page : pages)
        files.push_back(page.path);
    files.push_back(path);
    if (!OverwriteAllowed(ui, files) || !LossAllowed(ui, *this, pages)) return nullptr;
    return std::make_unique<SaveGuard>(std::move(lock), files);
}
