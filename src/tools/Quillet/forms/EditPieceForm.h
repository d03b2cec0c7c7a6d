// The Edit Piece dialog: every field of a piece but its place and scale. Which controls are
// live depends on the kind of the piece's object and on the piece type chosen; OK builds the
// piece's attributes afresh from the live ones. The name is the caller's to check.
//
// Failure style: soft checks through ReportUnless; boxes for what the person must know.
#pragma once

#include <string>
#include <vector>

#include "framework/Form.h"
#include "framework/UserInterface.h"
#include "model/qlt_types.h"

class CQuilletDoc;

class EditPieceForm : public framework::Form {
public:
    enum Id : int {
        kName = 1060,
        kDescription = 1059,
        kObjectId = 1063,
        kPieceId = 1053,
        kLocked = 1075,
        kPieceData = 1076,
        kNextMenu = 1051,
        kDelta = 1061,
        kHzSlider = 1064,
        kVtSlider = 1065,
        kMenuId = 1068,
        kTextId = 1054,
        kAlignLeft = 1056,
        kAlignCentre = 1057,
        kAlignRight = 1058,
        kFont = 1052,
        kToolTip = 1066,
        kGroupId = 1055,
        kAddGroup = 1072,
        kEditGroup = 1050,
        kHotSpot = 1067,
        kBrowse = 1073,
        kClear = 1074,
    };

    // The first rows of the lists, standing for "nothing".
    static constexpr const char* kNoText = "<No Text>";
    static constexpr const char* kNoGroup = "<No Group>";
    static constexpr const char* kNone = "<None>";
    // The piece types that change what the dialog offers, and the text id of the first.
    static constexpr const char* kVariableText = "variable_text";
    static constexpr const char* kVariableButton = "variable_button";
    static constexpr const char* kEmptyText = "EMPTY_TEXT";

    static framework::FileDialogRequest HotSpotRequest();

    // Opens on a copy of `piece`, which stands on page `page_name` of `project`, offering the
    // view's lists of edit groups and group ids. Clears the in-use flag of the piece's type.
    // A type the piece types file lacks is appended to the file, and the person is told.
    EditPieceForm(CQuilletDoc& project, const std::string& page_name, const UI_PIECE& piece,
                  const std::vector<std::string>& edit_group_ids,
                  const std::vector<std::string>& group_ids, framework::UserInterface& ui);

    // The piece as the last OK built it; before any OK, the piece the dialog opened on.
    const UI_PIECE& Piece() const { return piece_; }

private:
    struct Kind;

    void FillPieceIds(const std::string& tag, framework::UserInterface& ui);
    void FillTextSection();
    void FillNextMenuSection();
    void FillGroupSection(const std::vector<std::string>& group_ids);
    void FillSliderSection(const std::string& page_name);
    // Rows, and the row of `value` selected (row 0 when it is not there).
    void Fill(int id, std::vector<std::string> rows, const std::string& value);
    void FillTypes(const std::vector<PIECE_TYPE>* category, const std::string& id);
    void Enable(int id, bool enabled);

    // Whether the piece type chosen is `name` in the list of one category.
    bool ChosenTypeIs(const std::vector<PIECE_TYPE>& category, const char* name) const;
    bool ChosenTypeIn(const std::vector<PIECE_TYPE>& category) const;
    bool IsVariableText() const;
    void TextRule();
    void NextMenuRule(framework::UserInterface& ui);
    void DeltaRule();

    void OnChanged(int id, framework::UserInterface& ui) override;
    bool OnPressed(int id, framework::UserInterface& ui) override;
    // The spin's step runs backwards: up lowers the number.
    void OnSpin(int id, int steps, framework::UserInterface& ui) override;
    bool OnOk(framework::UserInterface& ui) override;

    CQuilletDoc& project_;
    UI_PIECE piece_;
    const Kind* kind_ = nullptr;  // null for an object of no known kind
};
