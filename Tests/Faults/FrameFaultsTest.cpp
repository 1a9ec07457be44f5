#include <algorithm>
#include <array>
#include <string_view>

#include "Tests/Module/ModuleFixture.h"

namespace TessavoyHost {
namespace {

using testing::IsEmpty;

constexpr PF_Err givenError = PF_Err_INVALID_INDEX;

// What a frame comes to when a call of one kind fails, whichever of its calls it is.
enum class Outcome { Given, OutOfMemory, MissingSuite, Good };

struct CallKind {
    std::string_view name;
    std::vector<Outcome> outcomes;
    // What may stay out then, and nothing else.
    std::vector<const char*> leavings = {};
};

// Where the read-back fails between taking its block and giving it back, the block stays.
const std::vector<const char*> readBackBlock = {"not given back: handle", "not given back: lock of a handle"};

// Every kind of host call that frames make. Calls of the snapshot pass their errors on; those of the drawing end as out
// of memory; what is given back while the drawing goes on, or in a destructor, has no one to tell.
const std::vector<CallKind>& callKinds() {
    using enum Outcome;
    static const std::vector<CallKind> kinds = {
        {"checkout_layer", {Given}},
        {"checkout_param", {Given, OutOfMemory}},
        // After the first error the other parameters stay out.
        {"checkin_param", {Given, Good}, {"not given back: parameter"}},
        {"checkout_layer_pixels", {Given}},
        {"checkout_output", {Given}},
        {"checkin_layer_pixels", {Given}},
        {"abort", {Given}},
        {"PF_GetPixelFormat", {OutOfMemory}},
        {"get_pixel_data8", {OutOfMemory, Good}, readBackBlock},
        {"get_pixel_data16", {OutOfMemory}, readBackBlock},
        {"get_pixel_data_float", {OutOfMemory}},
        {"iterate", {OutOfMemory}, readBackBlock},
        {"host_new_handle", {OutOfMemory}},
        {"host_lock_handle", {OutOfMemory}},
        // An effect reference can't be given back without its suite. Older hosts lack the sequence data's suite.
        {"AcquireSuite",
         {MissingSuite, OutOfMemory, Good},
         {"not given back: handle", "not given back: lock of a handle", "not given back: effect reference"}},
        {"PF_GetConstSequenceData", {OutOfMemory, Given}},
        {"AEGP_GetNewEffectForEffect", {OutOfMemory}},
        {"AEGP_DisposeEffect", {Good}},
        {"AEGP_ConvertEffectToCompTime", {OutOfMemory}},
        {"AEGP_GetEffectCamera", {OutOfMemory}},
        {"AEGP_GetLayerToWorldXform", {OutOfMemory}},
        {"AEGP_GetLayerStreamValue", {OutOfMemory}},
        {"AEGP_GetEffectLayer", {OutOfMemory}},
        {"AEGP_GetLayerParentComp", {OutOfMemory}},
        {"AEGP_GetItemFromComp", {OutOfMemory}},
        {"AEGP_GetItemDimensions", {OutOfMemory}},
        {"AEGP_GetLayerInPoint", {OutOfMemory}},
        {"AEGP_GetLayerDuration", {OutOfMemory}},
        {"AEGP_GetLayerFromLayerID", {OutOfMemory}},
        {"AEGP_GetNewEffectStreamByIndex", {OutOfMemory}},
        {"AEGP_GetNewStreamValue", {OutOfMemory}},
        {"AEGP_DisposeStreamValue", {Good}},
        {"AEGP_DisposeStream", {Good}},
        {"PF_CheckoutPath", {OutOfMemory}},
        {"PF_CheckinPath", {OutOfMemory}},
        {"PF_PathNumSegments", {OutOfMemory}},
        {"PF_PathVertexInfo", {OutOfMemory}},
        {"PF_PathPrepareSegLength", {OutOfMemory}},
        {"PF_PathGetSegLength", {OutOfMemory}},
        {"PF_PathEvalSegLength", {OutOfMemory}},
        {"PF_PathCleanupSegLength", {OutOfMemory}},
    };
    return kinds;
}

// A script reads a layer of floats, a path, a ramp, a gradient and a named slider, and tries to go on without them.
FaultScene scriptedScene() {
    ModuleScene scene = fourSquaresScene();
    scene.layer(1, std::make_shared<FakeProject::StillLayer>("Film", FakeProject::solidImage(8, 6, 250, 40, 90)));
    scene.set("Float.Custom2", 3).set("Path.Custom1", MaskReference{1});
    scene.project.masks = {{"Line", false, {{{5, 5}, {}, {2, 3}}, {{12, 5}, {-2, 3}, {}}, {{12, 8}, {}, {}}}}};
    scene.project.slotNames = {{305, "Speed"}};
    scene.project.script =
        "if i == 1 and j == 0 then pcall(function() x = x + GetLayer(1, xPart, yPart) y = y + GetPath(1, 0.5) "
        "r = GetRamp(1, yPart) g = GetGradient(1, yPart) b = 1 / GetFloat('Speed') end) end";
    return {"a script", scene, 32};
}

std::vector<FaultScene> allScenes() {
    std::vector<FaultScene> scenes = faultScenes();
    scenes.push_back(scriptedScene());
    return scenes;
}

PF_Err errorOf(Outcome outcome) {
    constexpr std::array<PF_Err, 4> errors = {givenError, PF_Err_OUT_OF_MEMORY, PF_Err_BAD_CALLBACK_PARAM, PF_Err_NONE};
    return errors[static_cast<std::size_t>(outcome)];
}

bool mayLeave(const CallKind& kind, const std::string& text) {
    return std::any_of(kind.leavings.begin(), kind.leavings.end(),
                       [&](const char* leaving) { return text.find(leaving) != std::string::npos; });
}

// One scene's instance, with the frame that it shows when nothing fails.
class FaultyScene {
public:
    // Counts the blocks that failing frames leave.
    FaultyScene(EffectHost& host, const FaultScene& scene, int& blocksLeft)
        : mHost(host), mInstance(host.createInstance(scene.scene.project)), mBlocksLeft(blocksLeft) {
        mRequest.bitsPerChannel = scene.bitsPerChannel;
        // The first frame also makes the sequence data of the render.
        const FrameResult result = mInstance->renderFrame(mRequest);
        expectGood(result);
        mPicture = bytesOf(result.output);
    }

