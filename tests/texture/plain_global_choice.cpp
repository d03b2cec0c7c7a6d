#include "plain_global_choice.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>

#include "model/page_rect.h"

namespace {

using Score = std::array<int64_t, 4>;

bool Inside(const PageRect& outer, const PageRect& inner) {
    return outer.left <= inner.left && outer.top <= inner.top && inner.right <= outer.right &&
           inner.bottom <= outer.bottom;
}

// The maximal free rectangles once `used` is taken: every rectangle it cuts splits into the
// four parts around it, and every part inside another goes.
std::vector<PageRect> Split(const std::vector<PageRect>& free, const PageRect& used) {
    std::vector<PageRect> parts;
    for (const PageRect& f : free) {
        if (IsRectEmpty(IntersectRect(f, used))) {
            parts.push_back(f);
            continue;
        }
        const PageRect around[] = {{f.left, f.top, used.left, f.bottom},
                                   {used.right, f.top, f.right, f.bottom},
                                   {f.left, f.top, f.right, used.top},
                                   {f.left, used.bottom, f.right, f.bottom}};
        for (const PageRect& part : around) {
            if (!IsRectEmpty(part)) parts.push_back(part);
        }
    }
    std::vector<PageRect> maximal;
    for (size_t k = 0; k < parts.size(); ++k) {
        bool covered = false;
        for (size_t q = 0; q < parts.size() && !covered; ++q)
            covered = q != k && Inside(parts[q], parts[k]) && (parts[q] != parts[k] || q < k);
        if (!covered) maximal.push_back(parts[k]);
    }
    return maximal;
}

int64_t Shared(int64_t a_from, int64_t a_to, int64_t b_from, int64_t b_to) {
    return std::max<int64_t>(0, std::min(a_to, b_to) - std::max(a_from, b_from));
}

int64_t Contact(const PageRect& c, const std::vector<PageRect>& placed, PageSize page) {
    const PageRect sides[] = {{-1, 0, 0, page.height},
                              {page.width, 0, page.width + 1, page.height},
                              {0, -1, page.width, 0},
                              {0, page.height, page.width, page.height + 1}};
    int64_t length = 0;
    const auto add = [&c, &length](const PageRect& r) {
        if (r.right == c.left || r.left == c.right)
            length += Shared(r.top, r.bottom, c.top, c.bottom);
        if (r.bottom == c.top || r.top == c.bottom)
            length += Shared(r.left, r.right, c.left, c.right);
    };
    for (const PageRect& side : sides)
        add(side);
    for (const PageRect& r : placed)
        add(r);
    return length;
}

std::optional<Score> ScoreOf(FreeRectScore kind, const PageRect& f, const PageRect& record,
                             const std::vector<PageRect>& placed, PageSize page) {
    const int64_t w = RectWidth(record), h = RectHeight(record);
    const int64_t dw = int64_t{RectWidth(f)} - w, dh = int64_t{RectHeight(f)} - h;
    if (dw < 0 || dh < 0) return std::nullopt;
    switch (kind) {
        case FreeRectScore::BestShortSide:
            return Score{std::min(dw, dh), std::max(dw, dh), f.top, f.left};
        case FreeRectScore::BestLongSide:
            return Score{std::max(dw, dh), std::min(dw, dh), f.top, f.left};
        case FreeRectScore::BestArea:
            return Score{(w + dw) * (h + dh) - w * h, std::min(dw, dh), f.top, f.left};
        case FreeRectScore::TopLeft:
            return Score{f.top + h, f.left, 0, 0};
        case FreeRectScore::MostContact:
            break;
    }
    const PageRect at = MoveRecordTo(record, {f.left, f.top});
    return Score{-Contact(at, placed, page), f.top, f.left, 0};
}

}  // namespace

void PlaceByGlobalChoiceByBruteForce(FreeRectScore kind, std::vector<TileRecord>& records,
                                     PageSize page) {
    std::vector<PageRect> free;
    if (page.width > 0 && page.height > 0) free.push_back({0, 0, page.width, page.height});
    std::vector<PageRect> placed;
    std::vector<bool> waiting(records.size());
    for (size_t i = 0; i < records.size(); ++i) {
        waiting[i] = RectWidth(records[i].rect) > 0 && RectHeight(records[i].rect) > 0;
        if (!waiting[i]) records[i].rect = PlaceEmptyRecord(records[i].rect, page);
    }
    for (;;) {
        std::optional<std::pair<Score, size_t>> best;
        Corner corner{0, 0};
        for (size_t i = 0; i < records.size(); ++i) {
            if (!waiting[i]) continue;
            for (const PageRect& f : free) {
                const std::optional<Score> score = ScoreOf(kind, f, records[i].rect, placed, page);
                if (score && (!best || std::pair(*score, i) < *best)) {
                    best = std::pair(*score, i);
                    corner = {f.left, f.top};
                }
            }
        }
        if (!best) break;
        TileRecord& record = records[best->second];
        record.rect = MoveRecordTo(record.rect, corner);
        waiting[best->second] = false;
        placed.push_back(record.rect);
        free = Split(free, record.rect);
    }
    for (size_t i = 0; i < records.size(); ++i) {
        if (waiting[i]) records[i].rect = ParkRecord(records[i].rect, page);
    }
}
