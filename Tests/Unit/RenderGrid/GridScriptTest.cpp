// The instance's script in a frame: when there is one, and what becomes of its failures.

#include "Source/RenderGrid/GridScript.h"

#include "HostInterface/Constants.h"
#include "Tests/Unit/RenderGrid/ScriptedGrid.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

namespace Tessavoy {
namespace {

using testing::StartsWith;

constexpr const char* onlyFailure = "Failed to execute the script (i=3, j=2, frame=10)\n[string \"script\"]:3: no";

TEST(GridScript, MovesTheCells) {
    ScriptedGrid grid;
    const auto before = grid.evaluated("");
    const auto after = grid.evaluated("x = x + 10");
    for (std::size_t k = 0; k < before.size(); ++k) {
        EXPECT_EQ(after[k].x, before[k].x + 10.0F);
        EXPECT_EQ(after[k].y, before[k].y);
        EXPECT_EQ(after[k].matrix.m[12], before[k].matrix.m[12] + 10.0F);
    }
}

TEST(GridScript, SeesPercentsAndTheSquaresRadius) {
    ScriptedGrid grid;
    grid.scene.snapshot.ShapeAnchorX.Value = 25.0;
    const auto cells = grid.evaluated(
        "assert(scaleX == 100 and scaleY == 100 and strokeWidth == 20 and anchorX == 25) "
        "assert(math.abs(radius - 14.142135) < 1e-5 and partsCount == 4 and feather == 1 and angleOffset == 0) "
        "scaleX = 50 strokeWidth = 0 anchorX = anchorX * 2");
    EXPECT_EQ(grid.sequence.scriptError, "");
    for (const InstanceState& cell : cells) {
        EXPECT_EQ(cell.scaleX, 50.0F * 0.01F);
        EXPECT_EQ(cell.scaleY, 100.0F * 0.01F);
        EXPECT_EQ(cell.strokeWidth, 0.0F);
        EXPECT_EQ(cell.anchorX, 50.0F * 0.01F);
    }
}

TEST(GridScript, IsCompiledForEachFrame) {
    ScriptedGrid grid;
    EXPECT_EQ(grid.evaluated("count = (count or 0) + 1 x = count").back().x, 12.0F);
    EXPECT_EQ(grid.evaluated("count = (count or 0) + 1 x = count").back().x, 12.0F);
}

TEST(GridScript, IsNoneWithoutSequenceData) {
    ScriptedGrid grid;
    grid.sequence.script = "x = 99";
    grid.scene.host.constSequenceData = nullptr;
    EXPECT_EQ(GridScript(&grid.scene.host.inData, grid.scene.snapshot).usable(), nullptr);
    EXPECT_TRUE(sameRecords(grid.evaluated(), grid.unscripted()));
}

TEST(GridScript, IsNoneWhileAFailureIsOnRecord) {
    ScriptedGrid grid;
    grid.sequence.scriptError = "an older failure";
    EXPECT_TRUE(sameRecords(grid.evaluated("x = 99"), grid.unscripted()));
    EXPECT_EQ(grid.sequence.scriptError, "an older failure");
    grid.expectNothingReported();
}

TEST(GridScript, ThatDoesNotCompileIsNoneAndNothingIsSaid) {
    ScriptedGrid grid;
    for (const char* script : {"x = = 1", "return x", "end error('while it loads') do", "x = 'unfinished"}) {
        EXPECT_TRUE(sameRecords(grid.evaluated(script), grid.unscripted())) << script;
        EXPECT_EQ(grid.sequence.scriptError, "") << script;
        grid.expectNothingReported();
        EXPECT_EQ(grid.scene.host.liveHandles(), 0U) << script;
    }
}

TEST(GridScript, GivesEverythingBackAtTheFramesEnd) {
    ScriptedGrid grid;
    for (const char* script : {"", "x = x + 1", "error('no')", "x = ="}) {
        grid.sequence.scriptError.clear();
        grid.evaluated(script);
        EXPECT_EQ(grid.scene.host.liveHandles(), 0U) << script;
        EXPECT_EQ(grid.scene.host.liveLocks(), 0) << script;
        EXPECT_EQ(grid.scene.host.liveSuites(), 0) << script;
    }
}

TEST(GridScript, EveryRefusedCallOfTheHostGivesBackTheOthers) {
    for (const char* script : {"x = x + 1", "error('no')", ""}) {
        for (int call = 1;; ++call) {
            ASSERT_LT(call, 60);
            ScriptedGrid grid;
            grid.scene.host.failCall(call);
            try {
                grid.evaluated(script);
            } catch (PF_ErrorValue error) {
                EXPECT_TRUE(error == PF_Err_OUT_OF_MEMORY || error == PF_Err_INTERNAL_STRUCT_DAMAGED) << error;
            } catch (PF_Err error) {
                EXPECT_EQ(error, PF_Err_BAD_CALLBACK_PARAM);
            }
            EXPECT_EQ(grid.scene.host.liveHandles(), 0U) << call;
            EXPECT_EQ(grid.scene.host.liveLocks(), 0) << call;
            EXPECT_EQ(grid.scene.host.liveSuites(), 0) << call;
            if (!grid.scene.host.failed()) {
                break;
            }
        }
    }
}

TEST(GridScript, AFailureIsToldWithItsCellFrameAndText) {
    ScriptedGrid grid;
    grid.evaluated("if i == 3 and j == 2 then error('no') end");
    EXPECT_EQ(grid.sequence.scriptError, onlyFailure);
    EXPECT_STREQ(grid.scene.host.outData.return_msg, onlyFailure);
    EXPECT_EQ(grid.scene.host.outData.out_flags, PF_OutFlag_DISPLAY_ERROR_MESSAGE);
}

TEST(GridScript, TheLineIsCountedFromTheAssembledChunk) {
    ScriptedGrid grid;
    grid.evaluated("\n\nlocal t = nil\nx = t.field");
    EXPECT_THAT(
        grid.sequence.scriptError,
        StartsWith("Failed to execute the script (i=0, j=0, frame=10)\n[string \"script\"]:6: attempt to index"));
}

TEST(GridScript, OtherFlagsStay) {
    ScriptedGrid grid;
    grid.scene.host.outData.out_flags = PF_OutFlag_FORCE_RERENDER;
    grid.evaluated("error('no')");
    EXPECT_EQ(grid.scene.host.outData.out_flags, PF_OutFlag_FORCE_RERENDER | PF_OutFlag_DISPLAY_ERROR_MESSAGE);
}

TEST(GridScript, TheFrameOfAFailureIsTheNumberOfWholeSteps) {
    struct Row {
        A_long time, step;
        const char* frame;
    };
    for (const Row& row : {Row{1099, 100, "frame=10)"}, Row{0, 100, "frame=0)"}, Row{-250, 100, "frame=-2)"},
                           Row{5, 7, "frame=0)"}, Row{2147483647, 1, "frame=2147483647)"}}) {
        ScriptedGrid grid;
        grid.scene.host.inData.current_time = row.time;
        grid.scene.host.inData.time_step = row.step;
        grid.evaluated("error('no')");
        EXPECT_THAT(grid.sequence.scriptError, testing::HasSubstr(row.frame));
    }
}

TEST(GridScript, TheMessageShownHas255CharactersAtMost) {
    const std::string start = "Failed to execute the script (i=0, j=0, frame=10)\n";
    for (const std::size_t length : {std::size_t{254}, std::size_t{255}, std::size_t{256}, std::size_t{5000}}) {
        ScriptedGrid grid;
        std::memset(grid.scene.host.outData.return_msg, 'x', sizeof grid.scene.host.outData.return_msg);
        const std::string text(length - start.size(), 'm');
        grid.evaluated("error('" + text + "', 0)");
        EXPECT_EQ(grid.sequence.scriptError, start + text);
        EXPECT_EQ(std::string(grid.scene.host.outData.return_msg), (start + text).substr(0, 255)) << length;
    }
}

TEST(GridScript, PercentSignsInAMessageAreText) {
    ScriptedGrid grid;
    grid.evaluated("error('100%s %n %d', 0)");
    EXPECT_EQ(grid.sequence.scriptError, "Failed to execute the script (i=0, j=0, frame=10)\n100%s %n %d");
}

// Whatever fails first, no cell after it runs the script: the state is closed.
TEST(GridScript, OnlyTheFirstFailureIsTold) {
    ScriptedGrid grid;
    grid.evaluated("error('no ' .. i)");
    EXPECT_EQ(grid.sequence.scriptError,
              "Failed to execute the script (i=0, j=0, frame=10)\n[string \"script\"]:3: no 0.0");
}

// Another render of the same instance may have failed meanwhile; its message stays, and this one is not shown.
TEST(GridScript, AFailureStoredMeanwhileStays) {
    ScriptedGrid grid;
    grid.sequence.script = "error('second')";
    GridScript script(&grid.scene.host.inData, grid.scene.snapshot);
    ASSERT_NE(script.usable(), nullptr);
    grid.sequence.scriptError = "first";
    GridEvaluator evaluator = grid.scene.evaluator(script.usable());
    GridInstances instances(evaluator);
    EXPECT_EQ(grid.sequence.scriptError, "first");
    grid.expectNothingReported();
}

TEST(GridScript, AfterAFailureThereIsNoScriptUntilItIsStoredAnew) {
    ScriptedGrid grid;
    const std::string script = "x = x + 10 if frame == 10 then error('no') end";
    grid.evaluated(script);
    EXPECT_NE(grid.sequence.scriptError, "");
    grid.scene.host.inData.current_time = 1100;
    grid.scene.host.outData = {};
    EXPECT_TRUE(sameRecords(grid.evaluated(), grid.unscripted()));
    grid.expectNothingReported();
    ASSERT_EQ(validateScript(&grid.sequence, &grid.scene.host.inData, script.c_str()), PF_Err_NONE);
    const auto plain = grid.unscripted();
    EXPECT_EQ(grid.evaluated()[0].x, plain[0].x + 10.0F);
    EXPECT_EQ(grid.sequence.scriptError, "");
}

// The failing cell and all after it keep what was evaluated, with their percents made fractions; those before it keep
// what the script gave them.
TEST(GridScript, AFailureAtAnyCellLeavesTheOthersWhole) {
    for (const int failing : {0, 5, 11}) {
        SCOPED_TRACE(failing);
        ScriptedGrid grid;
        addNoise(grid.scene.snapshot.ShapeScaleX, 40.0, 1);
        grid.scene.snapshot.ShapeAnchorY.Value = 30.0;
        const auto plain = grid.unscripted();
        const auto cells = grid.evaluated("x = x + 10 anchorY = 60 if j * 4 + i == " + std::to_string(failing) +
                                          " then error('no') end");
        ASSERT_EQ(cells.size(), 12U);
        for (int k = 0; k < 12; ++k) {
            EXPECT_EQ(cells[k].anchorY, (k < failing ? 60.0F : 30.0F) * 0.01F) << k;
            EXPECT_EQ(cells[k].scaleX, plain[k].scaleX) << k;
            EXPECT_EQ(cells[k].x, plain[k].x + (k < failing ? 10.0F : 0.0F)) << k;
            EXPECT_EQ(sameRecord(cells[k], plain[k]), k >= failing) << k;
        }
        const std::string place = "(i=" + std::to_string(failing % 4) + ", j=" + std::to_string(failing / 4) + ", ";
        EXPECT_THAT(grid.sequence.scriptError, testing::HasSubstr(place));
    }
}

TEST(GridScript, IsNotRunForDeadCells) {
    ScriptedGrid grid;
    grid.scene.snapshot.InstanceVisible.Probability = 50.0;
    const auto plain = grid.unscripted();
    const auto cells = grid.evaluated("runs = (runs or 0) + 1 x = runs visible = true");
    float runs = 0.0F;
    for (std::size_t k = 0; k < cells.size(); ++k) {
        EXPECT_EQ(cells[k].visible, plain[k].visible) << k;
        EXPECT_EQ(cells[k].x, plain[k].visible != 0 ? ++runs : plain[k].x) << k;
    }
    EXPECT_GT(runs, 0.0F);
    EXPECT_LT(runs, 12.0F);
}

TEST(GridScript, RunsNoCellOfAnEmptyGrid) {
    ScriptedGrid grid;
    grid.scene.setCounts(0, 5);
    EXPECT_TRUE(grid.evaluated("error('never')").empty());
    EXPECT_EQ(grid.sequence.scriptError, "");
}

TEST(GridScript, GlobalsGoFromCellToCellInRows) {
    ScriptedGrid grid;
    const auto cells = grid.evaluated("x = (lastI or -1) * 100 + (lastJ or -1) lastI, lastJ = i, j");
    for (int k = 1; k < 12; ++k) {
        EXPECT_EQ(cells[k].x, static_cast<float>((k - 1) % 4 * 100 + (k - 1) / 4)) << k;
    }
    EXPECT_EQ(cells[0].x, -101.0F);
}

TEST(GridScript, MayHideCells) {
    ScriptedGrid grid;
    const auto cells = grid.evaluated("visible = (i + j) % 2 == 0");
    for (const InstanceState& cell : cells) {
        EXPECT_EQ(cell.visible, (cell.i + cell.j) % 2 == 0 ? 1 : 0);
    }
    // A shown square writes its centre and its corners twice over for the feather.
    const auto plain = grid.drawn("");
    const auto hidden = grid.drawn("visible = false");
    const auto half = grid.drawn("visible = (i + j) % 2 == 0");
    ASSERT_EQ(plain.size(), 1U);
    ASSERT_EQ(half.size(), 1U);
    EXPECT_TRUE(hidden.empty());
    EXPECT_EQ(half[0].written.vertexCount * 2, plain[0].written.vertexCount);
}

TEST(GridScript, ReadsTheFramesValues) {
    ScriptedGrid grid;
    grid.scene.snapshot.Float[2] = 7.0;
    grid.sequence.paramNames = {{306, "Speed"}};
    EXPECT_EQ(grid.evaluated("x = GetFloat(3) y = GetFloat('Speed')")[5].x, 7.0F);
    // The grid's matrix: the distance of the cell from the view's origin.
    grid.scene.viewProjection.view.translate(0.0F, 0.0F, 12.0F);
    const auto cells = grid.evaluated("z = GetDistToCam(3 - 400, 4 - 300, 0)");
    EXPECT_EQ(cells[0].z, 13.0F);
    EXPECT_EQ(grid.sequence.scriptError, "");
}

TEST(GridScript, ExceptionsOfTheHostLeaveTheEvaluation) {
    ScriptedGrid grid;
    grid.scene.snapshot.Ramp[0] = grid.scene.host.newHandle(std::vector<std::byte>(8));
    EXPECT_THROW(grid.evaluated("pcall(GetRamp, 1, 0.5)"), PF_Err);  // the handle holds no ramp
    EXPECT_EQ(grid.sequence.scriptError, "");
    grid.expectNothingReported();
    EXPECT_EQ(grid.scene.host.liveHandles(), 1U);
    EXPECT_EQ(grid.scene.host.liveLocks(), 0);
    EXPECT_EQ(grid.scene.host.liveSuites(), 0);
}

TEST(GridScriptDeathTest, SequenceDataMustBeInTheFormForUse) {
    ScriptedGrid grid;
    EXPECT_NO_THROW(grid.evaluated(""));
    grid.sequence.flatten = true;
    EXPECT_DEATH(grid.evaluated(""), "!sequenceDataPtr->flatten, file Source/RenderGrid");
}

}  // namespace
}  // namespace Tessavoy
