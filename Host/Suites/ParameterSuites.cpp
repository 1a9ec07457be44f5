#include "Host/EffectHost.h"
#include "Host/HostCall.h"
#include "Host/Suites/Tables.h"

namespace TessavoyHost {
namespace {

PF_Err updateParamUi(PF_ProgPtr reference, PF_ParamIndex index, const PF_ParamDef* definition) noexcept {
    return answer("PF_UpdateParamUI", reference, [&](CommandContext& context) {
        require(definition != nullptr);
        require(index > 0 && index < context.instance().values().count(), PF_Err_INVALID_INDEX);
        context.instance().panel().rename(index, definition->name);
    });
}

PF_Err constSequenceData(PF_ProgPtr reference, PF_ConstHandle* data) noexcept {
    return answer("PF_GetConstSequenceData", reference, [&](CommandContext& context) {
        require(data != nullptr);
        *data = const_cast<PF_ConstHandle>(context.in.sequence_data);
    });
}

}  // namespace

const PF_ParamUtilsSuite3 paramUtilsSuite = {.PF_UpdateParamUI = updateParamUi, .reserved0 = {}};

const PF_EffectSequenceDataSuite1 sequenceDataSuite = {.PF_GetConstSequenceData = constSequenceData};

}  // namespace TessavoyHost
