#include "WorkspaceTree.h"

#include <algorithm>
#include <map>

namespace {

TreeNode Fixed(std::string text, std::vector<TreeNode> children = {}) {
    return TreeNode{std::move(text), std::move(children), false};
}

TreeNode Record(std::string text, std::vector<TreeNode> children = {}) {
    return TreeNode{std::move(text), std::move(children), true};
}

std::string FileNameOrNoFile(const std::string& path) {
    return path.empty() ? "No file" : path;
}

// Children stand in sorted order, as the tree control sorts them: letters without regard
// to case.
void SortChildren(std::vector<TreeNode>& nodes) {
    const auto lower = [](unsigned char c) { return c >= 'A' && c <= 'Z' ? c + 32 : c; };
    std::stable_sort(nodes.begin(), nodes.end(), [&lower](const TreeNode& a, const TreeNode& b) {
        return std::lexicographical_compare(
            a.text.begin(), a.text.end(), b.text.begin(), b.text.end(), [&lower](char x, char y) {
                return lower(static_cast<unsigned char>(x)) < lower(static_cast<unsigned char>(y));
            });
    });
}

std::vector<TreeNode> Sorted(std::vector<TreeNode> nodes) {
    SortChildren(nodes);
    return nodes;
}

// Records by folder: a folder node per folder name, the rest directly under the root.
template <typename Record, typename MakeNode>
std::vector<TreeNode> InFolders(const std::vector<Record>& records, MakeNode make_node) {
    std::map<std::string, std::vector<TreeNode>> folders;
    std::vector<TreeNode> top;
    for (const Record& record : records) {
        if (record.folder.empty())
            top.push_back(make_node(record));
        else
            folders[record.folder].push_back(make_node(record));
    }
    for (auto& [folder, members] : folders)
        top.push_back(Fixed(folder, Sorted(std::move(members))));
    return Sorted(std::move(top));
}

std::vector<TreeNode> Leaves(const std::vector<std::string>& texts) {
    std::vector<TreeNode> leaves;
    for (const std::string& text : texts)
        leaves.push_back(Record(text));
    return Sorted(std::move(leaves));
}

TreeNode TexturesNode(const ProjectRecords& records) {
    return Fixed("Textures", InFolders(records.texture_pages, [](const TPAGE& page) {
                     std::vector<TreeNode> regions;
                     for (const TREGION& region : page.regions)
                         regions.push_back(Record(region.name));
                     return Record(page.path, Sorted(std::move(regions)));
                 }));
}

TreeNode FontsNode(const ProjectRecords& records) {
    std::vector<std::string> names;
    for (const FONT_PAGE& font : records.font_pages)
        names.push_back(font.identifier);
    return Fixed("Fonts", Leaves(names));
}

TreeNode FmvsNode(const ProjectRecords& records) {
    return Fixed("FMVs", InFolders(records.fmv_pages,
                                   [](const FMV_PAGE& movie) { return Record(movie.path); }));
}

TreeNode UiObjectsNode(const ProjectRecords& records) {
    std::map<std::string, std::vector<std::string>> by_tag;
    for (const auto& object : records.ui_objects)
        by_tag[object->TypeTag()].push_back(object->Name());
    const auto kind = [&by_tag](const char* text, std::initializer_list<const char*> tags) {
        std::vector<std::string> names;
        for (const char* tag : tags)
            names.insert(names.end(), by_tag[tag].begin(), by_tag[tag].end());
        return Fixed(text, Leaves(names));
    };
    return Fixed(
        "UI Objects",
        {kind("Art", {"art"}),
         Fixed("Button", {kind("Push", {"push_button"}), kind("Toggle", {"toggle_button"})}),
         kind("Slider", {"UI_V_Slider", "UI_H_Slider"}), kind("Scroll Box", {"scroll_box"})});
}

TreeNode MenuNode(const LPAGE& page) {
    std::vector<std::string> pieces;
    for (const UI_PIECE& piece : page.pieces)
        pieces.push_back(piece.name);
    return Record(page.name, {Fixed("Paths", {Fixed("Textures", Leaves(page.texture_paths)),
                                              Fixed("FMVs", Leaves(page.fmv_paths))}),
                              Fixed("Pieces", Leaves(pieces))});
}

TreeNode LayoutsNode(const QLT_FILE& qlt_file) {
    std::vector<TreeNode> menus;
    for (const LPAGE& page : qlt_file.layouts)
        menus.push_back(MenuNode(page));
    return Fixed("Layouts",
                 {Fixed(DimensionsText(qlt_file)),
                  Fixed("Pieces file", {Record(FileNameOrNoFile(qlt_file.piece_types_fname)),
                                        Record(FileNameOrNoFile(qlt_file.piece_texts_fname))}),
                  Fixed("Common Paths", {Fixed("Textures", Leaves(qlt_file.common_texture_paths)),
                                         Fixed("FMVs", Leaves(qlt_file.common_fmv_paths))}),
                  Fixed("Menus", Sorted(std::move(menus)))});
}

}  // namespace

std::string DimensionsText(const QLT_FILE& qlt_file) {
    return "Dimensions: " + std::to_string(qlt_file.layout_width) + "x" +
           std::to_string(qlt_file.layout_height);
}

std::vector<TreeNode> BuildWorkspaceTree(const CQuilletDoc& project) {
    const ProjectRecords& records = project.records();
    return {TexturesNode(records), FontsNode(records), FmvsNode(records), UiObjectsNode(records),
            LayoutsNode(records.qlt_file)};
}

bool OpenWorkspaceItem(CQuilletDoc& project, const std::vector<std::string>& path) {
    if (path.size() < 2) return false;
    const std::string& text = path.back();
    if (path.front() == "Textures" && project.TextureExists(text)) {
        project.OpenTexture(text);
        return true;
    }
    if (path[path.size() - 2] == "Menus" && project.LayoutExists(text)) {
        project.OpenLayout(text);
        return true;
    }
    return false;
}
