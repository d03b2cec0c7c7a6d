#include "piece_geometry.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>
#include <vector>

#include "float_int.h"
#include "page_rect.h"
#include "report.h"
#include "ui_objects.h"

namespace {

// One side of a piece: its object's natural length along it and where the piece starts.
struct Side {
    int32_t length;
    int32_t start;
};

// Every step rounds to float, as the format's own tools did.
float FarSideValue(const Side& side, float scale) {
    return static_cast<float>(side.length) * scale + static_cast<float>(side.start);
}

int32_t FarSide(const Side& side, float scale) {
    return FloatToInt(FarSideValue(side, scale));
}

int32_t Measure(const Side& side, float scale) {
    return WrappedDifference(FarSide(side, scale), side.start);
}

// Size over natural size in 32-bit float; a natural size of 0 gives an infinite scale, as
// it always has, without dividing by zero.
float ScaleFrom(int32_t size, int32_t natural) {
    if (natural == 0)
        return size == 0 ? std::numeric_limits<float>::quiet_NaN()
                         : std::copysign(std::numeric_limits<float>::infinity(),
                                         static_cast<float>(size));
    return static_cast<float>(size) / static_cast<float>(natural);
}

// The scale the format reads: the size over the piece's size at scale 1.
float ReadScale(const Side& side, int32_t size) {
    return ScaleFrom(size, Measure(side, 1.0f));
}

// Floats numbered in their order as numbers, -infinity lowest: every float between two
// numbers has a number between them.
int64_t OrderOf(float value) {
    const uint32_t bits = std::bit_cast<uint32_t>(value);
    const int64_t magnitude = bits & 0x7fffffffu;
    return (bits & 0x80000000u) != 0 ? -magnitude - 1 : magnitude;
}

float FloatAt(int64_t order) {
    const uint32_t bits = order < 0 ? static_cast<uint32_t>(-(order + 1)) | 0x80000000u
                                    : static_cast<uint32_t>(order);
    return std::bit_cast<float>(bits);
}

// The finite scales as numbered from the lowest, seen so that the far side never falls
// as the number grows: a side of negative length runs through the scales backwards.
class ScaleLine {
public:
    explicit ScaleLine(const Side& side) : side_(side), sign_(side.length < 0 ? -1.0f : 1.0f) {}

    static constexpr int64_t kFirst = -0x7f7fffffLL - 1;  // -FLT_MAX
    static constexpr int64_t kLast = 0x7f7fffffLL;        // FLT_MAX

    float ScaleAt(int64_t order) const { return sign_ * FloatAt(order); }
    int64_t OrderOfScale(float scale) const { return OrderOf(sign_ * scale); }

    // The first number whose far side, truncated, is at least `edge`; kLast + 1 if none.
    int64_t FirstAtLeast(double edge) const {
        int64_t low = kFirst;
        int64_t high = kLast + 1;
        while (low < high) {
            const int64_t middle = low + (high - low) / 2;
            if (TruncatedFarSide(middle) >= edge)
                high = middle;
            else
                low = middle + 1;
        }
        return low;
    }

private:
    // Beyond the 32-bit range the value is ±infinity, which keeps the order.
    double TruncatedFarSide(int64_t order) const {
        return std::trunc(static_cast<double>(FarSideValue(side_, ScaleAt(order))));
    }

