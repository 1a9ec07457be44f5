// Reading a frame's parameters, beside the host calls that it can't do without.

#include "Source/Parameter/Catalogue.h"
#include "Source/Parameter/ParameterDefinition.h"
#include "Source/Parameter/ParameterSnapshot.h"
#include "Source/Parameter/ParameterTree.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

namespace Tessavoy {
namespace {

/// The panel's defaults by parameter index.
const std::vector<PF_ParamDef>& defaults() {
    static const std::vector<PF_ParamDef> table = [] {
        std::vector<PF_ParamDef> records(parameterTree().size() + 1);
        std::memset(records.data(), 0, records.size() * sizeof(PF_ParamDef));
        for (std::size_t i = 0; i < parameterTree().size(); ++i) {
            writeDefinition(parameterTree()[i].declaration, records[i + 1]);
        }
        return records;
    }();
    return table;
}

PF_Err checkOut(PF_ProgPtr, PF_ParamIndex index, A_long, A_long, A_u_long, PF_ParamDef* record) {
    *record = defaults()[static_cast<std::size_t>(index)];
    return 0;
}

PF_Err checkIn(PF_ProgPtr, PF_ParamDef* record) {
    benchmark::DoNotOptimize(record);
    return 0;
}

PF_InData cheapHost() {
    PF_InData inData = {};
    inData.inter.checkout_param = checkOut;
    inData.inter.checkin_param = checkIn;
    return inData;
}

/// The indices that a snapshot asks for, in order, as its host sees them.
std::vector<PF_ParamIndex>* recorded = nullptr;

std::vector<PF_ParamIndex> readIndices() {
    std::vector<PF_ParamIndex> indices;
    recorded = &indices;
    PF_InData inData = cheapHost();
    inData.inter.checkout_param = [](PF_ProgPtr effect, PF_ParamIndex index, A_long time, A_long step, A_u_long scale,
                                     PF_ParamDef* record) {
        recorded->push_back(index);
        return checkOut(effect, index, time, step, scale, record);
    };
    ParameterSnapshot snapshot(&inData);
    snapshot.read();
    return indices;
}

/// Must stay within 0.5 ms of the bound below.
void SnapshotReadAndRelease(benchmark::State& state) {
    PF_InData inData = cheapHost();
    for (auto _ : state) {
        ParameterSnapshot snapshot(&inData);
        benchmark::DoNotOptimize(snapshot.read());
        snapshot.release(inData.inter);
    }
}
BENCHMARK(SnapshotReadAndRelease)->Unit(benchmark::kMicrosecond);

/// The bound: the same checkouts and check-ins of the host, into records that are there already.
void SnapshotHostCallsAlone(benchmark::State& state) {
    const std::vector<PF_ParamIndex> indices = readIndices();
    std::vector<PF_ParamDef> records(indices.size());
    PF_InData inData = cheapHost();
    for (auto _ : state) {
        for (std::size_t i = 0; i < indices.size(); ++i) {
            inData.inter.checkout_param(nullptr, indices[i], 0, 0, 0, &records[i]);
        }
        for (PF_ParamDef& record : records) {
            inData.inter.checkin_param(nullptr, &record);
        }
    }
}
BENCHMARK(SnapshotHostCallsAlone)->Unit(benchmark::kMicrosecond);

void LookUpOfEveryId(benchmark::State& state) {
    for (auto _ : state) {
        for (const std::string& id : registrationList()) {
            benchmark::DoNotOptimize(parameterIndex(id));
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(registrationList().size()));
}
BENCHMARK(LookUpOfEveryId)->Unit(benchmark::kMicrosecond);

/// The bound: hashing the ids' texts.
void HashOfEveryId(benchmark::State& state) {
    for (auto _ : state) {
        for (const std::string& id : registrationList()) {
            benchmark::DoNotOptimize(hashFnv1a(id));
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(registrationList().size()));
}
BENCHMARK(HashOfEveryId)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace Tessavoy
