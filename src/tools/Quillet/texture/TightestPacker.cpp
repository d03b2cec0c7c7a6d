#include "texture/TightestPacker.h"

#include <algorithm>
#include <array>
#include <functional>
#include <optional>
#include <queue>
#include <unordered_map>
#include <utility>

#include "model/page_rect.h"

namespace {

// A score compared in order: the score's two terms, then the rectangle's top and left.
using Score = std::array<int64_t, 4>;

// A record's best choice, or while `exact` is false a bound on it: no free rectangle scores
// better for the record, but the rectangle that scored it may be gone.
struct Choice {
    Score score;
    uint32_t free_id;
    Corner corner;
    bool exact;
};

bool IsEmpty(const PageRect& rect) {
    return RectWidth(rect) <= 0 || RectHeight(rect) <= 0;
}

// Length shared by the ranges [a_from, a_to) and [b_from, b_to).
int64_t SharedLength(int32_t a_from, int32_t a_to, int32_t b_from, int32_t b_to) {
    return std::max<int64_t>(0, int64_t{std::min(a_to, b_to)} - std::max(a_from, b_from));
}

// The placed records by their edges, so that the edge a candidate shares with them takes a
// few lookups, not a walk over every record placed.
class PlacedEdges {
public:
    explicit PlacedEdges(PageSize page) : page_(page) {}

    void Add(const PageRect& placed) {
        by_left_[placed.left].push_back(placed);
        by_right_[placed.right].push_back(placed);
        by_top_[placed.top].push_back(placed);
        by_bottom_[placed.bottom].push_back(placed);
    }

    // The length of the candidate's outline that lies on the page's sides or on a placed
    // record's outline.
    int64_t Contact(const PageRect& c) const {
        int64_t length = 0;
        if (c.left == 0) length += RectHeight(c);
        if (c.right == page_.width) length += RectHeight(c);
        if (c.top == 0) length += RectWidth(c);
        if (c.bottom == page_.height) length += RectWidth(c);
        const auto along = [&c](const Edges& edges, int32_t at, bool vertical) {
            const auto found = edges.find(at);
            if (found == edges.end()) return int64_t{0};
            int64_t shared = 0;
            for (const PageRect& r : found->second) {
                shared += vertical ? SharedLength(r.top, r.bottom, c.top, c.bottom)
                                   : SharedLength(r.left, r.right, c.left, c.right);
            }
            return shared;
        };
        return length + along(by_right_, c.left, true) + along(by_left_, c.right, true) +
               along(by_bottom_, c.top, false) + along(by_top_, c.bottom, false);
    }

private:
    using Edges = std::unordered_map<int32_t, std::vector<PageRect>>;
    PageSize page_;
    Edges by_left_, by_right_, by_top_, by_bottom_;
};

// Whether `free` and `placed` share part of an edge: only then can placing `placed` change
// how much outline a candidate in `free` shares with the records placed.
bool Touch(const PageRect& free, const PageRect& placed) {
    const bool side = (free.left == placed.right || free.right == placed.left) &&
                      SharedLength(free.top, free.bottom, placed.top, placed.bottom) > 0;
    const bool above_or_below = (free.top == placed.bottom || free.bottom == placed.top) &&
                                SharedLength(free.left, free.right, placed.left, placed.right) > 0;
    return side || above_or_below;
}

// A global-choice packing. Each waiting record remembers its best choice. A placement takes
// away the free rectangles it overlaps, adds a few new ones and, for contact scores, raises
// the scores of those it touches; a record looks at those few alone. When the rectangle of
// its choice is gone, the old score stays as a bound, since no rectangle left scores better,
// and the record looks at every rectangle again only when that bound would win. A record
// that fits nowhere never fits later, as free space only shrinks.
class GlobalChoice {
public:
    GlobalChoice(FreeRectScore kind, PageSize page)
        : kind_(kind), page_(page), space_(page), edges_(page) {}

    void Pack(std::vector<TileRecord>& records) {
        best_.resize(records.size());
        for (size_t i = 0; i < records.size(); ++i) {
            if (IsEmpty(records[i].rect)) {
                records[i].rect = PlaceEmptyRecord(records[i].rect, page_);
                continue;
            }
            waiting_.push_back(i);
            Remember(i, BestOfAll(records[i].rect));
        }
        while (const std::optional<size_t> chosen = Choose(records)) {
            TileRecord& record = records[*chosen];
            record.rect = MoveRecordTo(record.rect, best_[*chosen]->corner);
            std::erase(waiting_, *chosen);
            best_[*chosen].reset();
            Rescore(records, Occupy(record.rect));
        }
        for (const size_t i : waiting_)
            records[i].rect = ParkRecord(records[i].rect, page_);
    }

private:
    // Where a record's choice is kept; the queue holds it too, and an entry of the queue is
    // current while its record still has that score.
    struct Entry {
        Score score;
        size_t record;
        bool operator>(const Entry& other) const {
            return std::pair(score, record) > std::pair(other.score, other.record);
        }
    };

    void Remember(size_t record, std::optional<Choice> choice) {
        best_[record] = choice;
        if (choice) queue_.push({choice->score, record});
    }

    // The waiting record of the best choice, the first in the list on equal scores; none when
    // no record fits anywhere. A bound that comes first is made exact and queued again.
    std::optional<size_t> Choose(const std::vector<TileRecord>& records) {
        while (!queue_.empty()) {
            const Entry top = queue_.top();
            queue_.pop();
            const std::optional<Choice>& choice = best_[top.record];
            if (!choice || choice->score != top.score) continue;
            if (choice->exact) return top.record;
            Remember(top.record, BestOfAll(records[top.record].rect));
        }
        return std::nullopt;
    }

