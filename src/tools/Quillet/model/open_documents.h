// The open documents of the three templates, in the order the application made them.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "framework/Document.h"

enum TemplateIndex : size_t { kProjectTemplate, kTexturePageTemplate, kLayoutPageTemplate };

// The open documents of one template; none without an application.
std::vector<framework::Document*> OpenDocumentsOf(TemplateIndex index);
// The open document of a template with that path (by_path) or title; null if none.
framework::Document* OpenDocumentNamed(TemplateIndex index, const std::string& identity,
                                       bool by_path);
// Brings the window of an open document to the front and makes the document the active one;
// answers it (null stays null).
framework::Document* BringForward(framework::Document* document);
