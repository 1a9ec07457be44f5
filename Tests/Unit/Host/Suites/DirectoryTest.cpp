#include "Host/Suites/Directory.h"

#include "Tests/Unit/Host/HostFixture.h"

namespace TessavoyHost {
namespace {

using FakeEffect::Acquired;
using testing::IsEmpty;

using HostSuiteDirectory = HostFixture;

TEST_F(HostSuiteDirectory, ServesByNameAndVersion) {
    renderWith(FakeProject::project(), [](PF_InData* in) {
        const void* suite = nullptr;
        EXPECT_EQ(in->pica_basicP->AcquireSuite("PF Handle Suite", 2, &suite), 0);
        EXPECT_EQ(suite, suiteTable("PF Handle Suite", 2));
        EXPECT_EQ(in->pica_basicP->ReleaseSuite("PF Handle Suite", 2), 0);
        EXPECT_NE(in->pica_basicP->AcquireSuite("PF Handle Suite", 1, &suite), 0);
        EXPECT_EQ(suite, nullptr);
        EXPECT_NE(in->pica_basicP->AcquireSuite("PF Handles", 2, &suite), 0);
        EXPECT_NE(in->pica_basicP->AcquireSuite("DRAWBOT Draw Suite", 7, &suite), 0);
        EXPECT_TRUE(in->pica_basicP->IsEqual("a", "a"));
        EXPECT_FALSE(in->pica_basicP->IsEqual("a", "b"));
    });
}

TEST_F(HostSuiteDirectory, AnswersAnUnmatchedReleaseWithAnErrorAlone) {
    renderWith(FakeProject::project(),
               [](PF_InData* in) { EXPECT_NE(in->pica_basicP->ReleaseSuite("PF World Suite", 2), 0); });
}

TEST_F(HostSuiteDirectory, LacksSuitesThatWereRemoved) {
    duringRender([](PF_InData* in) {
        EXPECT_EQ(Acquired<PF_WorldSuite2>(in).table, nullptr);
        EXPECT_NE(Acquired<PF_PixelDataSuite1>(in).table, nullptr);
    });
    EffectHost host(FakeEffect::entryPoints());
    const auto instance = host.createInstance(FakeProject::project());
    host.faults().removeSuite("PF World Suite", 2);
    EXPECT_THAT(instance->renderFrame({}).broken, IsEmpty());
}

TEST_F(HostSuiteDirectory, MayLackTheSequenceDataSuite) {
    HostOptions options;
    options.withSequenceDataSuite = false;
    renderWith(
        FakeProject::project(),
        [](PF_InData* in) {
            EXPECT_EQ(Acquired<PF_EffectSequenceDataSuite1>(in).table, nullptr);
            EXPECT_NE(in->sequence_data, nullptr);
        },
        {}, options);
}

TEST_F(HostSuiteDirectory, FormatsAndCopiesText) {
    renderWith(FakeProject::project(), [](PF_InData* in) {
        const Acquired<PF_ANSICallbacksSuite1> suite(in);
        char text[40];
        EXPECT_EQ(suite->sprintf(text, "%s v%d.%d", "Fake", 1, 3), 9);
        EXPECT_STREQ(text, "Fake v1.3");
        EXPECT_EQ(suite->strcpy(text, "over"), text);
        EXPECT_STREQ(text, "over");
    });
}

}  // namespace
}  // namespace TessavoyHost