    void Rescore(const std::vector<TileRecord>& records, const std::vector<size_t>& changed) {
        for (const size_t i : waiting_) {
            if (!best_[i]) continue;
            Choice choice = *best_[i];
            if (!space_.IsFree(choice.free_id)) choice.exact = false;
            const std::optional<Choice> better = BestAmong(changed, records[i].rect, choice);
            if (better->score != choice.score)
                Remember(i, better);
            else
                best_[i] = better;
        }
    }

    // Takes `placed` out of the free space; answers the free rectangles whose scores may
    // have changed: the new ones, and for contact scores those it touches.
    std::vector<size_t> Occupy(const PageRect& placed) {
        const uint32_t first_new_id = space_.NextId();
        space_.Occupy(placed);
        const std::vector<FreeSpace::Free>& rects = space_.Rects();
        const size_t first_new = space_.FirstNumbered(first_new_id);
        std::vector<size_t> changed;
        if (kind_ == FreeRectScore::MostContact) {
            edges_.Add(placed);
            for (size_t k = 0; k < first_new; ++k) {
                if (Touch(rects[k].rect, placed)) changed.push_back(k);
            }
        }
        for (size_t k = first_new; k < rects.size(); ++k)
            changed.push_back(k);
        return changed;
    }

    std::optional<Choice> BestOfAll(const PageRect& record) const {
        std::optional<Choice> best;
        for (const FreeSpace::Free& free : space_.Rects())
            Consider(free, record, best);
        return best;
    }

    // The better of `best` and the choices in the free rectangles numbered `among`.
    std::optional<Choice> BestAmong(const std::vector<size_t>& among, const PageRect& record,
                                    std::optional<Choice> best) const {
        for (const size_t k : among)
            Consider(space_.Rects()[k], record, best);
        return best;
    }

    void Consider(const FreeSpace::Free& free, const PageRect& record,
                  std::optional<Choice>& best) const {
        const std::optional<Score> score = ScoreIn(free.rect, record);
        if (score && (!best || *score < best->score))
            best = Choice{*score, free.id, {free.rect.left, free.rect.top}, true};
    }

    std::optional<Score> ScoreIn(const PageRect& free, const PageRect& record) const {
        const int64_t free_width = RectWidth(free);
        const int64_t free_height = RectHeight(free);
        const int64_t width = RectWidth(record);
        const int64_t height = RectHeight(record);
        if (free_width < width || free_height < height) return std::nullopt;
        const int64_t short_side = std::min(free_width - width, free_height - height);
        const int64_t long_side = std::max(free_width - width, free_height - height);
        switch (kind_) {
            case FreeRectScore::BestShortSide:
                return Score{short_side, long_side, free.top, free.left};
            case FreeRectScore::BestLongSide:
                return Score{long_side, short_side, free.top, free.left};
            case FreeRectScore::BestArea:
                return Score{free_width * free_height - width * height, short_side, free.top,
                             free.left};
            case FreeRectScore::TopLeft:
                return Score{free.top + height, free.left, 0, 0};
            case FreeRectScore::MostContact:
                break;
        }
        const PageRect candidate = MoveRecordTo(record, {free.left, free.top});
        return Score{-edges_.Contact(candidate), free.top, free.left, 0};
    }

    FreeRectScore kind_;
    PageSize page_;
    FreeSpace space_;
    PlacedEdges edges_;
    std::vector<size_t> waiting_;
    std::vector<std::optional<Choice>> best_;  // by record; none for one placed or never fitting
    std::priority_queue<Entry, std::vector<Entry>, std::greater<>> queue_;
};

// How tight a packing is: the records lying wholly on the page, and the pixels of the box
// that holds those with area.
struct Tightness {
    size_t placed = 0;
    int64_t box_pixels = 0;

    bool TighterThan(const Tightness& other) const {
        return placed != other.placed ? placed > other.placed : box_pixels < other.box_pixels;
    }
};

Tightness TightnessOf(const std::vector<TileRecord>& records, PageSize page) {
    Tightness tightness;
    PageRect box{0, 0, 0, 0};
    for (const TileRecord& record : records) {
        if (!LiesOnPage(record.rect, page)) continue;
        ++tightness.placed;
        box = UnionRect(box, record.rect);
    }
    tightness.box_pixels = int64_t{RectWidth(box)} * RectHeight(box);
    return tightness;
}

}  // namespace

void PlaceByGlobalChoice(FreeRectScore score, std::vector<TileRecord>& records, PageSize page) {
    GlobalChoice(score, page).Pack(records);
}

void PlaceTightest(std::vector<TileRecord>& records, PageSize page) {
    std::vector<std::vector<TileRecord>> packings;
    for (int order = TILE_BY_AREA; order <= TILE_BY_CIRCUMFERENCE; ++order) {
        packings.push_back(records);
        PlaceRegions(order, packings.back(), page);
    }
    for (const FreeRectScore score :
         {FreeRectScore::BestShortSide, FreeRectScore::BestLongSide, FreeRectScore::BestArea,
          FreeRectScore::TopLeft, FreeRectScore::MostContact}) {
        packings.push_back(records);
        PlaceByGlobalChoice(score, packings.back(), page);
    }
    size_t kept = 0;
    Tightness tightest = TightnessOf(packings[0], page);
    for (size_t k = 1; k < packings.size(); ++k) {
        const Tightness tightness = TightnessOf(packings[k], page);
        if (!tightness.TighterThan(tightest)) continue;
        kept = k;
        tightest = tightness;
    }
    records = std::move(packings[kept]);
}
