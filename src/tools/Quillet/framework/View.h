// A picture of a document. Views hold no data of their own: on every update they rebuild
// from the document whole. The window that shows a view lives in the Qt layer.
#pragma once

namespace framework {

class Document;

class View {
public:
    // A view that goes while its document stays lets go of the document first.
    virtual ~View();

    // The document changed: rebuild. `sender`, `hint` and `object` are always null/0 in this
    // program, kept for the shape of the call.
    virtual void OnUpdate(View* sender, long hint, void* object) = 0;
    // The document's title or modified flag changed.
    virtual void OnDocumentStatusChanged() {}
    // Brings the view's window to the front.
    virtual void ActivateFrame() {}
    // The person closes the view's window, and the document with it: the view's last word
    // while both still stand.
    virtual void OnCloseWindow() {}
    // The document is closing: the view lets go of it and its window goes away. After this
    // call the view must not touch the document again.
    virtual void CloseFrame() = 0;

    Document* GetDocument() const { return document_; }

private:
    friend class Document;
    Document* document_ = nullptr;
};

}  // namespace framework
