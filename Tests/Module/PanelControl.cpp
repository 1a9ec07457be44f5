#include "Tests/Module/PanelControl.h"

#include <algorithm>
#include <tuple>

#include "Host/ArbitraryCalls.h"
#include "Host/CommandContext.h"
#include "Host/EffectHost.h"
#include "Tests/Module/FailingCalls.h"
#include "Tests/Module/ModuleFixture.h"

namespace TessavoyHost {
namespace {

struct CornerCollector {
    std::vector<DRAWBOT_PointF32>& corners;

    void operator()(const PathPiece::Move& piece) const { corners.push_back(piece.to); }
    void operator()(const PathPiece::Line& piece) const { corners.push_back(piece.to); }
    void operator()(const PathPiece::Curve& piece) const { corners.push_back(piece.to); }
    void operator()(const PathPiece::Rectangle& piece) const {
        const auto& [left, top, width, height] = piece.area;
        corners.insert(corners.end(),
                       {{left, top}, {left + width, top}, {left + width, top + height}, {left, top + height}});
    }
    void operator()(const PathPiece::Arc&) const { ADD_FAILURE() << "an arc has no corners"; }
    void operator()(const PathPiece::Close&) const {}
};

}  // namespace

std::vector<DRAWBOT_PointF32> cornersOf(const DrawnPath& path) {
    std::vector<DRAWBOT_PointF32> corners;
    for (const auto& piece : path)
        std::visit(CornerCollector{corners}, piece);
    return corners;
}

DRAWBOT_RectF32 boundsOf(const DrawnPath& path) {
    const auto corners = cornersOf(path);
    if (corners.empty())
        return {};
    DRAWBOT_PointF32 least = corners.front(), most = corners.front();
    for (const DRAWBOT_PointF32& corner : corners) {
        least = {std::min(least.x, corner.x), std::min(least.y, corner.y)};
        most = {std::max(most.x, corner.x), std::max(most.y, corner.y)};
    }
    return {least.x, least.y, most.x - least.x, most.y - least.y};
}

DRAWBOT_ColorRGBA themeColorOf(EffectHost& host, PF_AppColorValue color) {
    constexpr const char* name = "PF AE App Suite";
    constexpr A_long version = 6;
    CommandContext context(host, nullptr, PF_Cmd_EVENT, {});
    const CommandContext::Scope scope(&context);
    const SPBasicSuite& basic = host.services().basic;
    const void* table = nullptr;
    PF_App_Color components{};
    EXPECT_EQ(basic.AcquireSuite(name, version, &table), 0);
    EXPECT_EQ(static_cast<const PFAppSuite4*>(table)->PF_AppGetColor(color, &components), PF_Err_NONE);
    EXPECT_EQ(basic.ReleaseSuite(name, version), 0);
    const auto part = [](A_u_short component) { return static_cast<float>(component) * 1.5259022e-05F; };
    return {part(components.red), part(components.green), part(components.blue), 1};
}

bool sameColor(const DRAWBOT_ColorRGBA& first, const DRAWBOT_ColorRGBA& second) {
    return first.red == second.red && first.green == second.green && first.blue == second.blue &&
           first.alpha == second.alpha;
}

void expectFilled(EffectHost& host, const DrawingRecorder& recorder, const PF_Rect& frame) {
    const int width = frame.right - frame.left, height = frame.bottom - frame.top;
    ASSERT_THAT(recorder.clips, testing::SizeIs(1));
    const auto& clip = recorder.clips[0];
    EXPECT_EQ(std::tuple(clip.left, clip.top, clip.width, clip.height),
              std::tuple(frame.left, frame.top, width, height));
    ASSERT_THAT(recorder.rectangles, testing::SizeIs(1));
    const auto& [area, color] = recorder.rectangles[0];
    EXPECT_EQ(std::tuple(area.left, area.top, area.width, area.height),
              std::tuple(frame.left, frame.top, width, height));
    EXPECT_TRUE(sameColor(color, themeColorOf(host, PF_App_Color_PANEL_BACKGROUND)));
}

PanelControl::PanelControl(EffectInstance& instance, std::string_view id, const PF_Rect& frame)
    : mInstance(instance), mReader(instance), mEvent(mReader.eventOf(PF_Event_DO_CLICK, parameterIndexOf(id), frame)) {
    for (const RegisteredParameter& registered : instance.host().parameters()) {
        mDefinitions.push_back(registered.definition);
        mDefinitions.back().uu.change_flags = PF_ChangeFlag_NONE;
    }
    mDefinitions[parameter()].u.arb_d.value =
        static_cast<PF_Handle>(instance.values().arbitraryAt(mEvent.effect_win.index, 0).get());
    for (PF_ParamDef& definition : mDefinitions)
        mPointers.push_back(&definition);
}

CommandResult PanelControl::click(int x, int y, int count, PF_Modifiers modifiers) {
    mEvent.u.do_click = {};
    mEvent.u.do_click.num_clicks = count;
    mEvent.u.do_click.modifiers = modifiers;
    return send(PF_Event_DO_CLICK, x, y);
}

CommandResult PanelControl::drag(int x, int y) {
    return send(PF_Event_DRAG, x, y);
}

CommandResult PanelControl::send(PF_EventType type, int x, int y) {
    mEvent.e_type = type;
    mEvent.u.do_click.screen_point = {x, y};
    mEvent.evt_out_flags = PF_EO_NONE;
    mDefinitions[parameter()].uu.change_flags = PF_ChangeFlag_NONE;
    return mInstance.command(PF_Cmd_EVENT, 0, &mEvent, mPointers.data());
}

CommandResult PanelControl::draw(DrawingSurface& surface) {
    return mReader.draw(mEvent.effect_win.index, mEvent.effect_win.current_frame, surface);
}

int PanelControl::failEachCallOf(const std::function<CommandResult()>& event) {
    constexpr PF_Err given = PF_Err_INVALID_INDEX;
    EffectHost& host = mInstance.host();
    std::vector<std::byte> before;
    int failed = 0;
    FailingCommand command;
    command.prepare = [&] { before = flat(); };
    command.run = event;
    command.expectFailed = [&](const CommandResult& result, int) {
        EXPECT_THAT(result.error, testing::AnyOf(given, PF_Err_BAD_CALLBACK_PARAM, PF_Err_OUT_OF_MEMORY, PF_Err_NONE));
        EXPECT_THAT(result.broken, testing::IsEmpty());
        EXPECT_EQ(host.services().handles.locks(handle()), 0);
        if (result.error == PF_Err_NONE)
            return;
        ++failed;
        EXPECT_TRUE(untouched());
        EXPECT_EQ(flat(), before);
    };
    command.expectDone = [&](const CommandResult& result) {
        expectGood(result);
        EXPECT_EQ(host.services().handles.locks(handle()), 0);
    };
    failEachCall(host, given, command);
    return failed;
}

bool PanelControl::untouched() const {
    return mEvent.evt_out_flags == PF_EO_NONE && !sendsDrags() &&
           mDefinitions[parameter()].uu.change_flags == PF_ChangeFlag_NONE;
}

std::vector<std::byte> PanelControl::flat() const {
    return ArbitraryCalls(mInstance.host(), mInstance.host().parameters()[parameter()]).flatten(handle());
}

InstanceWithControl::InstanceWithControl(EffectHost& host, const std::string& id, const std::vector<std::byte>& flat,
                                         const PF_Rect& frame)
    : instance(
          host.createInstance(ModuleScene(fourSquaresScene()).set(id, ParameterValue(ArbitraryValue{flat})).project)),
      control(*instance, id, frame) {}

}  // namespace TessavoyHost
