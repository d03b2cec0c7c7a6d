#include "View.h"

#include "Document.h"

namespace framework {

View::~View() {
    if (document_ != nullptr) document_->RemoveView(*this);
}

}  // namespace framework
