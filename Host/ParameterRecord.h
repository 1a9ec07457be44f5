#pragma once

#include <memory>
#include <vector>

#include "Host/CommandContext.h"

namespace TessavoyHost {

// A parameter at a moment as the module sees it, and what must live as long as the record does: a layer's pixels, a
// value that was interpolated for it.
struct ParameterRecord {
    PF_ParamDef definition{};
    std::shared_ptr<void> keep;
};

// Whether layers come with their pixels.
enum class LayerPixels { Present, Absent };

// time in composition seconds. A layer without pixels then has null data and no size. Throws HostCallFailure,
// HostError.
ParameterRecord parameterRecord(CommandContext& context, int index, double time,
                                LayerPixels pixels = LayerPixels::Present);

// All parameters at the command's moment, by index, with their present names: what panel commands get.
class ParameterArray {
public:
    explicit ParameterArray(CommandContext& context, LayerPixels pixels = LayerPixels::Present);

    PF_ParamDef** data() { return mPointers.data(); }

    // Puts a copy in the place of a parameter's arbitrary data, so that the module may change it. Throws
    // HostCallFailure.
    void detach(CommandContext& context, int index);

    // Parameters whose value the module says it changed.
    std::vector<int> changed() const;

    // Takes those values over into the instance, at the command's moment. Throws HostCallFailure, HostError.
    void takeOver(CommandContext& context) const;

private:
    std::vector<ParameterRecord> mRecords;
    std::vector<PF_ParamDef*> mPointers;
};

}  // namespace TessavoyHost
