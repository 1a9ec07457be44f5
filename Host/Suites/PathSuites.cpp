#include <algorithm>
#include <memory>

#include "Host/EffectHost.h"
#include "Host/HostCall.h"
#include "Host/PathGeometry.h"
#include "Host/Suites/Tables.h"

namespace TessavoyHost {
namespace {

// A checked-out path, and a segment of it prepared for measuring.
struct Outline {
    PF_PathID id;
    PathGeometry geometry;
};
struct Segment {
    int index;
    CurveLength curve;
};

const std::vector<Mask>& masks(CommandContext& context) {
    return context.instance().project().masks;
}

const Mask& maskOf(CommandContext& context, PF_PathID id) {
    require(id >= 1 && id <= masks(context).size(), PF_Err_INVALID_INDEX);
    return masks(context)[id - 1];
}

const Outline& outlineOf(CommandContext& context, PF_PathOutlinePtr path) {
    const auto found = context.ledger.find(Loan::Path, Ledger::keyOf(path));
    require(found != nullptr);
    return *static_cast<const Outline*>(found.get());
}

const PathGeometry& geometryOf(CommandContext& context, PF_PathOutlinePtr path) {
    return outlineOf(context, path).geometry;
}

void requireSegment(const PathGeometry& path, A_long segment) {
    require(segment >= 0 && segment < path.segmentCount(), PF_Err_INVALID_INDEX);
}

// The prepared segment, or one that is measured for this call alone.
std::shared_ptr<const Segment> segmentOf(CommandContext& context, PF_PathOutlinePtr path, A_long index,
                                         const PF_PathSegPrepPtr* preparation) {
    const PathGeometry& geometry = geometryOf(context, path);
    requireSegment(geometry, index);
    if (preparation == nullptr || *preparation == nullptr)
        return std::make_shared<const Segment>(Segment{index, CurveLength(geometry.controls(index))});
    const auto found =
        std::static_pointer_cast<const Segment>(context.ledger.find(Loan::PathSegment, Ledger::keyOf(*preparation)));
    require(found != nullptr && found->index == index);
    return found;
}

PF_Err numPaths(PF_ProgPtr reference, A_long* count) noexcept {
    return answer("PF_NumPaths", reference, [&](CommandContext& context) {
        require(count != nullptr);
        *count = static_cast<A_long>(masks(context).size());
    });
}

PF_Err pathInfo(PF_ProgPtr reference, A_long index, PF_PathID* id) noexcept {
    return answer("PF_PathInfo", reference, [&](CommandContext& context) {
        require(id != nullptr);
        require(index >= 0 && index < static_cast<A_long>(masks(context).size()), PF_Err_INVALID_INDEX);
        *id = static_cast<PF_PathID>(index + 1);
    });
}

PF_Err checkoutPath(PF_ProgPtr reference, PF_PathID id, A_long, A_long, A_u_long timeScale,
                    PF_PathOutlinePtr* path) noexcept {
    return answer("PF_CheckoutPath", reference, [&](CommandContext& context) {
        require(path != nullptr && timeScale != 0);
        const Mask& mask = maskOf(context, id);
        const CommandSetting& setting = context.setting;
        const auto outline =
            std::make_shared<Outline>(Outline{id, PathGeometry(mask, setting.downsampleX, setting.downsampleY)});
        *path = reinterpret_cast<PF_PathOutlinePtr>(outline.get());
        context.ledger.lend(Loan::Path, Ledger::keyOf(*path), mask.name, static_cast<std::int64_t>(id), outline);
    });
}

PF_Err checkinPath(PF_ProgPtr reference, PF_PathID id, PF_Boolean changed, PF_PathOutlinePtr path) noexcept {
    return takeBack("PF_CheckinPath", reference, [&](CommandContext& context) {
        require(outlineOf(context, path).id == id);
        if (changed != 0)
            context.breaks("a path was checked in as changed");
        context.ledger.giveBack(Loan::Path, Ledger::keyOf(path));
    });
}

PF_Err isOpen(PF_ProgPtr reference, PF_PathOutlinePtr path, PF_Boolean* open) noexcept {
    return answer("PF_PathIsOpen", reference, [&](CommandContext& context) {
        require(open != nullptr);
        *open = geometryOf(context, path).closed() ? 0 : 1;
    });
}

PF_Err numSegments(PF_ProgPtr reference, PF_PathOutlinePtr path, A_long* count) noexcept {
    return answer("PF_PathNumSegments", reference, [&](CommandContext& context) {
        require(count != nullptr);
        *count = geometryOf(context, path).segmentCount();
    });
}

PF_Err vertexInfo(PF_ProgPtr reference, PF_PathOutlinePtr path, A_long point, PF_PathVertex* vertex) noexcept {
    return answer("PF_PathVertexInfo", reference, [&](CommandContext& context) {
        const PathGeometry& geometry = geometryOf(context, path);
        require(vertex != nullptr);
        require(geometry.hasVertex(point), PF_Err_INVALID_INDEX);
        const MaskVertex& found = geometry.vertex(point);
        *vertex = {found.point.x, found.point.y, found.in.x, found.in.y, found.out.x, found.out.y};
    });
}

// The frequency is a hint for hosts that sample; lengths here are exact whatever it says.
PF_Err prepareSegLength(PF_ProgPtr reference, PF_PathOutlinePtr path, A_long index, A_long frequency,
                        PF_PathSegPrepPtr* preparation) noexcept {
    return answer("PF_PathPrepareSegLength", reference, [&](CommandContext& context) {
        const Outline& outline = outlineOf(context, path);
        require(preparation != nullptr && frequency > 0);
        requireSegment(outline.geometry, index);
        const auto segment = std::make_shared<Segment>(Segment{index, CurveLength(outline.geometry.controls(index))});
        *preparation = reinterpret_cast<PF_PathSegPrepPtr>(segment.get());
        context.ledger.lend(Loan::PathSegment, Ledger::keyOf(*preparation), maskOf(context, outline.id).name, index,
                            segment);
    });
}

PF_Err getSegLength(PF_ProgPtr reference, PF_PathOutlinePtr path, A_long index, PF_PathSegPrepPtr* preparation,
                    PF_FpLong* length) noexcept {
    return answer("PF_PathGetSegLength", reference, [&](CommandContext& context) {
        require(length != nullptr);
        *length = segmentOf(context, path, index, preparation)->curve.length();
    });
}

PF_Err evalSegLength(PF_ProgPtr reference, PF_PathOutlinePtr path, PF_PathSegPrepPtr* preparation, A_long index,
                     PF_FpLong length, PF_FpLong* x, PF_FpLong* y) noexcept {
    return answer("PF_PathEvalSegLength", reference, [&](CommandContext& context) {
        require(x != nullptr && y != nullptr);
        const Point2 point = segmentOf(context, path, index, preparation)->curve.pointAt(length);
        *x = point.x;
        *y = point.y;
    });
}

PF_Err evalSegLengthDeriv1(PF_ProgPtr reference, PF_PathOutlinePtr path, PF_PathSegPrepPtr* preparation, A_long index,
                           PF_FpLong length, PF_FpLong* x, PF_FpLong* y, PF_FpLong* derivativeX,
                           PF_FpLong* derivativeY) noexcept {
    return answer("PF_PathEvalSegLengthDeriv1", reference, [&](CommandContext& context) {
        require(x != nullptr && y != nullptr && derivativeX != nullptr && derivativeY != nullptr);
        const auto segment = segmentOf(context, path, index, preparation);
        const Point2 point = segment->curve.pointAt(length);
        const Point2 direction = segment->curve.directionAt(length);
        *x = point.x;
        *y = point.y;
        *derivativeX = direction.x;
        *derivativeY = direction.y;
    });
}

PF_Err cleanupSegLength(PF_ProgPtr reference, PF_PathOutlinePtr path, A_long index,
                        PF_PathSegPrepPtr* preparation) noexcept {
    return takeBack("PF_PathCleanupSegLength", reference, [&](CommandContext& context) {
        requireSegment(geometryOf(context, path), index);
        require(preparation != nullptr);
        require(context.ledger.giveBack(Loan::PathSegment, Ledger::keyOf(*preparation)));
        *preparation = nullptr;
    });
}

// Masks of a project are never inverted.
PF_Err isInverted(PF_ProgPtr reference, PF_PathID id, PF_Boolean* inverted) noexcept {
    return answer("PF_PathIsInverted", reference, [&](CommandContext& context) {
        require(inverted != nullptr);
        maskOf(context, id);
        *inverted = 0;
    });
}

// At most 31 bytes and a zero.
PF_Err pathName(PF_ProgPtr reference, PF_PathID id, A_char* name) noexcept {
    return answer("PF_PathGetName", reference, [&](CommandContext& context) {
        require(name != nullptr);
        const std::string& text = maskOf(context, id).name;
        const std::size_t length = std::min<std::size_t>(text.size(), 31);
        std::copy_n(text.begin(), length, name);
        name[length] = '\0';
    });
}

}  // namespace

const PF_PathQuerySuite1 pathQuerySuite = {
    .PF_NumPaths = numPaths,
    .PF_PathInfo = pathInfo,
    .PF_CheckoutPath = checkoutPath,
    .PF_CheckinPath = checkinPath,
};

const PF_PathDataSuite1 pathDataSuite = {
    .PF_PathIsOpen = isOpen,
    .PF_PathNumSegments = numSegments,
    .PF_PathVertexInfo = vertexInfo,
    .PF_PathPrepareSegLength = prepareSegLength,
    .PF_PathGetSegLength = getSegLength,
    .PF_PathEvalSegLength = evalSegLength,
    .PF_PathEvalSegLengthDeriv1 = evalSegLengthDeriv1,
    .PF_PathCleanupSegLength = cleanupSegLength,
    .PF_PathIsInverted = isInverted,
    .PF_PathGetMaskMode = nullptr,
    .PF_PathGetName = pathName,
};

}  // namespace TessavoyHost
