#include "Host/SequenceBlock.h"
#include "Tests/Module/ModuleFixture.h"

namespace TessavoyHost {
namespace {

using testing::IsEmpty;

using ModuleScript = ModuleFixture;

constexpr std::uint32_t currentVersion = 626176;  // 1.3.1

ModuleScene scripted(ModuleScene scene, const std::string& script) {
    scene.project.script = script;
    return scene;
}

FrameRequest atFrame(int frame, int bits = 8) {
    FrameRequest request;
    request.frame = frame;
    request.bitsPerChannel = bits;
    return request;
}

// The four squares, moved.
std::vector<Patch> movedSquares(int right, int down) {
    std::vector<Patch> patches = fourSquares();
    for (Patch& patch : patches) {
        patch.place.x += right;
        patch.place.y += down;
    }
    return patches;
}

// The frame was drawn, and the user is told so much.
void expectFailure(const FrameResult& result, const std::string& message) {
    EXPECT_EQ(result.error, PF_Err_NONE);
    EXPECT_EQ(result.message, message);
    EXPECT_TRUE(result.displayError);
    EXPECT_THAT(result.broken, IsEmpty());
}

TEST_F(ModuleScript, MovesEveryCellInEveryDepth) {
    for (const int bits : {8, 16, 32}) {
        SCOPED_TRACE(bits);
        const ModuleScene scene = scripted(fourSquaresScene(), "x = x + 10\ny = y - 5");
        expectPicture(render(scene, atFrame(0, bits)).output, movedSquares(10, -5));
    }
}

TEST_F(ModuleScript, WithoutAnyTextOrEffectShowsThePlainPicture) {
    for (const char* script : {"", " ", "-- nothing", "local other = 5"}) {
        SCOPED_TRACE(script);
        expectPicture(render(scripted(fourSquaresScene(), script)).output, fourSquares());
        const FrameResult plain = render(richScene(64, 48)), idle = render(scripted(richScene(64, 48), script));
        EXPECT_TRUE(bytesOf(idle.output) == bytesOf(plain.output));
    }
}

TEST_F(ModuleScript, HidesCells) {
    expectPicture(render(scripted(fourSquaresScene(), "visible = false")).output, {});
    expectPicture(render(scripted(fourSquaresScene(), "visible = 0")).output, fourSquares());
    expectPicture(render(scripted(fourSquaresScene(), "visible = i == j")).output,
                  {fourSquares()[0], fourSquares()[3]});
    expectPicture(render(scripted(fourSquaresScene(), "if i == 0 then return end")).output,
                  {fourSquares()[1], fourSquares()[3]});
    // What isn't visible without it stays so.
    expectPicture(render(scripted(fourSquaresScene().set("InstanceVisible.Probability", 0), "visible = true")).output,
                  {});
}

TEST_F(ModuleScript, PaintsAndShapesCells) {
    const std::vector<Patch> squares = fourSquares({0.5, 1, 0.25, 0});
    const std::string colour = "r, g, b, a = 1, 0.25, 0, 0.5";
    expectPicture(render(scripted(fourSquaresScene(), colour), atFrame(0, 32)).output, squares);
    // Four parts have their corners on the radius, which is the half side times the root of two.
    std::vector<Patch> wide = fourSquares();
    for (Patch& patch : wide)
        patch.place = {patch.place.x - 5, patch.place.y, 20, 10};
    expectPicture(render(scripted(fourSquaresScene(), "scaleX = 200")).output, wide);
    for (Patch& patch : wide)
        patch.place.y -= 5, patch.place.height = 20;
    expectPicture(render(scripted(fourSquaresScene(), "radius = radius * 2")).output, wide);
    expectPicture(render(scripted(fourSquaresScene(), "angle = 90 angleOffset = 45")).output, fourSquares());
}

// The offset may be set and is of no use: not even to a triangle, which no multiple of a right angle turns onto itself.
TEST_F(ModuleScript, AnAngleOffsetTurnsNothing) {
    const auto triangles = [&](const std::string& more) {
        return bytesOf(render(scripted(fourSquaresScene(), "partsCount = 3 " + more)).output);
    };
    const auto plain = triangles("");
    EXPECT_NE(triangles("angle = 90"), plain);
    for (const char* offset : {"45", "90", "180", "-720", "1e9"})
        EXPECT_EQ(triangles(std::string("angleOffset = ") + offset), plain) << offset;
}

TEST_F(ModuleScript, KnowsItsFrameAndCell) {
    const ModuleScene scene = scripted(fourSquaresScene(), "x = x + frame + time * 25");
    const auto instance = instanceOf(scene);
    for (const int frame : {0, 3, 5}) {
        SCOPED_TRACE(frame);
        const FrameResult result = instance->renderFrame(atFrame(frame));
        expectGood(result);
        expectPicture(result.output, movedSquares(2 * frame, 0));
    }
    // Two by two cells over 32 by 24 pixels: from the places that it is told it puts every cell where it was.
    const std::string placing =
        "x = (xPart - 0.5) * gridWidth y = (j / (yCount - 1) - 0.5) * gridHeight assert(yPart == j and xCount == 2)";
    expectPicture(render(scripted(fourSquaresScene(), placing)).output, fourSquares());
}

TEST_F(ModuleScript, MovesByFullResolutionPixels) {
    FrameRequest half;
    half.downsampleX = half.downsampleY = {1, 2};
    const FrameResult plain = render(scripted(sharpScene(64, 48).set("CountX", 1).set("CountY", 1), ""), half);
    const FrameResult moved =
        render(scripted(sharpScene(64, 48).set("CountX", 1).set("CountY", 1), "x = x + 10"), half);
    ASSERT_EQ(plain.output.width(), 32);
    EXPECT_TRUE(bytesOf(moved.output, {5, 0, 27, 24}) == bytesOf(plain.output, {0, 0, 27, 24}));
}

TEST_F(ModuleScript, KeepsGlobalsForOneFrame) {
    const auto instance = instanceOf(scripted(fourSquaresScene(), "count = (count or 0) + 1 x = x + count"));
    for (int frame = 0; frame < 3; ++frame) {
        const FrameResult result = instance->renderFrame(atFrame(frame));
        expectGood(result);
        std::vector<Patch> squares = fourSquares();
        for (int cell = 0; cell < 4; ++cell)
            squares[static_cast<std::size_t>(cell)].place.x += cell + 1;
        expectPicture(result.output, squares);
    }
}

// The cells before the failure are moved, the others stay, and so does the next frame.
TEST_F(ModuleScript, ThatFailsIsToldAndThenSwitchedOff) {
    const std::string script = "if i == 1 and j == 1 and frame == 10 then error('no') end x = x + 10";
    const auto instance = instanceOf(scripted(fourSquaresScene(), script));
    const FrameResult before = instance->renderFrame(atFrame(9));
    expectGood(before);
    expectPicture(before.output, movedSquares(10, 0));

    const FrameResult failed = instance->renderFrame(atFrame(10));
    expectFailure(failed, "Failed to execute the script (i=1, j=1, frame=10)\n[string \"script\"]:3: no");
    std::vector<Patch> squares = movedSquares(10, 0);
    squares[3] = fourSquares()[3];
    expectPicture(failed.output, squares);

    for (const int frame : {11, 9}) {
        const FrameResult after = instance->renderFrame(atFrame(frame));
        expectGood(after);
        expectPicture(after.output, fourSquares());
    }
    expectPicture(instanceOf(scripted(fourSquaresScene(), script))->renderFrame(atFrame(11)).output,
                  movedSquares(10, 0));
}

TEST_F(ModuleScript, RunsAgainWhenItIsStoredAgain) {
    const std::string script = "x = x + 10 if frame == 10 then error('no') end";
    const auto instance = instanceOf(scripted(fourSquaresScene(), script));
    EXPECT_TRUE(instance->renderFrame(atFrame(10)).displayError);
    expectPicture(instance->renderFrame(atFrame(11)).output, fourSquares());
    instance->resetup(sequenceBlock(script, {}, currentVersion));
    const FrameResult result = instance->renderFrame(atFrame(11));
    expectGood(result);
    expectPicture(result.output, movedSquares(10, 0));
}

TEST_F(ModuleScript, ThatFailsSaysSoInEachRenderOfTheFirstFrame) {
    const FrameResult result = instanceOf(scripted(fourSquaresScene(), "\nlocal t = {} x = t.a.b"))->renderFrame({});
    expectFailure(
        result,
        "Failed to execute the script (i=0, j=0, frame=0)\n[string \"script\"]:4: attempt to index a nil value "
        "(field 'a')");
    expectPicture(result.output, fourSquares());
}

TEST_F(ModuleScript, HasMessagesOf255CharactersAtMost) {
    const FrameResult result =
        instanceOf(scripted(fourSquaresScene(), "error(string.rep('long ', 1000), 0)"))->renderFrame({});
    std::string message = "Failed to execute the script (i=0, j=0, frame=0)\n";
    while (message.size() < 255)
        message += "long ";
    expectFailure(result, message.substr(0, 255));
}

TEST_F(ModuleScript, ThatDoesNotCompileIsNoneAndNothingIsSaid) {
    for (const char* script : {"x = x + 10\nx = =", "return x", "end error('early') do", "x = 'open"}) {
        SCOPED_TRACE(script);
        expectPicture(render(scripted(fourSquaresScene(), script)).output, fourSquares());
    }
}

TEST_F(ModuleScript, EndsWithAnErrorWhereItAsksForMorePartsThanThereCanBe) {
    const auto instance = instanceOf(scripted(fourSquaresScene(), "if frame == 1 then partsCount = 1e9 end"));
    EXPECT_EQ(instance->renderFrame(atFrame(1)).error, PF_Err_OUT_OF_MEMORY);
    const FrameResult result = instance->renderFrame(atFrame(0));
    expectGood(result);
    expectPicture(result.output, fourSquares());
}

TEST_F(ModuleScript, MayUseLuaToItsLimits) {
    const std::string nested = "local function f(n) return n == 0 and 0 or 1 + f(n - 1) end x = x + f(1000) / 100";
    expectPicture(render(scripted(fourSquaresScene(), nested)).output, movedSquares(10, 0));
    const auto instance = instanceOf(scripted(fourSquaresScene(), "local function f() return 1 + f() end f()"));
    const FrameResult result = instance->renderFrame({});
    EXPECT_TRUE(result.displayError);
    EXPECT_THAT(result.message, testing::HasSubstr("stack overflow"));
    expectPicture(result.output, fourSquares());
    expectPicture(render(scripted(fourSquaresScene(), "local s = string.rep('x', 1000000) x = x + #s / 100000")).output,
                  movedSquares(10, 0));
}

TEST_F(ModuleScript, SortsItsCellsUnderACamera) {
    // Two squares over each other; the nearer one is seen.
    ModuleScene scene = sharpScene(64, 48);
    scene.set("CountX", 2).set("CountY", 1).set("GridWidth", 0).set("InstanceSize.Value", 5).set("SortByZ", 1);
    scene.set("UseCompCamera", 1);
    scene.project.camera = facingCamera(170);
    for (const int nearer : {0, 1}) {
        const std::string column = std::to_string(nearer);
        const std::string script = "r, g, b = i, 1 - i, 0 z = i == " + column + " and -1 or 1";
        const FrameResult result = render(scripted(scene, script));
        EXPECT_EQ(pixelAt(result.output, 32, 24).r, nearer);
        EXPECT_EQ(pixelAt(result.output, 32, 24).g, 1 - nearer);
    }
}

TEST_F(ModuleScript, OfAnotherInstanceChangesNothing) {
    const auto moved = instanceOf(scripted(fourSquaresScene(), "shared = 10 x = x + shared"));
    const auto plain = instanceOf(scripted(fourSquaresScene(), "x = x + (shared or 0)"));
    const auto failing = instanceOf(scripted(fourSquaresScene(), "error('no')"));
    for (int round = 0; round < 2; ++round) {
        expectPicture(moved->renderFrame({}).output, movedSquares(10, 0));
        expectPicture(plain->renderFrame({}).output, fourSquares());
        EXPECT_EQ(failing->renderFrame({}).displayError, round == 0);
    }
}

TEST(ModuleScriptOldHost, FailsOnceWithoutTheSequenceDataSuite) {
    const QuietOutput quiet;
    HostOptions options;
    options.withSequenceDataSuite = false;
    EffectHost host(std::filesystem::path(TESSAVOY_MODULE), forThisSystem(options));
    const auto instance = host.createInstance(scripted(fourSquaresScene(), "x = x + 10 error('no')").project);
    EXPECT_TRUE(instance->renderFrame({}).displayError);
    const FrameResult result = instance->renderFrame({});
    expectGood(result);
    expectPicture(result.output, fourSquares());
}

}  // namespace
}  // namespace TessavoyHost
