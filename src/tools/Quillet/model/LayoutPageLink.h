// What the project asks of the document of an open layout page window. The layout page
// document implements it; the project finds it among the open documents by this interface,
// never by the document's own class, so the model needs nothing of the layout editor.
#pragma once

#include <string>

#include "qlt_types.h"

class LayoutPageLink {
public:
    virtual ~LayoutPageLink() = default;
    // The name of the LPAGE shown; empty until the window was given its page.
    virtual const std::string& PageName() const = 0;
    // Gives a new window its page: name and size, then its first picture.
    virtual void Initialise(const LPAGE& page) = 0;
    // Removes a piece as the window's own Delete does, with an undo step.
    virtual void RemovePieceThroughWindow(const std::string& piece) = 0;
    // The page's pieces may have changed behind the window's back (undo, redo, a cascade, a
    // delete in the tree, a z sort): the views drop what no longer exists and draw anew.
    virtual void RebuildPieceData() = 0;
};
