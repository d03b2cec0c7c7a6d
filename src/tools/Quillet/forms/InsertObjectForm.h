// The Insert Object dialog: the UI objects that may stand on one layout page, by kind, and
// the name of the piece that will show the one picked. The caller checks that the name is
// free in the whole project.
//
// Failure style: soft checks through ReportUnless; a bad name or a missing pick keeps the
// dialog open after a box.
#pragma once

#include <string>

#include "framework/Form.h"
#include "model/qlt_types.h"

class CQuilletDoc;
class UI_OBJECT;

class InsertObjectForm : public framework::Form {
public:
    enum Id : int { kObjects = 1041, kObjectName = 1040, kPieceName = 1035, kTakePick = 1042 };

    static constexpr const char* kNoPickText =
        "Pick an object from \"Available Objects:\" for the piece to show.";

    // Lists the built-in empty art and buttons, then every object of `project` whose regions
    // all lie in folders open to `page`.
    InsertObjectForm(CQuilletDoc& project, const LPAGE& page);

    // The object picked in the tree; empty while none is.
    const std::string& Picked() const { return pick_; }
    // The piece the last OK built: of the picked object, at 0, 0, scale 1, with the first
    // piece type of the object's kind.
    const UI_PIECE& Piece() const { return piece_; }

private:
    void List(const UI_OBJECT& object);
    // Whether every region of the object and of its parts lies where the page may look.
    bool OpenToPage(const UI_OBJECT& object, const LPAGE& page) const;
    void TakePick();

    void OnChanged(int id, framework::UserInterface& ui) override;
    // "->", or a double click in the tree: the pick goes into the fields.
    bool OnPressed(int id, framework::UserInterface& ui) override;
    bool OnOk(framework::UserInterface& ui) override;

    CQuilletDoc& project_;
    std::string pick_;
    UI_PIECE piece_;
};
