#include "WorkspaceTree.h"

#include <algorithm>
#include <map>

namespace {

TreeNode Fixed(std::string text, std::vector<TreeNode> children = {}) {
    return TreeNode{std::move(text), std::move(children), false, false};
}

TreeNode Record(std::string text, std::vector<TreeNode> children = {}) {
    return TreeNode{std::move(text), std::move(children), true, false};
}

// A fixed node or folder whose children are records in tree order.
TreeNode SortedFolder(std::string text, std::vector<TreeNode> children) {
    std::stable_sort(children.begin(), children.end(), [](const TreeNode& a, const TreeNode& b) {
        return TreeTextLess(a.text, b.text);
    });
    return TreeNode{std::move(text), std::move(children), false, true};
}

std::string FileNameOrNoFile(const std::string& path) {
    return path.empty() ? "No file" : path;
}

// Records by folder: a folder node per folder name, the rest directly under the root.
template <typename Record, typename MakeNode>
TreeNode InFolders(std::string root, const std::vector<Record>& records, MakeNode make_node) {
    std::map<std::string, std::vector<TreeNode>> folders;
    std::vector<TreeNode> top;
    for (const Record& record : records) {
        if (record.folder.empty())
            top.push_back(make_node(record));
        else
            folders[record.folder].push_back(make_node(record));
    }
    for (auto& [folder, members] : folders)
        top.push_back(SortedFolder(folder, std::move(members)));
    return SortedFolder(std::move(root), std::move(top));
}

TreeNode Leaves(std::string text, const std::vector<std::string>& names) {
    std::vector<TreeNode> leaves;
    for (const std::string& name : names)
        leaves.push_back(Record(name));
    return SortedFolder(std::move(text), std::move(leaves));
}

TreeNode TexturesNode(const ProjectRecords& records) {
    return InFolders("Textures", records.texture_pages, [](const TPAGE& page) {
        std::vector<std::string> regions;
        for (const TREGION& region : page.regions)
            regions.push_back(region.name);
        TreeNode node = Leaves(page.path, regions);
        node.is_record = true;
        return node;
    });
}

TreeNode FontsNode(const ProjectRecords& records) {
    std::vector<std::string> names;
    for (const FONT_PAGE& font : records.font_pages)
        names.push_back(font.identifier);
    return Leaves("Fonts", names);
}

TreeNode FmvsNode(const ProjectRecords& records) {
    return InFolders("FMVs", records.fmv_pages,
                     [](const FMV_PAGE& movie) { return Record(movie.path); });
}

TreeNode UiObjectsNode(const ProjectRecords& records) {
    std::map<std::string, std::vector<std::string>> by_tag;
    for (const auto& object : records.ui_objects)
        by_tag[object->TypeTag()].push_back(object->Name());
    const auto kind = [&by_tag](const char* text, std::initializer_list<const char*> tags) {
        std::vector<std::string> names;
        for (const char* tag : tags)
            names.insert(names.end(), by_tag[tag].begin(), by_tag[tag].end());
        return Leaves(text, names);
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
    return Record(
        page.name,
        {Fixed("Paths", {Leaves("Textures", page.texture_paths), Leaves("FMVs", page.fmv_paths)}),
         Leaves("Pieces", pieces)});
}

TreeNode LayoutsNode(const QLT_FILE& qlt_file) {
    std::vector<TreeNode> menus;
    for (const LPAGE& page : qlt_file.layouts)
        menus.push_back(MenuNode(page));
    return Fixed("Layouts",
                 {Fixed(DimensionsText(qlt_file)),
                  Fixed("Pieces file", {Record(FileNameOrNoFile(qlt_file.piece_types_fname)),
                                        Record(FileNameOrNoFile(qlt_file.piece_texts_fname))}),
                  Fixed("Common Paths", {Leaves("Textures", qlt_file.common_texture_paths),
                                         Leaves("FMVs", qlt_file.common_fmv_paths)}),
                  SortedFolder("Menus", std::move(menus))});
}

unsigned char LowerAscii(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 'A' && byte <= 'Z' ? static_cast<unsigned char>(byte + 32) : byte;
}

}  // namespace

bool TreeTextLess(const std::string& a, const std::string& b) {
    const auto folded =
        std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                     [](char x, char y) { return LowerAscii(x) < LowerAscii(y); });
    if (folded) return true;
    const bool folded_equal =
        std::equal(a.begin(), a.end(), b.begin(), b.end(),
                   [](char x, char y) { return LowerAscii(x) == LowerAscii(y); });
    return folded_equal &&
           std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) {
               return static_cast<unsigned char>(x) < static_cast<unsigned char>(y);
           });
}

std::string DimensionsText(const QLT_FILE& qlt_file) {
    return "Dimensions: " + std::to_string(qlt_file.layout_width) + "x" +
           std::to_string(qlt_file.layout_height);
}

std::vector<TreeNode> BuildWorkspaceTree(const CQuilletDoc& project) {
    const ProjectRecords& records = project.records();
    return {TexturesNode(records), FontsNode(records), FmvsNode(records), UiObjectsNode(records),
            LayoutsNode(records.qlt_file)};
}
