#include "open_documents.h"

#include "framework/Application.h"
#include "framework/View.h"

std::vector<framework::Document*> OpenDocumentsOf(TemplateIndex index) {
    const framework::Application* application = framework::Application::Instance();
    if (application == nullptr || application->Templates().size() <= index) return {};
    return application->Templates()[index]->GetDocuments();
}

framework::Document* OpenDocumentNamed(TemplateIndex index, const std::string& identity,
                                       bool by_path) {
    for (framework::Document* document : OpenDocumentsOf(index)) {
        if ((by_path ? document->GetPathName() : document->GetTitle()) == identity) return document;
    }
    return nullptr;
}

framework::Document* BringForward(framework::Document* document) {
    if (document == nullptr) return nullptr;
    if (framework::View* view = document->GetFirstView()) view->ActivateFrame();
    document->App().SetActiveDocument(document);
    return document;
}
