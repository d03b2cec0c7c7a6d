// The document of a layout page window: names an LPAGE of the project and forwards every
// change to the project, which owns the record. Each change marks the document modified
// and updates its views.
//
// Failure style: the project's soft checks ("Layout page not found", "Piece not found").
#pragma once

#include <string>

#include "framework/Document.h"
#include "model/LayoutPageLink.h"
#include "model/qlt_types.h"

class CLayoutPageDoc : public framework::Document, public LayoutPageLink {
public:
    const std::string& PageName() const override { return name_; }
    PageSize GetPageSize() const { return size_; }
    // Takes the page's name and size, titles the window with the name, runs the first
    // view's initial update and draws the page.
    void Initialise(const LPAGE& page) override;
    void RemovePieceThroughWindow(const std::string& piece) override;
    void RebuildPieceData() override;

    // The page record in the project; null (without a report) when it is gone.
    LPAGE* Page() const;
    // Whether no page of the whole project has a piece of that name.
    bool IsIdentifierFree(const std::string& piece_name) const;
    // Appends the piece, so it lies on top, with an undo step.
    void AddPiece(const UI_PIECE& piece);
    void MovePiece(const std::string& piece, Point point, bool save_undo);
    // Multiplies the piece's scales, keeping it at least its object's minimum size.
    void RescalePiece(const std::string& piece, float fx, float fy, bool save_undo);
    // Overwrites every field of the piece, with an undo step.
    void ReplacePiece(const std::string& piece, const UI_PIECE& replacement);
    void DeletePiece(const std::string& piece, bool save_undo);
    // The piece's place in the page's list from 0 (its z order); -1 when the page is gone.
    int PieceZIndex(const std::string& piece) const;

    // The page's records live in the project; the window's document has nothing to store.
    void Serialize(framework::Archive& /*archive*/) override {}
    // Saving a layout page saves the project.
    bool OnSaveDocument(const std::string& path) override;
    // Closing a page's window never asks: its changes are the project's, which asks when it
    // closes.
    bool SaveModified() override { return true; }

private:
    void Changed();

    std::string name_;
    PageSize size_;
};
