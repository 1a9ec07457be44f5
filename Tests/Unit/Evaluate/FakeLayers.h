#pragma once

#include "Source/Evaluate/LayerSampling.h"
#include "Source/HostAccess/SuiteHandler.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

namespace Tessavoy {

/// Checked-out layers and the part of a host that gives access to their pixels. Calls are counted and can be told to
/// fail. One at a time, as the host's functions have no place for an owner.
class FakeLayers {
public:
    using Pixel = std::array<float, 4>;  ///< r, g, b, a with 1 as full

    FakeLayers() {
        current() = this;
        mUtils.get_pixel_data8 = [](PF_EffectWorld* world, PF_PixelPtr, PF_Pixel8** pixels) {
            ++current()->calls8;
            *pixels = current()->isFloat(*world) ? nullptr : reinterpret_cast<PF_Pixel8*>(world->data);
            return current()->error8;
        };
        mUtils.get_pixel_data16 = [](PF_EffectWorld* world, PF_PixelPtr, PF_Pixel16** pixels) {
            ++current()->calls16;
            *pixels = current()->hideDeepPixels ? nullptr : reinterpret_cast<PF_Pixel16*>(world->data);
            return current()->error16;
        };
        mPixelSuite.get_pixel_data_float = [](PF_EffectWorld* world, PF_PixelPtr, PF_PixelFloat** pixels) {
            ++current()->callsFloat;
            *pixels = reinterpret_cast<PF_PixelFloat*>(world->data);
            return current()->errorFloat;
        };
        mBasic.AcquireSuite = [](const char* name, std::int32_t version, const void** suite) -> SPErr {
            const bool known = std::strcmp(name, "PF Pixel Data Suite") == 0 && version == 1;
            *suite = known && current()->hasPixelSuite ? &current()->mPixelSuite : nullptr;
            current()->suitesOut += *suite != nullptr ? 1 : 0;
            return 0;
        };
        mBasic.ReleaseSuite = [](const char*, std::int32_t) -> SPErr {
            --current()->suitesOut;
            return 0;
        };
        mInData.utils = &mUtils;
        mInData.pica_basicP = &mBasic;
        slots.inData = &mInData;
    }

    ~FakeLayers() { current() = nullptr; }
    FakeLayers(const FakeLayers&) = delete;
    FakeLayers& operator=(const FakeLayers&) = delete;

    /// Appends a slot with a picture, row by row from the top. Rows are padded, so that stride mistakes show.
    void add8(A_long width, A_long height, const std::vector<Pixel>& picture) {
        addPicture<A_u_char>(width, height, picture, 255.0f, 0);
    }
    void add16(A_long width, A_long height, const std::vector<Pixel>& picture) {
        addPicture<A_u_short>(width, height, picture, 32768.0f, PF_WorldFlag_DEEP);
    }
    void addFloat(A_long width, A_long height, const std::vector<Pixel>& picture) {
        addPicture<float>(width, height, picture, 1.0f, 0);
        mFloatData.push_back(slots.checkouts.back().u.ld.data);
    }

    /// Appends a slot in which the user chose no layer.
    void addEmpty() {
        PF_ParamDef entry{};
        entry.param_type = PF_Param_LAYER;
        slots.checkouts.push_back(entry);
    }

    /// Appends a parameter that is no layer, its value filled with ones where a layer would have its pixels.
    void addSlider() {
        PF_ParamDef entry;
        std::memset(&entry, 0x01, sizeof entry);
        entry.param_type = PF_Param_FLOAT_SLIDER;
        slots.checkouts.push_back(entry);
    }

    int hostCalls() const { return calls8 + calls16 + callsFloat; }

    void withoutBasicSuite() { mInData.pica_basicP = nullptr; }

    LayerSlots slots;
    int calls8 = 0;
    int calls16 = 0;
    int callsFloat = 0;
    int suitesOut = 0;
    PF_Err error8 = 0;
    PF_Err error16 = 0;
    PF_Err errorFloat = 0;
    bool hasPixelSuite = true;
    bool hideDeepPixels = false;

private:
    static FakeLayers*& current() {
        static FakeLayers* layers = nullptr;
        return layers;
    }

    bool isFloat(const PF_LayerDef& world) const {
        return std::find(mFloatData.begin(), mFloatData.end(), world.data) != mFloatData.end();
    }

    template <class Channel>
    void addPicture(A_long width, A_long height, const std::vector<Pixel>& picture, float full, PF_WorldFlags flags) {
        constexpr std::size_t padding = 48;
        const std::size_t rowbytes = width * 4 * sizeof(Channel) + padding;
        std::vector<unsigned char> memory(rowbytes * height, 0x5A);
        for (A_long at = 0; at < width * height; ++at) {
            const auto& [r, g, b, a] = picture[at];
            const std::array<Channel, 4> stored = {static_cast<Channel>(a * full), static_cast<Channel>(r * full),
                                                   static_cast<Channel>(g * full), static_cast<Channel>(b * full)};
            std::memcpy(&memory[at / width * rowbytes + at % width * sizeof stored], &stored, sizeof stored);
        }
        mMemory.push_back(std::move(memory));
        addEmpty();
        PF_LayerDef& layer = slots.checkouts.back().u.ld;
        layer.world_flags = flags;
        layer.data = reinterpret_cast<PF_PixelPtr>(mMemory.back().data());
        layer.rowbytes = static_cast<A_long>(rowbytes);
        layer.width = width;
        layer.height = height;
    }

    PF_UtilCallbacks mUtils{};
    PF_PixelDataSuite1 mPixelSuite{};
    SPBasicSuite mBasic{};
    PF_InData mInData{};
    std::vector<std::vector<unsigned char>> mMemory;
    std::vector<PF_PixelPtr> mFloatData;
};

}  // namespace Tessavoy
