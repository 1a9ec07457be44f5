#pragma once

#include "HostInterface/Effect.h"
#include "Source/Editors/GradientData.h"
#include "Source/Editors/RampData.h"
#include "Source/Parameter/ParameterSnapshot.h"
#include "Source/Sequence.h"
#include "Tests/Unit/Evaluate/FakeLayers.h"

#include <cstddef>

namespace TessavoyFuzz {

/// The part of a host that scripts reach, with something in the first slots of every kind: handles, the sequence data
/// with two names, a layer; it has no path suites, so that a path ends in an exception. One exists at a time.
class FuzzHost {
public:
    FuzzHost();

    FuzzHost(const FuzzHost&) = delete;
    FuzzHost& operator=(const FuzzHost&) = delete;

    PF_InData inData{};
    Tessavoy::SequenceData sequence;
    Tessavoy::ParameterSnapshot snapshot;

    /// Whether the host has back everything but the parameters' own handles.
    bool hasEverythingBack() const;

private:
    void fillSlots();

    PF_UtilCallbacks mUtilities{};
    SPBasicSuite mBasic{};
    Tessavoy::FakeLayers mLayers;
    Tessavoy::RampData mRamp = Tessavoy::defaultRamp();
    Tessavoy::GradientData mGradient = Tessavoy::defaultGradient();
    std::size_t mOwnHandles = 0;
};

}  // namespace TessavoyFuzz
