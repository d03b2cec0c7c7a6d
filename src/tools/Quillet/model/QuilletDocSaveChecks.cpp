// The checks that come before a project save writes anything.
#include <memory>

#include "QuilletDoc.h"
#include "SaveGuard.h"

std::unique_ptr<SaveGuard> CQuilletDoc::BeginSave(const std::string& /*path*/) {
    return std::make_unique<SaveGuard>();
}
