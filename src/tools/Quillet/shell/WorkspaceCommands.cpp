// The project window's commands that add, create and edit records: each asks through its
// dialog, hands the record to the project, and tells what went wrong in a box.
#include <filesystem>

#include "CommandIds.h"
#include "QuilletView.h"
#include "forms/AddArtForm.h"
#include "forms/AddButtonForm.h"
#include "forms/AddFontForm.h"
#include "forms/AddScrollBoxForm.h"
#include "forms/AddSliderForm.h"
#include "forms/ChooserForm.h"
#include "forms/SmallForms.h"
#include "forms/TextureForm.h"
#include "framework/Application.h"
#include "model/QuilletDoc.h"
#include "model/identifier.h"
#include "model/report.h"

namespace {

using namespace commands;

constexpr const char* kAlreadyThere = "This file is already part of the project";

void ShowError(const std::string& text) {
    framework::AppUI().MessageBox(text, "Error", framework::MessageIcon::Warning,
                                  framework::MessageButtons::Ok);
}

std::string Absolute(const std::string& path) {
    return std::filesystem::absolute(path).lexically_normal().string();
}

// The dialog of an object kind, started on `start`.
std::unique_ptr<ObjectForm> ObjectFormFor(const std::string& kind, const CQuilletDoc& project,
                                          const ObjectFormStart& start) {
    if (kind == "Art") return std::make_unique<AddArtForm>(project, start);
    if (kind == "Push" || kind == "Toggle" || kind == "Button")
        return std::make_unique<AddButtonForm>(project, start);
    if (kind == "Slider") return std::make_unique<AddSliderForm>(project, start);
    if (kind == "Scroll Box") return std::make_unique<AddScrollBoxForm>(project, start);
    return nullptr;
}

}  // namespace

bool CQuilletView::OnAddCommand(int command) {
    switch (command) {
        case kAddTexture:
        case kAddExistingTexture:
            AddTexture({}, command == kAddTexture);
            return true;
        case kCreateTexture:
        case kCreateTextureFromRoot:
            CreateTexture({});
            return true;
        case kCreateTextureInFolder:
            CreateTexture(SelectedFolder());
            return true;
        case kAddFmv:
            AddFmv({});
            return true;
        case kAddFmvToFolder:
            AddFmv(SelectedFolder());
            return true;
        case kAddFont:
            AddFont();
            return true;
        case kNewTextureFolder:
            NewFolder(Fixed({"Textures"}));
            return true;
        case kNewFmvFolder:
            NewFolder(Fixed({"FMVs"}));
            return true;
        case kCreateLayout:
        case kCreateLayoutFromLayouts:
        case kCreateLayoutFromMenus:
            CreateLayout(nullptr);
            return true;
        case kCopyMenu:
            if (selected_ != nullptr) {
                const std::string source = selected_->text;
                CreateLayout(&source);
            }
            return true;
        case kEditDimensions:
        case kEditDimensionsOfItem:
            EditDimensions();
            return true;
        case kAddCommonPath:
        case kAddCommonPathOfItem:
            AddCommonPath();
            return true;
        case kAddPagePath:
            AddPagePath();
            return true;
        case kBrowsePieceTypes:
        case kBrowsePieceTexts:
            ChoosePieceFile(command == kBrowsePieceTypes);
            return true;
        case kReloadPieceFiles:
            GetDocument()->ReloadPieceFiles();
            return true;
        case kReloadAndRefresh:
            GetDocument()->ReloadPieceFiles();
            for (const auto& doc_template : framework::Application::Instance()->Templates()) {
                for (framework::Document* document : doc_template->GetDocuments())
                    document->UpdateAllViews(nullptr);
            }
            return true;
        case kAddArt:
        case kAddArtOfKind:
            AddObject("Art");
            return true;
        case kAddButton:
        case kAddButtonOfKind:
            AddObject("Button");
            return true;
        case kAddSlider:
        case kAddSliderOfKind:
            AddObject("Slider");
            return true;
        case kAddScrollBox:
        case kAddScrollBoxOfKind:
            AddObject("Scroll Box");
            return true;
        default:
            return false;
    }
}

void CQuilletView::AddTexture(const std::string& folder, bool from_file_menu) {
    CQuilletDoc& project = *GetDocument();
    if (const std::optional<std::string> chosen =
            framework::AppUI().AskOpenFileName({"Open", "TGA Files (*.tga)", ".tga", ""})) {
        const std::string path = Absolute(*chosen);
        if (project.TextureExists(path)) {
            ShowError(kAlreadyThere);
        } else {
            project.AddExistingTexture(path);
            if (!folder.empty()) project.SetTextureFolder(path, folder);
        }
    }
    // The File menu's command has always said this, whether or not a page was added.
    if (from_file_menu) ReportUnless(false, "Drag and drop image list uninitialised");
}

void CQuilletView::CreateTexture(const std::string& folder) {
    CQuilletDoc& project = *GetDocument();
    TextureForm form;
    if (!framework::AppUI().RunForm(form)) return;
    const std::optional<std::string> chosen =
        framework::AppUI().AskSaveFileName({"Save As", "TGA Files (*.tga)", ".tga", ""});
    if (!chosen) return;
    const std::string path = Absolute(*chosen);
    const bool known = project.TextureExists(path);
    if (project.CreateNewTexture(path, form.data) == nullptr && !known) {
        ShowError("Failed to open\\create texture");
        return;
    }
    if (known) {
        ShowError(kAlreadyThere);
        return;
    }
    if (!folder.empty()) project.SetTextureFolder(path, folder);
}