    // A frame in which the n-th call of a kind fails; whether there was such a call.
    bool fail(std::string_view call, int n, FrameResult& result) {
        mHost.faults().failNth(call, n, givenError);
        result = mInstance->renderFrame(mRequest);
        const bool struck = mHost.faults().struck() > 0;
        mHost.faults().clear();
        mBlocksLeft += static_cast<int>(std::count_if(result.broken.begin(), result.broken.end(), [](const auto& text) {
            return text.find("not given back: handle") != std::string::npos;
        }));
        return struck;
    }

    // Without faults the scene shows its picture again.
    void expectItsPicture() {
        const FrameResult result = mInstance->renderFrame(mRequest);
        expectGood(result);
        expectThePicture(result);
    }

    void expectThePicture(const FrameResult& result) { EXPECT_TRUE(bytesOf(result.output) == mPicture); }

    // How many calls of a kind a frame makes.
    int callsOf(std::string_view call) {
        FrameResult result;
        int below = 0, above = 1;
        for (; fail(call, above, result); above *= 2)
            below = above;
        while (above - below > 1) {
            const int middle = (below + above) / 2;
            (fail(call, middle, result) ? below : above) = middle;
        }
        return below;
    }

private:
    EffectHost& mHost;
    std::unique_ptr<EffectInstance> mInstance;
    int& mBlocksLeft;
    FrameRequest mRequest;
    std::vector<std::byte> mPicture;
};

class FrameFaults : public ModuleFixture {
protected:
    // The frame ended as one of its kind may, and left what its kind may.
    void expectOutcome(const CallKind& kind, const FrameResult& result, FaultyScene& scene) {
        std::vector<PF_Err> allowed;
        std::transform(kind.outcomes.begin(), kind.outcomes.end(), std::back_inserter(allowed), errorOf);
        EXPECT_THAT(allowed, testing::Contains(result.error));
        if (result.error == PF_Err_NONE)
            scene.expectThePicture(result);
        else
            EXPECT_FALSE(result.output.hasPixels());
        for (const std::string& text : result.broken)
            EXPECT_TRUE(mayLeave(kind, text)) << text;
    }

