#include "PieceSelection.h"

#include <algorithm>

#include "model/report.h"

size_t PieceSelection::Add(const std::string& name) {
    const auto found = std::find(pieces.begin(), pieces.end(), name);
    if (found != pieces.end()) return static_cast<size_t>(found - pieces.begin());
    pieces.push_back(name);
    return pieces.size() - 1;
}

void PieceSelection::Remove(const std::string& name) {
    const auto found = std::find(pieces.begin(), pieces.end(), name);
    if (found != pieces.end()) pieces.erase(found);
}

const std::string& PieceSelection::At(size_t index) const {
    static const std::string kNone;
    ReportUnless(index < pieces.size(), "Piece not found");
    return index < pieces.size() ? pieces[index] : kNone;
}
