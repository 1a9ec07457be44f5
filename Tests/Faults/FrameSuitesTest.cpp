#include <string_view>

#include "Tests/Module/ModuleFixture.h"

namespace TessavoyHost {
namespace {

using testing::IsEmpty;

struct SuiteName {
    const char* name;
    A_long version;
};

std::ostream& operator<<(std::ostream& out, const SuiteName& suite) {
    return out << suite.name << " " << suite.version;
}

class FrameSuites : public ModuleFixture {
protected:
    // A frame of the scene without the suite. The same frame with it shows the picture that it showed before.
    FrameResult renderWithout(const FaultScene& faulty, const SuiteName& suite) {
        const auto instance = instanceOf(faulty.scene);
        FrameRequest request;
        request.bitsPerChannel = faulty.bitsPerChannel;
        const FrameResult before = instance->renderFrame(request);
        expectGood(before);
        host().faults().removeSuite(suite.name, suite.version);
        FrameResult without = instance->renderFrame(request);
        host().faults().clear();
        const FrameResult after = instance->renderFrame(request);
        expectGood(after);
        EXPECT_TRUE(bytesOf(after.output) == bytesOf(before.output));
        EXPECT_TRUE(without.error != PF_Err_NONE || bytesOf(without.output) == bytesOf(before.output));
        return without;
    }

    void expectMissing(const FaultScene& faulty, const SuiteName& suite) {
        SCOPED_TRACE(testing::Message() << faulty.name << " without " << suite);
        const FrameResult result = renderWithout(faulty, suite);
        EXPECT_EQ(result.error, PF_Err_BAD_CALLBACK_PARAM);
        EXPECT_THAT(result.broken, IsEmpty());
    }
};

TEST_F(FrameSuites, ThatEveryFrameNeedsAreMissed) {
    for (const FaultScene& scene : faultScenes())
        expectMissing(scene, {"PF Handle Suite", 2});
}

// It is asked for before anything is drawn, and the failure is told.
TEST_F(FrameSuites, OfWorldsIsMissedInWords) {
    for (const FaultScene& scene : faultScenes()) {
        const FrameResult result = renderWithout(scene, {"PF World Suite", 2});
        EXPECT_EQ(result.error, PF_Err_BAD_CALLBACK_PARAM);
        EXPECT_EQ(result.message, "Couldn't load suite.");
        EXPECT_TRUE(result.displayError);
        EXPECT_THAT(result.broken, IsEmpty());
    }
}

TEST_F(FrameSuites, OfTheCompositionAreMissedUnderACamera) {
    const FaultScene timeline = faultScenes()[1];
    for (const SuiteName suite :
         {SuiteName{"AEGP PF Interface Suite", 1}, SuiteName{"AEGP Layer Suite", 11}, SuiteName{"AEGP Layer Suite", 14},
          SuiteName{"AEGP Stream Suite", 10}, SuiteName{"AEGP Comp Suite", 9}, SuiteName{"AEGP Item Suite", 10},
          SuiteName{"AEGP Stream Suite", 7}, SuiteName{"PF Pixel Data Suite", 1}})
        expectMissing(timeline, suite);
}

// The reference to the effect can only be given back through it.
TEST_F(FrameSuites, OfEffectsIsNotMissedUntilTheReferenceGoesBack) {
    const FrameResult result = renderWithout(faultScenes()[1], {"AEGP Effect Suite", 2});
    EXPECT_EQ(result.error, PF_Err_NONE);
    for (const std::string& text : result.broken)
        EXPECT_NE(text.find("effect reference"), std::string::npos) << text;
}

// The block that the picture was read into stays.
TEST_F(FrameSuites, OfFloatPixelsIsMissedIn32Bits) {
    const FrameResult result = renderWithout(faultScenes()[2], {"PF iterateFloat Suite", 1});
    EXPECT_EQ(result.error, PF_Err_BAD_CALLBACK_PARAM);
    for (const std::string& text : result.broken) {
        EXPECT_NE(text.find("handle"), std::string::npos) << text;
        blocksLeft += text.find("not given back: handle") != std::string::npos;
    }
}

// A layer that is sampled has no other way to its floats; the suite's absence is out of memory there.
TEST_F(FrameSuites, OfPixelsIsMissedWhereFloatsAreSampled) {
    FaultScene sampled = faultScenes()[0];
    sampled.bitsPerChannel = 32;
    const FrameResult result = renderWithout(sampled, {"PF Pixel Data Suite", 1});
    EXPECT_EQ(result.error, PF_Err_OUT_OF_MEMORY);
    EXPECT_THAT(result.broken, IsEmpty());
}

TEST_F(FrameSuites, ThatAFrameDoesNotUseAreNotMissed) {
    const std::vector<SuiteName> unused = {
        {"PF ANSI Suite", 1},        {"PF Iterate8 Suite", 1},         {"PF iterate16 Suite", 1},
        {"PF Param Utils Suite", 3}, {"AEGP Dynamic Stream Suite", 5}, {"AEGP Stream Suite", 9},
        {"AEGP Memory Suite", 1},    {"AEGP Utility Suite", 7},        {"AEGP Utility Suite", 11},
        {"PF AE App Suite", 6},      {"PF AE Adv App Suite", 2},       {"PF Effect Sequence Data Suite", 1}};
    for (const FaultScene& scene : faultScenes()) {
        for (const SuiteName& suite : unused) {
            SCOPED_TRACE(testing::Message() << scene.name << " without " << suite);
            expectGood(renderWithout(scene, suite));
        }
    }
}

}  // namespace
}  // namespace TessavoyHost
