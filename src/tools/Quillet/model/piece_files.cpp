#include "piece_files.h"

#include <algorithm>

#include "core_assert.h"
#include "core_atomic_file.h"
#include "core_buffers.h"
#include "report.h"

namespace {

constexpr size_t kFieldLength = 256;

struct Category {
    const char* type_tag;
    const char* file_word;
    std::vector<PIECE_TYPE> QLT_FILE::*list;
};

// In the order of the table: sliders of both directions share a list.
constexpr Category kCategories[] = {
    {"art", "art", &QLT_FILE::art_types},
    {"push_button", "push_btn", &QLT_FILE::push_button_types},
    {"toggle_button", "toggle_btn", &QLT_FILE::toggle_button_types},
    {"UI_V_Slider", "slider", &QLT_FILE::slider_types},
    {"UI_H_Slider", "slider", &QLT_FILE::slider_types},
    {"scroll_box", "scroll_box", &QLT_FILE::scroll_box_types},
};

// Up to the delimiter, at most 256 characters. Line breaks inside a field are dropped, so
// for a comma a field may run across lines.
std::string ReadField(Core::InputBuffer& buffer, char delimiter) {
    std::string field;
    while (!buffer.eof() && field.size() < kFieldLength) {
        const int c = buffer.get();
        if (c < 0 || c == delimiter) break;
        if (c == '\n' || c == '\r') continue;
        field.push_back(static_cast<char>(c));
    }
    return field;
}

bool EqualsIgnoringCase(const std::string& text, const char* word) {
    const std::string_view expected(word);
    return text.size() == expected.size() &&
           std::equal(text.begin(), text.end(), expected.begin(), [](char a, char b) {
               const auto lower = [](char c) {
                   return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
               };
               return lower(a) == lower(b);
           });
}

bool Open(Core::InputBuffer& buffer, const std::string& path) {
    return !path.empty() && buffer.open(path.c_str());
}

}  // namespace

bool LoadPieceTypesFile(QLT_FILE& qlt_file, const std::string& path) {
    Core::InputBuffer buffer;
    if (!Open(buffer, path)) return false;
    for (const Category& category : kCategories)
        (qlt_file.*category.list).clear();
    while (!buffer.eof()) {
        const std::string word = ReadField(buffer, ',');
        PIECE_TYPE entry;
        entry.name = ReadField(buffer, ',');
        entry.arguments = ReadField(buffer, '\n');
        const auto category =
            std::find_if(std::begin(kCategories), std::end(kCategories),
                         [&word](const Category& each) { return word == each.file_word; });
        if (category != std::end(kCategories))
            (qlt_file.*category->list).push_back(std::move(entry));
        else if (!EqualsIgnoringCase(word, "type"))
            ShowStop("Unrecognised piece type ( " + word + ") for piece " + entry.name, "quillet");
    }
    // Duplicates go before the sort: those that were not neighbours in the file stay.
    for (const Category& category : kCategories) {
        std::vector<PIECE_TYPE>& list = qlt_file.*category.list;
        list.erase(
            std::unique(list.begin(), list.end(),
                        [](const PIECE_TYPE& a, const PIECE_TYPE& b) { return a.name == b.name; }),
            list.end());
        std::stable_sort(list.begin(), list.end(),
                         [](const PIECE_TYPE& a, const PIECE_TYPE& b) { return a.name < b.name; });
    }
    qlt_file.piece_types_fname = path;
    return true;
}

bool LoadPieceTextsFile(QLT_FILE& qlt_file, const std::string& path) {
    Core::InputBuffer buffer;
    if (!Open(buffer, path)) return false;
    qlt_file.piece_texts.clear();
    while (!buffer.eof())
        qlt_file.piece_texts.push_back(ReadField(buffer, '\n'));
    std::stable_sort(qlt_file.piece_texts.begin(), qlt_file.piece_texts.end());
    qlt_file.piece_texts_fname = path;
    return true;
}

bool ReloadPieceTypes(QLT_FILE& qlt_file) {
    return !qlt_file.piece_types_fname.empty() &&
           LoadPieceTypesFile(qlt_file, qlt_file.piece_types_fname);
}

bool ReloadPieceTexts(QLT_FILE& qlt_file) {
    return !qlt_file.piece_texts_fname.empty() &&
           LoadPieceTextsFile(qlt_file, qlt_file.piece_texts_fname);
}

std::vector<PIECE_TYPE>* PieceTypeList(QLT_FILE& qlt_file, const std::string& type_tag) {
    for (const Category& category : kCategories) {
        if (type_tag == category.type_tag) return &(qlt_file.*category.list);
    }
    ReportUnless(false, "Unknown object type");
    return nullptr;
}

bool AppendPieceType(QLT_FILE& qlt_file, const std::string& type_tag, const std::string& name) {
    if (qlt_file.piece_types_fname.empty()) return false;
    const auto category =
        std::find_if(std::begin(kCategories), std::end(kCategories),
                     [&type_tag](const Category& each) { return type_tag == each.type_tag; });
    if (category == std::end(kCategories)) {
        CORE_ASSERT_MSG(false, "Unrecognised piece type");
        return false;
    }
    // The whole file is written anew beside the old one, so an append never half-writes it.
    const std::string& path = qlt_file.piece_types_fname;
    std::string bytes;
    std::string reason;
    if (!Core::read_whole_file(path, bytes, reason) ||
        !Core::write_file_atomically(
            path, bytes + "\r\n" + category->file_word + "," + name + ",default\r\n", reason)) {
        CORE_ASSERT_MSG(false, "Unable to open %s for appending (file may be read-only)",
                        path.c_str());
        return false;
    }
    (qlt_file.*category->list).push_back({name, "default", false});
    return true;
}

void FlagPieceType(QLT_FILE& qlt_file, const std::string& name, bool in_use) {
    for (const Category& category : kCategories) {
        for (PIECE_TYPE& entry : qlt_file.*category.list) {
            if (entry.name == name) {
                entry.in_use = in_use;
                return;
            }
        }
    }
}

void FlagAllInUse(QLT_FILE& qlt_file) {
    for (const LPAGE& page : qlt_file.layouts) {
        for (const UI_PIECE& piece : page.pieces) {
            if (!piece.piece_identifier.empty())
                FlagPieceType(qlt_file, piece.piece_identifier, true);
        }
    }
}
