#include "Host/Suites/Directory.h"

#include <array>

#include "Host/HostCall.h"
#include "Host/Suites/Tables.h"

namespace TessavoyHost {
namespace {

struct Entry {
    std::string_view name;
    A_long version;
    const void* table;
};

template <class Suite>
Entry entry(const Suite& table) {
    return {SuiteIdentity<Suite>::name, SuiteIdentity<Suite>::version, &table};
}

const std::array directory = {
    entry(handleSuite),      entry(ansiSuite),          entry(worldSuite),        entry(pixelDataSuite),
    entry(iterate8Suite),    entry(iterate16Suite),     entry(iterateFloatSuite), entry(paramUtilsSuite),
    entry(pathQuerySuite),   entry(pathDataSuite),      entry(sequenceDataSuite), entry(appSuite),
    entry(advAppSuite),      entry(utilitySuite7),      entry(utilitySuite11),    entry(memorySuite),
    entry(interfaceSuite),   entry(effectSuite),        entry(streamSuite7),      entry(streamSuite9),
    entry(streamSuite10),    entry(dynamicStreamSuite), entry(layerSuite11),      entry(layerSuite14),
    entry(compositionSuite), entry(itemSuite),          entry(customUiSuite),     entry(drawbotSuite),
    entry(supplierSuite),    entry(surfaceSuite),       entry(drawbotPathSuite),
};

const Entry* find(std::string_view name, A_long version) {
    for (const Entry& served : directory) {
        if (served.name == name && served.version == version)
            return &served;
    }
    return nullptr;
}

bool serves(const HostServices& services, const Entry& suite) {
    if (services.faults.suiteRemoved(suite.name, suite.version))
        return false;
    return suite.table != &sequenceDataSuite || services.options.withSequenceDataSuite;
}

SPErr acquireSuite(const char* name, std::int32_t version, const void** suite) noexcept {
    constexpr const char* call = "AcquireSuite";
    return valueOr(call, SPErr{PF_Err_BAD_CALLBACK_PARAM}, [&](HostServices& services) -> SPErr {
        require(name != nullptr && suite != nullptr);
        *suite = nullptr;
        if (const PF_Err fault = services.faults.answerOf(call))
            return fault;
        const Entry* found = find(name, version);
        require(found != nullptr && serves(services, *found));
        ledgerOfCaller(services).lend(Loan::Suite, Ledger::keyOf(found->table), found->name, version);
        *suite = found->table;
        return PF_Err_NONE;
    });
}

// Releasing what was not acquired is answered with an error and otherwise without harm: modules close without asking
// what they took.
SPErr releaseSuite(const char* name, std::int32_t version) noexcept {
    return valueOr("ReleaseSuite", SPErr{PF_Err_BAD_CALLBACK_PARAM}, [&](HostServices& services) -> SPErr {
        require(name != nullptr);
        const Entry* found = find(name, version);
        require(found != nullptr);
        require(ledgerOfCaller(services).giveBack(Loan::Suite, Ledger::keyOf(found->table)));
        return PF_Err_NONE;
    });
}

SPBoolean isEqual(const char* first, const char* second) noexcept {
    return std::string_view(first) == second;
}

}  // namespace

const void* suiteTable(std::string_view name, A_long version) {
    const Entry* found = find(name, version);
    return found == nullptr ? nullptr : found->table;
}

SPBasicSuite basicSuite() {
    SPBasicSuite suite{};
    suite.AcquireSuite = acquireSuite;
    suite.ReleaseSuite = releaseSuite;
    suite.IsEqual = isEqual;
    return suite;
}

PF_UtilCallbacks utilityCallbacks() {
    PF_UtilCallbacks callbacks{};
    callbacks.host_new_handle = handleSuite.host_new_handle;
    callbacks.host_lock_handle = handleSuite.host_lock_handle;
    callbacks.host_unlock_handle = handleSuite.host_unlock_handle;
    callbacks.host_dispose_handle = handleSuite.host_dispose_handle;
    callbacks.host_get_handle_size = handleSuite.host_get_handle_size;
    callbacks.host_resize_handle = handleSuite.host_resize_handle;
    callbacks.get_pixel_data8 = pixelDataSuite.get_pixel_data8;
    callbacks.get_pixel_data16 = pixelDataSuite.get_pixel_data16;
    callbacks.ansi.sprintf = ansiSuite.sprintf;
    callbacks.ansi.strcpy = ansiSuite.strcpy;
    return callbacks;
}

}  // namespace TessavoyHost