    // Calls n, n + step and so on fail in turn.
    void failInTurn(const CallKind& kind, FaultyScene& scene, int step) {
        FrameResult result;
        for (int n = 1; scene.fail(kind.name, n, result); n += step) {
            SCOPED_TRACE(testing::Message() << kind.name << " " << n);
            expectOutcome(kind, result, scene);
            scene.expectItsPicture();
            if (HasFatalFailure() || HasNonfatalFailure())
                return;
        }
    }
};

TEST_F(FrameFaults, OfEveryKindEndInAnErrorAndPass) {
    for (const FaultScene& faulty : allScenes()) {
        SCOPED_TRACE(faulty.name);
        FaultyScene scene(host(), faulty, blocksLeft);
        for (const CallKind& kind : callKinds()) {
            const bool frequent = kind.name == "checkout_param" || kind.name == "checkin_param";
            failInTurn(kind, scene, frequent ? 23 : 1);
        }
    }
}

// Each one of the parameters, as far as the frame's end: nothing is left of the others.
TEST_F(FrameFaults, OfAnyParameterAreTheFramesError) {
    FaultyScene scene(host(), faultScenes()[0], blocksLeft);
    FrameResult result;
    int n = 1;
    for (; scene.fail("checkout_param", n, result); ++n) {
        ASSERT_EQ(result.error, givenError) << n;
        ASSERT_THAT(result.broken, IsEmpty()) << n;
    }
    EXPECT_GT(n, 400);
    expectGood(result);
    scene.expectThePicture(result);
}

TEST_F(FrameFaults, AreTriedOnEveryKindOfCall) {
    for (const FaultScene& faulty : allScenes()) {
        FaultyScene scene(host(), faulty, blocksLeft);
        int sum = 0;
        for (const CallKind& kind : callKinds())
            sum += scene.callsOf(kind.name);
        EXPECT_EQ(sum, scene.callsOf(Faults::anyCall)) << faulty.name;
        scene.expectItsPicture();
    }
}

// What a script asks for is among the calls that fail.
TEST_F(FrameFaults, AreTriedOnWhatAScriptCalls) {
    FaultyScene scene(host(), scriptedScene(), blocksLeft);
    for (const char* call :
         {"PF_CheckoutPath", "PF_CheckinPath", "PF_PathNumSegments", "PF_PathVertexInfo", "PF_PathPrepareSegLength",
          "PF_PathGetSegLength", "PF_PathEvalSegLength", "PF_PathCleanupSegLength", "get_pixel_data_float"})
        EXPECT_GT(scene.callsOf(call), 0) << call;
    EXPECT_EQ(scene.callsOf("PF_GetConstSequenceData"), 3);  // for the flags, the text, and the name
}

TEST_F(FrameFaults, OfASuiteThatAScriptNeedsEndTheFrame) {
    FrameRequest request;
    const FaultScene scripted = scriptedScene();
    request.bitsPerChannel = scripted.bitsPerChannel;
    const auto instance = instanceOf(scripted.scene);
    for (const char* suite : {"PF Path Query Suite", "PF Path Data Suite"}) {
        host().faults().removeSuite(suite, 1);
        const FrameResult result = instance->renderFrame(request);
        EXPECT_EQ(result.error, PF_Err_BAD_CALLBACK_PARAM) << suite;
        EXPECT_THAT(result.broken, IsEmpty()) << suite;
        host().faults().clear();
        expectGood(instance->renderFrame(request));
    }
}

// Of an error and another while the frame is closed the first counts.
TEST_F(FrameFaults, ThatComeTogetherCountOnce) {
    FaultyScene scene(host(), faultScenes()[0], blocksLeft);
    for (const char* first : {"checkout_param", "checkout_layer_pixels", "checkout_output", "abort"}) {
        host().faults().failNth("checkin_layer_pixels", 1, PF_Err_INVALID_CALLBACK);
        FrameResult result;
        EXPECT_TRUE(scene.fail(first, 1, result));
        EXPECT_EQ(result.error, givenError) << first;
        EXPECT_THAT(result.broken, IsEmpty()) << first;
    }
    scene.expectItsPicture();
}

}  // namespace
}  // namespace TessavoyHost