void CQuilletView::AddFmv(const std::string& folder) {
    CQuilletDoc& project = *GetDocument();
    const std::optional<std::string> chosen =
        framework::AppUI().AskOpenFileName({"Open", "Fmv files (*.mpg *.avi)", ".mpg", ""});
    if (!chosen) return;
    const std::string path = Absolute(*chosen);
    if (!project.AddFmv(path)) {
        ShowError(kAlreadyThere);
        return;
    }
    if (!folder.empty()) project.SetFmvFolder(project.FindFmvByPath(path).identifier, folder);
}

void CQuilletView::AddFont() {
    CQuilletDoc& project = *GetDocument();
    AddFontForm form(std::filesystem::path(project.GetPathName()).parent_path().string());
    if (!framework::AppUI().RunForm(form)) return;
    if (!project.AddFont(form.FontId(), Absolute(form.FontFile()), form.LineFeedHeight()))
        ShowError(kAlreadyThere);
}

void CQuilletView::NewFolder(WorkspaceNode& root) {
    for (NewFolderForm form; framework::AppUI().RunForm(form);) {
        const std::string& name = form.Name();
        if (name.size() > kMaxNameLength) {
            framework::AppUI().MessageBox("More than 32 characters in folder name.",
                                          "Folder name too long", framework::MessageIcon::Warning,
                                          framework::MessageButtons::Ok);
        } else if (WorkspaceModel::FindBelow(root, name) != nullptr) {
            ShowError("This folder is already part of the project");
        } else {
            if (!name.empty()) {
                model_.Add(root, TreeNode{name, {}, false, true});
                GetDocument()->SetModifiedFlag(true);
            }
            return;
        }
    }
}

void CQuilletView::CreateLayout(const std::string* copy_of) {
    CQuilletDoc& project = *GetDocument();
    const QLT_FILE& qlt_file = project.qlt_file();
    CreateLayoutForm form(qlt_file.layout_width, qlt_file.layout_height);
    if (!framework::AppUI().RunForm(form)) return;
    if (!project.CreateLayout(form.Name(), form.Width(), form.Height())) {
        ShowError("This layout is already part of the project");
        return;
    }
    if (copy_of == nullptr) return;
    project.CopyLayout(*copy_of, form.Name());
    project.TakeSnapshot();
}

void CQuilletView::EditDimensions() {
    CQuilletDoc& project = *GetDocument();
    QLT_FILE& qlt_file = project.qlt_file();
    EditDimensionsForm form(qlt_file.layout_width, qlt_file.layout_height);
    if (!framework::AppUI().RunForm(form)) return;
    qlt_file.layout_width = form.Width();
    qlt_file.layout_height = form.Height();
    // Stored in the project file, so a change the person must not lose at the close.
    project.SetModifiedFlag(true);
}

void CQuilletView::AddCommonPath() {
    CQuilletDoc& project = *GetDocument();
    ChooserForm chooser(project, ChooserForm::Mode::Paths);
    std::string root;
    std::string folder;
    if (!chooser.Choose(framework::AppUI(), root, folder)) return;
    if (root == "Textures")
        project.AddCommonTexturePath(folder);
    else if (root == "FMVs")
        project.AddCommonFmvPath(folder);
}

void CQuilletView::AddPagePath() {
    CQuilletDoc& project = *GetDocument();
    const WorkspaceNode* menu = selected_ != nullptr ? MenuAbove(*selected_) : nullptr;
    if (menu == nullptr) return;
    ChooserForm chooser(project, ChooserForm::Mode::Paths);
    std::string root;
    std::string folder;
    if (!chooser.Choose(framework::AppUI(), root, folder)) return;
    if (root == "Textures")
        project.AddPageTexturePath(menu->text, folder);
    else if (root == "FMVs")
        project.AddPageFmvPath(menu->text, folder);
}

void CQuilletView::ChoosePieceFile(bool types) {
    CQuilletDoc& project = *GetDocument();
    const std::optional<std::string> chosen =
        framework::AppUI().AskOpenFileName({"Open", "TXT Files (*.txt)", ".txt", ""});
    if (!chosen) return;
    const std::string path = Absolute(*chosen);
    if (types ? project.SetPieceTypesFile(path) : project.SetPieceTextsFile(path)) return;
    ShowError(types ? "Invalid piece types description file"
                    : "Invalid piece texts description file");
}

void CQuilletView::AddObject(const std::string& kind) {
    CQuilletDoc& project = *GetDocument();
    const std::unique_ptr<ObjectForm> form = ObjectFormFor(kind, project, {});
    if (!framework::AppUI().RunForm(*form)) return;
    if (std::unique_ptr<UI_OBJECT> object = form->Build()) project.AddObject(std::move(object));
}

void CQuilletView::EditObject(const WorkspaceNode& node) {
    CQuilletDoc& project = *GetDocument();
    const UI_OBJECT* existing = project.ObjectIfAny(node.text);
    if (existing == nullptr) return;
    const std::string name = node.text;
    const std::unique_ptr<ObjectForm> form = ObjectFormFor(node.parent->text, project, {existing});
    if (form == nullptr || !framework::AppUI().RunForm(*form)) return;
    if (std::unique_ptr<UI_OBJECT> object = form->Build())
        project.ReplaceObject(name, std::move(object));
}
