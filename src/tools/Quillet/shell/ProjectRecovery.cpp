#include "ProjectRecovery.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>

#include "core_log.h"
#include "framework/Application.h"
#include "model/QuilletDoc.h"
#include "model/open_documents.h"
#include "texture/TexturePageDoc.h"

namespace {

namespace fs = std::filesystem;

ImagePtr CopyOf(const ImagePtr& image) {
    return ImagePtr(image != nullptr ? Core::copy_image(*image) : nullptr);
}

void AddPage(RecoveryCopy& copy, const PageOutput& output, const CQuilletDoc& project) {
    RecoveredPage page;
    page.output.path = output.path;
    page.output.save_format = output.save_format;
    page.output.unused_colour = output.unused_colour;
    page.output.image = CopyOf(output.image);
    if (const TPAGE* record = project.TextureIfAny(output.path)) {
        for (size_t index = 0; index < record->regions.size(); ++index) {
            if (record->regions[index].image != nullptr)
                page.regions.push_back(
                    {static_cast<uint32_t>(index), CopyOf(record->regions[index].image)});
        }
    }
    copy.pages.push_back(std::move(page));
}

void AddKnownStamp(RecoveryCopy& copy, const std::string& path) {
    if (const std::optional<DiskStamp> stamp = SaveGuard::StampRemembered(path))
        copy.stamps.emplace_back(path, *stamp);
}

std::string LocalTime(const std::string& file) {
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0) return "an unknown time";
    std::tm local{};
    localtime_r(&status.st_mtime, &local);
    char text[32];
    return std::strftime(text, sizeof text, "%Y-%m-%d %H:%M", &local) > 0 ? text : "";
}

std::string UniqueName() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::to_string(::getpid()) + "-" +
           std::to_string(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count()) +
           ProjectRecovery::kExtension;
}

}  // namespace

bool HasUnsavedWork(const CQuilletDoc& project) {
    if (project.IsModified() || !project.KeptPages().empty()) return true;
    for (const TemplateIndex index : {kTexturePageTemplate, kLayoutPageTemplate}) {
        const std::vector<framework::Document*> windows = OpenDocumentsOf(index);
        if (std::any_of(windows.begin(), windows.end(),
                        [](const framework::Document* window) { return window->IsModified(); }))
            return true;
    }
    return false;
}

RecoveryCopy CaptureProject(CQuilletDoc& project) {
    RecoveryCopy copy;
    copy.project_path = project.GetPathName();
    copy.title = project.GetTitle();
    framework::Archive archive = framework::Archive::ForStoring({});
    project.Serialize(archive);
    copy.text = archive.TakeBytes();
    AddKnownStamp(copy, copy.project_path);
    for (const std::unique_ptr<PageOutput>& kept : project.KeptPages()) {
        AddPage(copy, *kept, project);
        AddKnownStamp(copy, kept->path);
    }
    for (const CTexturePageDoc* page : ChangedPageWindows()) {
        AddPage(copy, page->Output(), project);
        AddKnownStamp(copy, page->GetPathName());
    }
    return copy;
}

ProjectRecovery::ProjectRecovery(framework::Application& app, const std::string& folder)
    : app_(app), folder_(folder), own_file_((fs::path(folder) / UniqueName()).string()) {
    std::error_code error;
    fs::create_directories(folder_, error);
    fs::permissions(folder_, fs::perms::owner_all, error);
    own_lock_ = Core::FileLock::acquire(own_file_, std::chrono::milliseconds(0));
}

ProjectRecovery::~ProjectRecovery() {
    writer_.Wait();
}

std::string ProjectRecovery::DefaultFolder() {
    const char* state = std::getenv("XDG_STATE_HOME");
    fs::path base;
    if (state != nullptr && *state != '\0') {
        base = state;
    } else {
        const char* home = std::getenv("HOME");
        base = fs::path(home != nullptr ? home : ".") / ".local" / "state";
    }
    return (base / "quillet" / "recovery").string();
}

std::vector<std::string> ProjectRecovery::LeftCopies() const {
    std::vector<std::pair<fs::file_time_type, std::string>> found;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder_, error)) {
        const std::string path = entry.path().string();
        if (entry.path().extension() != kExtension || path == own_file_) continue;
        found.emplace_back(entry.last_write_time(error), path);
    }
    std::sort(found.begin(), found.end(), std::greater<>());
    std::vector<std::string> files;
    for (auto& [time, path] : found)
        files.push_back(std::move(path));
    return files;
}