    Side side_;
    float sign_;
};

struct OrderSpan {
    int64_t first;
    int64_t last;
};

// The spans of finite scales whose far side converts to `edge`. Every far side that does
// not fit in 32 bits converts to the lowest integer, so that edge has two spans.
std::vector<OrderSpan> SpansFor(const ScaleLine& line, int32_t edge) {
    constexpr double kBelowRange = -2147483648.0;
    constexpr double kAboveRange = 2147483648.0;
    std::vector<OrderSpan> spans;
    const auto add = [&spans](int64_t first, int64_t last) {
        if (first <= last) spans.push_back({first, last});
    };
    if (edge == std::numeric_limits<int32_t>::min()) {
        add(ScaleLine::kFirst, line.FirstAtLeast(kBelowRange + 1.0) - 1);
        add(line.FirstAtLeast(kAboveRange), ScaleLine::kLast);
    } else {
        add(line.FirstAtLeast(edge), line.FirstAtLeast(static_cast<double>(edge) + 1.0) - 1);
    }
    return spans;
}

// Of the scales that measure `size`, the one nearest to `wanted` in float steps.
std::optional<float> NearestScaleFor(const Side& side, int32_t size, float wanted) {
    if (Measure(side, wanted) == size) return wanted;
    const ScaleLine line(side);
    const int32_t edge =
        static_cast<int32_t>(static_cast<uint32_t>(side.start) + static_cast<uint32_t>(size));
    const int64_t target = line.OrderOfScale(wanted);
    std::optional<int64_t> best;
    for (const OrderSpan& span : SpansFor(line, edge)) {
        const int64_t candidate = std::clamp(target, span.first, span.last);
        if (!best || std::llabs(candidate - target) < std::llabs(*best - target)) best = candidate;
    }
    if (best && Measure(side, line.ScaleAt(*best)) == size) return line.ScaleAt(*best);
    // A length of 0 never leaves its start at a finite scale.
    for (const float scale :
         {std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity(),
          std::numeric_limits<float>::quiet_NaN()})
        if (Measure(side, scale) == size) return scale;
    return std::nullopt;
}

float ScaleForSize(const Side& side, int32_t size) {
    const float read = ReadScale(side, size);
    if (const std::optional<float> scale = NearestScaleFor(side, size, read)) return *scale;
    // No scale measures this size (the far side of a float cannot land on it). Take the
    // scale that the size written now will read back as.
    const int32_t written = Measure(side, read);
    return NearestScaleFor(side, written, ReadScale(side, written)).value_or(read);
}

PageRect NaturalBoundsOf(const UI_PIECE& piece) {
    const UI_OBJECT* object = ObjectNamed(piece.object_id);
    return object == nullptr ? PageRect{} : object->NaturalBounds();
}

}  // namespace

PageRect PieceRectAt(const UI_PIECE& piece, float scale_x, float scale_y) {
    const PageRect natural = NaturalBoundsOf(piece);
    return {piece.x, piece.y, FarSide({RectWidth(natural), piece.x}, scale_x),
            FarSide({RectHeight(natural), piece.y}, scale_y)};
}

PageRect PieceRect(const UI_PIECE& piece) {
    return PieceRectAt(piece, piece.scale_x, piece.scale_y);
}

void ScalePieceToSize(UI_PIECE& piece, int32_t width, int32_t height) {
    const PageRect natural = NaturalBoundsOf(piece);
    piece.scale_x = ScaleForSize({RectWidth(natural), piece.x}, width);
    piece.scale_y = ScaleForSize({RectHeight(natural), piece.y}, height);
}

void LPAGE::RescalePiece(const std::string& piece_name, float fx, float fy) {
    ReportUnless(fx > 0.0f, "Invalid rescale width");
    ReportUnless(fy > 0.0f, "Invalid rescale height");
    UI_PIECE& piece = FindPiece(piece_name);
    piece.scale_x *= fx;
    piece.scale_y *= fy;
    const UI_OBJECT* object = ObjectNamed(piece.object_id);
    if (object == nullptr) return;
    const PageRect rect = PieceRect(piece);
    const PageRect natural = object->NaturalBounds();
    const PageRect minimum = object->MinimumSize();
    if (RectWidth(rect) < RectWidth(minimum))
        piece.scale_x =
            static_cast<float>(RectWidth(minimum)) / static_cast<float>(RectWidth(natural));
    if (RectHeight(rect) < RectHeight(minimum))
        piece.scale_y =
            static_cast<float>(RectHeight(minimum)) / static_cast<float>(RectHeight(natural));
}
