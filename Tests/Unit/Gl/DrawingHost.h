#pragma once

#include "HostInterface/AegpSuites.h"
#include "HostInterface/Constants.h"
#include "HostInterface/Effect.h"
#include "HostInterface/Suites.h"

#include <cstddef>
#include <functional>
#include <set>
#include <string>
#include <vector>

namespace Tessavoy::Testing {

/// A world of the host with padded rows: each row is followed by bytes of the value 0xA5 that belong to no pixel.
class HostWorld {
public:
    static constexpr std::byte padding{0xA5};

    HostWorld(A_long width, A_long height, PF_PixelFormat format, A_long paddingPixels = 3);

    HostWorld(const HostWorld&) = delete;
    HostWorld& operator=(const HostWorld&) = delete;

    PF_EffectWorld* world() { return &mWorld; }
    PF_PixelFormat format() const { return mFormat; }

    /// The four channels of a pixel, in the host's order: alpha, red, green, blue.
    template <class Channel>
    Channel* pixel(A_long x, A_long y) {
        return reinterpret_cast<Channel*>(mStorage.data() + y * mWorld.rowbytes) + 4 * x;
    }

    template <class Channel>
    void set(A_long x, A_long y, Channel a, Channel r, Channel g, Channel b) {
        Channel* target = pixel<Channel>(x, y);
        target[0] = a;
        target[1] = r;
        target[2] = g;
        target[3] = b;
    }

    /// True when nothing was written beside the pixels.
    bool paddingIsIntact() const;

private:
    PF_PixelFormat mFormat;
    A_long mBytesPerPixel;
    std::vector<std::byte> mStorage;
    PF_EffectWorld mWorld{};
};

/// As much of a host as drawing asks for. It counts what it lends. One exists at a time.
class DrawingHost {
public:
    DrawingHost();
    ~DrawingHost();

    DrawingHost(const DrawingHost&) = delete;
    DrawingHost& operator=(const DrawingHost&) = delete;

    PF_InData inData{};
    PF_OutData outData{};

    std::set<std::string> missingSuites;  ///< names that can't be acquired
    std::set<std::string> failingCalls;   ///< names of calls that give error 1234
    static constexpr PF_Err callError = 1234;

    /// What is lent at the moment.
    int handlesOut = 0;
    int locksOut = 0;
    int suitesOut = 0;
    int checkoutsOut = 0;
    int effectsOut = 0;
    int streamsOut = 0;
    int streamValuesOut = 0;

    int lent() const {
        return handlesOut + locksOut + suitesOut + checkoutsOut + effectsOut + streamsOut + streamValuesOut;
    }

    /// The timeline of the project. The chosen layer has the id 42 and is chosen by the parameter 7.
    static constexpr PF_ParamIndex layerParameter = 7;
    A_Time effectInPoint{0, 1};
    A_Time layerInPoint{0, 1};
    A_Time layerDuration{1, 1};
    std::function<HostWorld*(A_long time)> frameAt;  ///< null: no pixels at that time
    std::vector<A_long> requestedTimes;              ///< of the layer checkouts, in their order
    A_long streamValueTime = -1;                     ///< the value of the last asked stream's time

    A_long iterateHeight = -1;  ///< how far the last iteration said that it goes

private:
    std::vector<std::byte> mGlobalBlock;
    void* mGlobalPointer = nullptr;
    PF_UtilCallbacks mUtilities{};
};

}  // namespace Tessavoy::Testing
