#pragma once

#include <memory>

#include "Host/Drawing/PanelReader.h"
#include "Tests/Unit/Host/HostFixture.h"

namespace TessavoyHost {

// The drawing suites as the fake effect has them during a draw event.
struct DrawCalls {
    DrawCalls(PF_InData* in, PF_EventExtra* event)
        : inData(in), extra(event), customUi(in), drawbot(in), supplierSuite(in), surfaceSuite(in), pathSuite(in) {
        DRAWBOT_DrawRef reference = nullptr;
        EXPECT_EQ(customUi->PF_GetDrawingReference(event->contextH, &reference), 0);
        EXPECT_EQ(drawbot->GetSupplier(reference, &supplier), 0);
        EXPECT_EQ(drawbot->GetSurface(reference, &surface), 0);
    }

    DRAWBOT_BrushRef brush(const DRAWBOT_ColorRGBA& color) const {
        DRAWBOT_BrushRef made = nullptr;
        EXPECT_EQ(supplierSuite->NewBrush(supplier, &color, &made), 0);
        return made;
    }
    DRAWBOT_PenRef pen(const DRAWBOT_ColorRGBA& color, float width) const {
        DRAWBOT_PenRef made = nullptr;
        EXPECT_EQ(supplierSuite->NewPen(supplier, &color, width, &made), 0);
        return made;
    }
    DRAWBOT_FontRef font(float size) const {
        DRAWBOT_FontRef made = nullptr;
        EXPECT_EQ(supplierSuite->NewDefaultFont(supplier, size, &made), 0);
        return made;
    }
    DRAWBOT_PathRef path() const {
        DRAWBOT_PathRef made = nullptr;
        EXPECT_EQ(supplierSuite->NewPath(supplier, &made), 0);
        return made;
    }
    template <class Reference>
    SPErr retain(Reference reference) const {
        return supplierSuite->RetainObject(reinterpret_cast<DRAWBOT_ObjectRef>(reference));
    }
    template <class Reference>
    SPErr release(Reference reference) const {
        return supplierSuite->ReleaseObject(reinterpret_cast<DRAWBOT_ObjectRef>(reference));
    }

    // A line of ASCII, in black.
    void text(std::string_view letters, DRAWBOT_PointF32 origin, float size) const {
        std::vector<DRAWBOT_UTF16Char> units(letters.begin(), letters.end());
        units.push_back(0);
        const auto black = brush({0, 0, 0, 1});
        const auto sized = font(size);
        EXPECT_EQ(surfaceSuite->DrawString(surface, black, sized, units.data(), &origin, kDRAWBOT_TextAlignment_Left,
                                           kDRAWBOT_TextTruncation_None, 0),
                  0);
        EXPECT_EQ(release(black), 0);
        EXPECT_EQ(release(sized), 0);
    }

    PF_InData* inData;
    PF_EventExtra* extra;
    FakeEffect::Acquired<PF_EffectCustomUISuite1> customUi;
    FakeEffect::Acquired<DRAWBOT_DrawbotSuite1> drawbot;
    FakeEffect::Acquired<DRAWBOT_SupplierSuite1> supplierSuite;
    FakeEffect::Acquired<DRAWBOT_SurfaceSuite1> surfaceSuite;
    FakeEffect::Acquired<DRAWBOT_PathSuite1> pathSuite;
    DRAWBOT_SupplierRef supplier = nullptr;
    DRAWBOT_SurfaceRef surface = nullptr;
};

// A host of the fake effect that draws the control of its Data parameter.
class DrawingFixture : public HostFixture {
protected:
    DrawingFixture() {
        FakeEffect::hooks().paramsSetup = [](PF_InData* in, PF_OutData*) {
            PF_CustomUIInfo info{};
            info.events = PF_CustomEFlag_EFFECT;
            return in->inter.register_ui(in->effect_ref, &info);
        };
    }

    EffectHost& host() {
        if (mHost == nullptr)
            mHost = std::make_unique<EffectHost>(FakeEffect::entryPoints());
        return *mHost;
    }

    EffectInstance& instance() {
        if (mInstance == nullptr)
            mInstance = host().createInstance(project);
        return *mInstance;
    }

    PanelReader& reader() {
        if (mReader == nullptr)
            mReader = std::make_unique<PanelReader>(instance());
        return *mReader;
    }

    // Registers a parameter with more flags.
    static void addFlags(int parameter, A_long flags) {
        FakeEffect::hooks().define = [parameter, flags, before = FakeEffect::hooks().define](int index,
                                                                                             PF_ParamDef& definition) {
            if (before)
                before(index, definition);
            if (index == parameter)
                definition.flags |= flags;
        };
    }

    static void duringDraw(const std::function<void(DrawCalls&)>& body) {
        FakeEffect::hooks().event = [body](PF_InData* in, PF_OutData*, PF_ParamDef**, PF_EventExtra* extra) {
            DrawCalls calls(in, extra);
            body(calls);
            return PF_Err{0};
        };
    }

    // The command's answer to a draw event with the body inside.
    CommandResult draw(const std::function<void(DrawCalls&)>& body, DrawingSurface& surface) {
        duringDraw(body);
        return reader().draw(FakeEffect::Data, {10, 20, 130, 60}, surface);
    }

    Project project = FakeProject::project();

private:
    std::unique_ptr<EffectHost> mHost;
    std::unique_ptr<EffectInstance> mInstance;
    std::unique_ptr<PanelReader> mReader;
};

}  // namespace TessavoyHost