bool ProjectRecovery::OfferRecovery() {
    for (const std::string& file : LeftCopies()) {
        // Held while the person decides: two editors starting at once never both take it.
        Core::FileLock lock = Core::FileLock::acquire(file, std::chrono::milliseconds(0));
        if (!lock.held()) continue;  // its editor still runs
        if (Recover(file)) return true;
    }
    return false;
}

bool ProjectRecovery::Recover(const std::string& file) {
    std::string reason;
    std::optional<RecoveryCopy> copy = ReadRecoveryCopy(file, reason);
    if (!copy) {
        CORE_LOG(Core::system_log(), Core::warning)
            << "Recovery copy " << file << " cannot be read: " << reason;
        return false;
    }
    const std::string project = copy->project_path.empty() ? copy->title : copy->project_path;
    switch (Ask(file, project)) {
        case Choice::Later:
            return false;
        case Choice::Discard: {
            std::error_code error;
            fs::remove(file, error);
            return false;
        }
        case Choice::Recover:
            break;
    }
    if (!Restore(std::move(*copy))) return false;
    // The copy is this editor's now, until the person saves or closes the project.
    std::error_code error;
    fs::rename(file, own_file_, error);
    copy_on_disk_ = !error;
    return true;
}

ProjectRecovery::Choice ProjectRecovery::Ask(const std::string& file,
                                             const std::string& project) const {
    framework::ChoiceRequest request;
    request.text = "Changes to " + project + " were not saved when Quillet last stopped (kept " +
                   LocalTime(file) + "). Recover them?";
    request.caption = kCaption;
    request.icon = framework::MessageIcon::Question;
    request.choices = {"Recover", "Discard", "Later"};
    request.default_choice = static_cast<size_t>(Choice::Recover);
    request.escape_choice = static_cast<size_t>(Choice::Later);
    const size_t answer = app_.UI().Choose(request);
    return answer < request.choices.size() ? static_cast<Choice>(answer) : Choice::Later;
}

bool ProjectRecovery::Restore(RecoveryCopy&& copy) {
    auto* project = dynamic_cast<CQuilletDoc*>(app_.OnFileNew());
    if (project == nullptr) return false;
    if (!project->ReadText(copy.text)) {
        project->OnCloseDocument();
        return false;
    }
    if (copy.project_path.empty())
        project->SetTitle(copy.title);
    else
        project->SetPathName(copy.project_path);
    // A save still asks before it overwrites a file someone changed after that editor read it.
    for (const auto& [path, stamp] : copy.stamps)
        SaveGuard::RememberStamp(path, stamp);
    for (RecoveredPage& page : copy.pages) {
        if (!project->TextureExists(page.output.path)) continue;
        std::vector<TREGION>& regions = project->FindTexture(page.output.path).regions;
        for (const RegionPicture& region : page.regions) {
            if (region.index < regions.size()) regions[region.index].SetImage(region.image.get());
        }
        project->KeepPageOutput(std::move(page.output));
    }
    project->TakeSnapshot();
    project->SetModifiedFlag(true);
    project->UpdateAllViews(nullptr);
    return true;
}

std::chrono::milliseconds ProjectRecovery::DelayBeforeUpdate(Clock::time_point now) const {
    const auto since = std::chrono::duration_cast<std::chrono::milliseconds>(now - last_update_);
    return std::clamp(kInterval - since, kSettle, kInterval);
}

void ProjectRecovery::Update() {
    const std::string failure = writer_.TakeFailure();
    if (!failure.empty()) {
        if (framework::StatusPane* pane = app_.GetStatusPane())
            pane->SetText("Cannot keep a recovery copy: " + failure);
        CORE_LOG(Core::system_log(), Core::warning) << "Cannot keep a recovery copy: " << failure;
    }
    if (app_.ChangeCount() == written_change_) return;
    written_change_ = app_.ChangeCount();
    last_update_ = Clock::now();
    CQuilletDoc* project = GetProjectDoc();
    if (project != nullptr && HasUnsavedWork(*project)) {
        writer_.Write(own_file_, CaptureProject(*project));
        copy_on_disk_ = true;
    } else if (copy_on_disk_) {
        writer_.Remove(own_file_);
        copy_on_disk_ = false;
    }
}

void ProjectRecovery::Finish() {
    Update();
    writer_.Wait();
}
