#include <cmath>

#include "Tests/Unit/Host/HostFixture.h"

namespace TessavoyHost {
namespace {

using FakeEffect::Acquired;
using testing::ElementsAre;
using testing::HasSubstr;

class HostPathSuites : public HostFixture {
protected:
    static Project masked() {
        Project project = FakeProject::project();
        project.masks.push_back(
            {"Square", true, {{{0, 0}, {}, {}}, {{40, 0}, {}, {}}, {{40, 40}, {}, {}}, {{0, 40}, {}, {}}}});
        project.masks.push_back({"Line", false, {{{10, 10}, {}, {}}, {{40, 50}, {}, {}}}});
        project.masks.push_back({"Nothing", true, {}});
        return project;
    }

    struct Suites {
        explicit Suites(PF_InData* in) : query(in), data(in), reference(in->effect_ref) {}

        PF_PathOutlinePtr checkout(PF_PathID id) const {
            PF_PathOutlinePtr path = nullptr;
            EXPECT_EQ(query->PF_CheckoutPath(reference, id, 0, 1, 25, &path), PF_Err_NONE);
            return path;
        }

        Acquired<PF_PathQuerySuite1> query;
        Acquired<PF_PathDataSuite1> data;
        PF_ProgPtr reference;
    };
};

TEST_F(HostPathSuites, ListTheMasksByTheirIds) {
    renderWith(masked(), [](PF_InData* in) {
        const Suites suites(in);
        A_long count = 0;
        EXPECT_EQ(suites.query->PF_NumPaths(in->effect_ref, &count), PF_Err_NONE);
        EXPECT_EQ(count, 3);
        PF_PathID id = 0;
        EXPECT_EQ(suites.query->PF_PathInfo(in->effect_ref, 1, &id), PF_Err_NONE);
        EXPECT_EQ(id, 2u);
        EXPECT_NE(suites.query->PF_PathInfo(in->effect_ref, 3, &id), PF_Err_NONE);
        char name[32];
        EXPECT_EQ(suites.data->PF_PathGetName(in->effect_ref, 2, name), PF_Err_NONE);
        EXPECT_STREQ(name, "Line");
    });
}

// The calls of one path, in their order: check out, segments, first vertex, prepare, length, points, clean up, check
// in.
TEST_F(HostPathSuites, MeasureAPathSegmentBySegment) {
    renderWith(masked(), [](PF_InData* in) {
        const Suites suites(in);
        const PF_PathOutlinePtr path = suites.checkout(1);
        A_long segments = 0;
        EXPECT_EQ(suites.data->PF_PathNumSegments(in->effect_ref, path, &segments), PF_Err_NONE);
        EXPECT_EQ(segments, 4);
        PF_PathVertex vertex{};
        EXPECT_EQ(suites.data->PF_PathVertexInfo(in->effect_ref, path, 2, &vertex), PF_Err_NONE);
        EXPECT_EQ(vertex.x, 40);
        EXPECT_EQ(vertex.y, 40);
        PF_PathSegPrepPtr preparation = nullptr;
        EXPECT_EQ(suites.data->PF_PathPrepareSegLength(in->effect_ref, path, 3, 100, &preparation), PF_Err_NONE);
        double length = 0, x = 0, y = 0;
        EXPECT_EQ(suites.data->PF_PathGetSegLength(in->effect_ref, path, 3, &preparation, &length), PF_Err_NONE);
        EXPECT_NEAR(length, 40, 40e-9);
        EXPECT_EQ(suites.data->PF_PathEvalSegLength(in->effect_ref, path, &preparation, 3, 10, &x, &y), PF_Err_NONE);
        EXPECT_NEAR(x, 0, 40e-9);
        EXPECT_NEAR(y, 30, 40e-9);
        EXPECT_EQ(suites.data->PF_PathCleanupSegLength(in->effect_ref, path, 3, &preparation), PF_Err_NONE);
        EXPECT_EQ(preparation, nullptr);
        EXPECT_EQ(suites.query->PF_CheckinPath(in->effect_ref, 1, 0, path), PF_Err_NONE);
    });
}

TEST_F(HostPathSuites, TellOpenPathsFromClosedOnes) {
    renderWith(masked(), [](PF_InData* in) {
        const Suites suites(in);
        for (const PF_PathID id : {1u, 2u}) {
            const PF_PathOutlinePtr path = suites.checkout(id);
            PF_Boolean open = 0;
            EXPECT_EQ(suites.data->PF_PathIsOpen(in->effect_ref, path, &open), PF_Err_NONE);
            EXPECT_EQ(open != 0, id == 2);
            suites.query->PF_CheckinPath(in->effect_ref, id, 0, path);
        }
    });
}

TEST_F(HostPathSuites, GiveThePathInTheDownsampledLayer) {
    FrameRequest request;
    request.downsampleX = {1, 2};
    request.downsampleY = {1, 4};
    renderWith(
        masked(),
        [](PF_InData* in) {
            const Suites suites(in);
            const PF_PathOutlinePtr path = suites.checkout(2);
            double length = 0, x = 0, y = 0, dx = 0, dy = 0;
            EXPECT_EQ(suites.data->PF_PathGetSegLength(in->effect_ref, path, 0, nullptr, &length), PF_Err_NONE);
            EXPECT_NEAR(length, std::hypot(15.0, 10.0), 1e-7);
            EXPECT_EQ(
                suites.data->PF_PathEvalSegLengthDeriv1(in->effect_ref, path, nullptr, 0, length, &x, &y, &dx, &dy),
                PF_Err_NONE);
            EXPECT_NEAR(x, 20, 1e-7);
            EXPECT_NEAR(y, 12.5, 1e-7);
            EXPECT_NEAR(dx, 15 / std::hypot(15.0, 10.0), 1e-7);
            EXPECT_NEAR(dy, 10 / std::hypot(15.0, 10.0), 1e-7);
            suites.query->PF_CheckinPath(in->effect_ref, 2, 0, path);
        },
        request);
}

TEST_F(HostPathSuites, AnswerBadRequestsWithErrors) {
    renderWith(masked(), [](PF_InData* in) {
        const Suites suites(in);
        PF_PathOutlinePtr path = nullptr;
        EXPECT_EQ(suites.query->PF_CheckoutPath(in->effect_ref, 0, 0, 1, 25, &path), PF_Err_INVALID_INDEX);
        EXPECT_EQ(suites.query->PF_CheckoutPath(in->effect_ref, 4, 0, 1, 25, &path), PF_Err_INVALID_INDEX);
        A_long segments = 0;
        EXPECT_EQ(suites.data->PF_PathNumSegments(in->effect_ref, nullptr, &segments), PF_Err_BAD_CALLBACK_PARAM);
        path = suites.checkout(3);
        EXPECT_EQ(suites.data->PF_PathNumSegments(in->effect_ref, path, &segments), PF_Err_NONE);
        EXPECT_EQ(segments, 0);
        PF_PathVertex vertex{};
        EXPECT_EQ(suites.data->PF_PathVertexInfo(in->effect_ref, path, 0, &vertex), PF_Err_INVALID_INDEX);
        PF_PathSegPrepPtr preparation = nullptr;
        EXPECT_EQ(suites.data->PF_PathPrepareSegLength(in->effect_ref, path, 0, 100, &preparation),
                  PF_Err_INVALID_INDEX);
        EXPECT_EQ(suites.query->PF_CheckinPath(in->effect_ref, 3, 0, path), PF_Err_NONE);
        EXPECT_EQ(suites.query->PF_CheckinPath(in->effect_ref, 3, 0, path), PF_Err_BAD_CALLBACK_PARAM);
    });
}

TEST_F(HostPathSuites, ReportWhatWasNotGivenBack) {
    EffectHost host(FakeEffect::entryPoints());
    const auto instance = host.createInstance(masked());
    duringRender([](PF_InData* in) {
        const Suites suites(in);
        const PF_PathOutlinePtr path = suites.checkout(2);
        PF_PathSegPrepPtr preparation = nullptr;
        suites.data->PF_PathPrepareSegLength(in->effect_ref, path, 0, 100, &preparation);
    });
    EXPECT_THAT(instance->renderFrame({}).broken,
                ElementsAre(HasSubstr("path \"Line\" (2)"), HasSubstr("path segment \"Line\" (0)")));
}

// The module has done its part when a call that gives something back fails.
TEST_F(HostPathSuites, TakeBackEvenWhenToldToFail) {
    EffectHost host(FakeEffect::entryPoints());
    const auto instance = host.createInstance(masked());
    duringRender([](PF_InData* in) {
        const Suites suites(in);
        const PF_PathOutlinePtr path = suites.checkout(2);
        EXPECT_EQ(suites.query->PF_CheckinPath(in->effect_ref, 2, 0, path), 513);
    });
    host.faults().failNth("PF_CheckinPath", 1, 513);
    EXPECT_THAT(instance->renderFrame({}).broken, testing::IsEmpty());
}

}  // namespace
}  // namespace TessavoyHost
