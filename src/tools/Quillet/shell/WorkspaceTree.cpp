#include "WorkspaceTree.h"

namespace {

TreeNode Fixed(std::string text) {
    return TreeNode{std::move(text), {}, false};
}
TreeNode Record(std::string text) {
    return TreeNode{std::move(text), {}, true};
}

std::string FileNameOrNoFile(const std::string& path) {
    return path.empty() ? "No file" : path;
}

TreeNode UiObjectsNode() {
    return TreeNode{"UI Objects",
                    {Fixed("Art"), TreeNode{"Button", {Fixed("Push"), Fixed("Toggle")}},
                     Fixed("Slider"), Fixed("Scroll Box")}};
}

TreeNode LayoutsNode(const QLT_FILE& qlt_file) {
    TreeNode common_textures{"Textures", {}};
    for (const std::string& path : qlt_file.common_texture_paths)
        common_textures.children.push_back(Record(path));
    TreeNode common_fmvs{"FMVs", {}};
    for (const std::string& path : qlt_file.common_fmv_paths)
        common_fmvs.children.push_back(Record(path));
    return TreeNode{"Layouts",
                    {Fixed(DimensionsText(qlt_file)),
                     TreeNode{"Pieces file",
                              {Record(FileNameOrNoFile(qlt_file.piece_types_fname)),
                               Record(FileNameOrNoFile(qlt_file.piece_texts_fname))}},
                     TreeNode{"Common Paths", {common_textures, common_fmvs}}, Fixed("Menus")}};
}

}  // namespace

std::string DimensionsText(const QLT_FILE& qlt_file) {
    return "Dimensions: " + std::to_string(qlt_file.layout_width) + "x" +
           std::to_string(qlt_file.layout_height);
}

std::vector<TreeNode> BuildWorkspaceTree(const CQuilletDoc& project) {
    return {Fixed("Textures"), Fixed("Fonts"), Fixed("FMVs"), UiObjectsNode(),
            LayoutsNode(project.qlt_file())};
}
