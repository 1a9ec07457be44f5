#include <cstring>
#include <string>

#include "Host/CommandContext.h"
#include "Tests/Module/ModuleFixture.h"
#include "Tests/Support/ReferenceGradient.h"
#include "Tests/Support/ReferenceRamp.h"

namespace TessavoyHost {
namespace {

using Tessavoy::CurveKind;
using Tessavoy::flatGradient;
using Tessavoy::flatRamp;
using Tessavoy::StopKind;
using testing::IsEmpty;

using Bytes = std::vector<std::byte>;

constexpr A_u_longlong gradientRefcon = 0x544E454944415247, rampRefcon = 0x52414D50000000,
                       scriptRefcon = 0x534352495054;

void* asRefcon(A_u_longlong number) {
    return reinterpret_cast<void*>(number);
}

// The arbitrary-data functions of one kind, through the module's command.
class ArbitraryKind {
public:
    ArbitraryKind(EffectHost& host, A_u_longlong refcon) : mHost(host), mRefcon(refcon) {}

    PF_ArbParamsExtra request(A_long selector) const {
        PF_ArbParamsExtra extra{};
        extra.which_function = selector;
        extra.u.new_func_params.refconPV = asRefcon(mRefcon);
        return extra;
    }

    // The result of one command; a handle that comes out stays with the host.
    PF_Err run(PF_ArbParamsExtra& extra, PF_ArbitraryH* made = nullptr) const {
        CommandContext context(mHost, nullptr, PF_Cmd_ARBITRARY_CALLBACK, {});
        const PF_Err error = context.run(nullptr, nullptr, &extra);
        if (made != nullptr)
            context.adopt(*made);
        EXPECT_THAT(context.finish().broken, IsEmpty());
        return error;
    }

    PF_Err make(PF_ArbitraryH* made) const {
        PF_ArbParamsExtra extra = request(PF_Arbitrary_NEW_FUNC);
        extra.u.new_func_params.arbPH = made;
        return run(extra, made);
    }

    PF_Err copy(PF_ArbitraryH value, PF_ArbitraryH* made) const {
        PF_ArbParamsExtra extra = request(PF_Arbitrary_COPY_FUNC);
        extra.u.copy_func_params.src_arbH = value;
        extra.u.copy_func_params.dst_arbPH = made;
        return run(extra, made);
    }

    PF_Err dispose(PF_ArbitraryH value) const {
        PF_ArbParamsExtra extra = request(PF_Arbitrary_DISPOSE_FUNC);
        extra.u.dispose_func_params.arbH = value;
        return run(extra);
    }

    PF_Err flatSize(PF_ArbitraryH value, A_u_long* size) const {
        PF_ArbParamsExtra extra = request(PF_Arbitrary_FLAT_SIZE_FUNC);
        extra.u.flat_size_func_params.arbH = value;
        extra.u.flat_size_func_params.flat_data_sizePLu = size;
        return run(extra);
    }

    PF_Err flatten(PF_ArbitraryH value, Bytes& buffer) const {
        PF_ArbParamsExtra extra = request(PF_Arbitrary_FLATTEN_FUNC);
        extra.u.flatten_func_params.arbH = value;
        extra.u.flatten_func_params.buf_sizeLu = static_cast<A_u_long>(buffer.size());
        extra.u.flatten_func_params.flat_dataPV = buffer.data();
        return run(extra);
    }

    PF_Err unflatten(const Bytes& flat, PF_ArbitraryH* made) const {
        PF_ArbParamsExtra extra = request(PF_Arbitrary_UNFLATTEN_FUNC);
        extra.u.unflatten_func_params.buf_sizeLu = static_cast<A_u_long>(flat.size());
        extra.u.unflatten_func_params.flat_dataPV = flat.data();
        extra.u.unflatten_func_params.arbPH = made;
        return run(extra, made);
    }

    PF_Err interpolate(PF_ArbitraryH left, PF_ArbitraryH right, double share, PF_ArbitraryH* made) const {
        PF_ArbParamsExtra extra = request(PF_Arbitrary_INTERP_FUNC);
        extra.u.interp_func_params.left_arbH = left;
        extra.u.interp_func_params.right_arbH = right;
        extra.u.interp_func_params.tF = share;
        extra.u.interp_func_params.interpPH = made;
        return run(extra, made);
    }

    PF_Err compare(PF_ArbitraryH a, PF_ArbitraryH b, A_long* result) const {
        PF_ArbCompareResult compared = -1;
        PF_ArbParamsExtra extra = request(PF_Arbitrary_COMPARE_FUNC);
        extra.u.compare_func_params.a_arbH = a;
        extra.u.compare_func_params.b_arbH = b;
        extra.u.compare_func_params.compareP = &compared;
        const PF_Err error = run(extra);
        *result = compared;
        return error;
    }

    PF_Err print(PF_ArbitraryH value, A_u_long room, std::string* text) const {
        std::string buffer(room + 1, '#');  // one more, which must stay
        PF_ArbParamsExtra extra = request(PF_Arbitrary_PRINT_FUNC);
        extra.u.print_func_params.arbH = value;
        extra.u.print_func_params.print_sizeLu = room;
        extra.u.print_func_params.print_bufferPC = buffer.data();
        const PF_Err error = run(extra);
        EXPECT_EQ(buffer.back(), '#');
        *text = buffer.c_str();
        return error;
    }

    PF_Err printSize(PF_ArbitraryH value, A_u_long* size) const {
        PF_ArbParamsExtra extra = request(PF_Arbitrary_PRINT_SIZE_FUNC);
        extra.u.print_size_func_params.arbH = value;
        extra.u.print_size_func_params.print_sizePLu = size;
        return run(extra);
    }

    PF_Err scan(const std::string& text, PF_ArbitraryH* made) const {
        PF_ArbParamsExtra extra = request(PF_Arbitrary_SCAN_FUNC);
        extra.u.scan_func_params.bufPC = text.data();
        extra.u.scan_func_params.bytes_to_scanLu = static_cast<A_u_long>(text.size());
        extra.u.scan_func_params.arbPH = made;
        return run(extra, made);
    }

    // The value's saved form.
    Bytes flat(PF_ArbitraryH value) const {
        A_u_long size = 0;
        EXPECT_EQ(flatSize(value, &size), PF_Err_NONE);
        Bytes buffer(size);
        EXPECT_EQ(flatten(value, buffer), PF_Err_NONE);
        return buffer;
    }

    // The saved form of a value, which is disposed of.
    Bytes take(PF_ArbitraryH value) const {
        const Bytes bytes = flat(value);
        EXPECT_EQ(dispose(value), PF_Err_NONE);
        return bytes;
    }

    PF_ArbitraryH valueOf(const Bytes& flat) const {
        PF_ArbitraryH value = nullptr;
        EXPECT_EQ(unflatten(flat, &value), PF_Err_NONE);
        return value;
    }

private:
    EffectHost& mHost;
    A_u_longlong mRefcon;
};

// Values of one kind, in their saved forms.
struct KindOfValue {
    const char* name;
    A_u_longlong refcon;
    Bytes flatDefault;
    Bytes flat, other;
    Bytes quarter;     // a quarter of the way from flat to other
    std::string text;  // of flat
    Bytes scanned;     // what is read from the text: its points, beside those of the default that they do not replace
};

const std::vector<KindOfValue>& kinds() {
    static const std::vector<KindOfValue> both = {
        {"gradient", gradientRefcon,
         flatGradient({{0, StopKind::Soft, {1, 1, 1, 1}}, {1, StopKind::Soft, {1, 1, 1, 1}}}),
         flatGradient({{0.25, StopKind::Straight, {0, 0.5, 1, 1}}, {1, StopKind::Edge, {1, 0, 0, 0.5}}}),
         flatGradient({{0.75, StopKind::Soft, {1, 0.5, 0, 1}}, {0.875, StopKind::Soft, {0, 1, 1, 1}}}),
         flatGradient(
             {{0.375, StopKind::Straight, {0.25, 0.5, 0.75, 1}}, {0.96875, StopKind::Edge, {0.75, 0.25, 0.25, 0.625}}}),
         "Gradient t 0.25 linear  r 0 g 0.5 b 1 a 1 t 1 edge  r 1 g 0 b 0 a 0.5",
         flatGradient({{0, StopKind::Soft, {1, 1, 1, 1}},
                       {0.25, StopKind::Straight, {0, 0.5, 1, 1}},
                       {1, StopKind::Edge, {1, 0, 0, 0.5}}})},
        {"ramp", rampRefcon, flatRamp({0, CurveKind::Sin, {{0, 1}, {1, 1}}}),
         flatRamp({1, CurveKind::Step, {{0.25, 0}, {1, 0.5}}}),
         flatRamp({0, CurveKind::Bezier, {{0.75, 1}, {0.875, 0.25}}}),
         flatRamp({1, CurveKind::Step, {{0.375, 0.25}, {0.96875, 0.4375}}}),
         "Ramp withoutSin  step  t 0.25 v 0 t 1 v 0.5", flatRamp({1, CurveKind::Step, {{0, 1}, {0.25, 0}, {1, 0.5}}})},
    };
    return both;
}

class ModuleArbitrary : public ModuleFixture {
protected:
    // Runs the test for both kinds.
    template <class Test>
    void forBothKinds(const Test& test) {
        for (const KindOfValue& kind : kinds()) {
            SCOPED_TRACE(kind.name);
            test(kind, ArbitraryKind(host(), kind.refcon));
        }
    }
};

TEST_F(ModuleArbitrary, IsRegisteredUnderTheReferenceValues) {
    const auto refconOf = [this](const char* id) {
        const auto& parameter = host().parameters()[static_cast<std::size_t>(parameterIndexOf(id))];
        return reinterpret_cast<A_u_longlong>(parameter.definition.u.arb_d.refconPV);
    };
    EXPECT_EQ(refconOf("FogColorGradient"), gradientRefcon);
    EXPECT_EQ(refconOf("Gradient.Custom10"), gradientRefcon);
    EXPECT_EQ(refconOf("Ramp.Custom1"), rampRefcon);
    EXPECT_EQ(refconOf("Script"), scriptRefcon);
}

TEST_F(ModuleArbitrary, StartsFromItsDefault) {
    forBothKinds([](const KindOfValue& kind, const ArbitraryKind& calls) {
        PF_ArbitraryH value = nullptr;
        EXPECT_EQ(calls.make(&value), PF_Err_NONE);
        EXPECT_EQ(calls.take(value), kind.flatDefault);
    });
}

TEST_F(ModuleArbitrary, IsSavedAndLoadedByteByByte) {
    forBothKinds([](const KindOfValue& kind, const ArbitraryKind& calls) {
        for (const Bytes& flat : {kind.flat, kind.other, kind.quarter})
            EXPECT_EQ(calls.take(calls.valueOf(flat)), flat);
    });
}

TEST_F(ModuleArbitrary, IsSavedOnlyIntoABufferOfItsSize) {
    forBothKinds([](const KindOfValue& kind, const ArbitraryKind& calls) {
        const PF_ArbitraryH value = calls.valueOf(kind.flat);
        for (const std::size_t size : {kind.flat.size() - 1, kind.flat.size() + 1}) {
            Bytes buffer(size);
            EXPECT_EQ(calls.flatten(value, buffer), PF_Err_INTERNAL_STRUCT_DAMAGED);
        }
        EXPECT_EQ(calls.dispose(value), PF_Err_NONE);
    });
}

TEST_F(ModuleArbitrary, ThatIsCutOffIsDamagedAndStillAValue) {
    forBothKinds([this](const KindOfValue& kind, const ArbitraryKind& calls) {
        for (std::size_t size = 0; size < kind.flat.size(); ++size) {
            PF_ArbitraryH value = nullptr;
            EXPECT_EQ(calls.unflatten(Bytes(kind.flat.begin(), kind.flat.begin() + size), &value),
                      PF_Err_INTERNAL_STRUCT_DAMAGED);
            ASSERT_NE(value, nullptr);
            EXPECT_EQ(host().services().handles.locks(value), 0);
            EXPECT_EQ(calls.dispose(value), PF_Err_NONE);
        }
    });
}

TEST_F(ModuleArbitrary, CopiesAreAValueOfTheirOwn) {
    forBothKinds([](const KindOfValue& kind, const ArbitraryKind& calls) {
        const PF_ArbitraryH value = calls.valueOf(kind.flat);
        PF_ArbitraryH copy = nullptr;
        EXPECT_EQ(calls.copy(value, &copy), PF_Err_NONE);
        EXPECT_NE(copy, value);
        EXPECT_EQ(calls.dispose(value), PF_Err_NONE);
        EXPECT_EQ(calls.take(copy), kind.flat);
    });
}

TEST_F(ModuleArbitrary, GoesFromOneValueToAnother) {
    forBothKinds([](const KindOfValue& kind, const ArbitraryKind& calls) {
        const PF_ArbitraryH left = calls.valueOf(kind.flat), right = calls.valueOf(kind.other);
        PF_ArbitraryH start = nullptr, between = nullptr;
        EXPECT_EQ(calls.interpolate(left, right, 0, &start), PF_Err_NONE);
        EXPECT_EQ(calls.interpolate(left, right, 0.25, &between), PF_Err_NONE);
        EXPECT_EQ(calls.take(start), kind.flat);
        EXPECT_EQ(calls.take(between), kind.quarter);
        EXPECT_EQ(calls.dispose(left), PF_Err_NONE);
        EXPECT_EQ(calls.dispose(right), PF_Err_NONE);
    });
}

TEST_F(ModuleArbitrary, EqualsItsCopyAndNothingElse) {
    forBothKinds([](const KindOfValue& kind, const ArbitraryKind& calls) {
        const PF_ArbitraryH first = calls.valueOf(kind.flat), same = calls.valueOf(kind.flat);
        const PF_ArbitraryH other = calls.valueOf(kind.other);
        A_long result = -1;
        EXPECT_EQ(calls.compare(first, same, &result), PF_Err_NONE);
        EXPECT_EQ(result, PF_ArbCompare_EQUAL);
        EXPECT_EQ(calls.compare(first, other, &result), PF_Err_NONE);
        EXPECT_EQ(result, PF_ArbCompare_NOT_EQUAL);
        for (const PF_ArbitraryH value : {first, same, other})
            EXPECT_EQ(calls.dispose(value), PF_Err_NONE);
    });
}

TEST_F(ModuleArbitrary, IsPrintedIntoTheRoomThereIs) {
    forBothKinds([](const KindOfValue& kind, const ArbitraryKind& calls) {
        const PF_ArbitraryH value = calls.valueOf(kind.flat);
        A_u_long size = 0;
        EXPECT_EQ(calls.printSize(value, &size), PF_Err_NONE);
        EXPECT_EQ(size, kind.text.size() + 1);
        std::string text;
        EXPECT_EQ(calls.print(value, size, &text), PF_Err_NONE);
        EXPECT_EQ(text, kind.text);
        EXPECT_EQ(calls.print(value, 8, &text), PF_Err_NONE);
        EXPECT_EQ(text, kind.text.substr(0, 7));
        EXPECT_EQ(calls.dispose(value), PF_Err_NONE);
    });
}

TEST_F(ModuleArbitrary, IsReadFromText) {
    forBothKinds([](const KindOfValue& kind, const ArbitraryKind& calls) {
        PF_ArbitraryH value = nullptr;
        EXPECT_EQ(calls.scan(kind.text, &value), PF_Err_NONE);
        EXPECT_EQ(calls.take(value), kind.scanned);
        EXPECT_EQ(calls.scan(kind.text + " t 0.5 nonsense", &value), PF_Err_UNRECOGNIZED_PARAM_TYPE);
        EXPECT_EQ(calls.take(value), kind.scanned) << "what was read before the error stays";
        EXPECT_EQ(calls.scan("Nonsense t 0", &value), PF_Err_UNRECOGNIZED_PARAM_TYPE);
        EXPECT_EQ(calls.take(value), kind.flatDefault);
    });
}

TEST_F(ModuleArbitrary, OfTheScriptIsNotThere) {
    const ArbitraryKind script(host(), scriptRefcon);
    for (A_long selector = PF_Arbitrary_NEW_FUNC; selector <= PF_Arbitrary_SCAN_FUNC; ++selector) {
        PF_ArbParamsExtra extra = script.request(selector);  // without any place to write to
        EXPECT_EQ(script.run(extra), PF_Err_NONE) << selector;
    }
}

TEST_F(ModuleArbitrary, OfAnUnknownKindOrFunctionIsRefused) {
    for (const A_u_longlong refcon : {gradientRefcon, rampRefcon, scriptRefcon, A_u_longlong{0}, gradientRefcon + 1}) {
        const bool known = refcon == gradientRefcon || refcon == rampRefcon || refcon == scriptRefcon;
        const ArbitraryKind kind(host(), refcon);
        for (const A_long selector : {-1, 0, 5, 10, 11, 1000}) {
            if (known && selector >= 0 && selector <= 10)
                continue;
            PF_ArbParamsExtra extra = kind.request(selector);
            EXPECT_EQ(kind.run(extra), PF_Err_UNRECOGNIZED_PARAM_TYPE) << refcon << ", " << selector;
        }
    }
}

TEST_F(ModuleArbitrary, WithoutAHandleOrALockIsAnError) {
    forBothKinds([this](const KindOfValue& kind, const ArbitraryKind& calls) {
        const PF_ArbitraryH value = calls.valueOf(kind.flat);
        PF_ArbitraryH made = nullptr;
        host().faults().failNth("host_new_handle", 1, PF_Err_OUT_OF_MEMORY);
        EXPECT_EQ(calls.make(&made), PF_Err_INTERNAL_STRUCT_DAMAGED);
        host().faults().failNth("host_new_handle", 1, PF_Err_OUT_OF_MEMORY);
        EXPECT_EQ(calls.copy(value, &made), PF_Err_INTERNAL_STRUCT_DAMAGED);
        host().faults().failNth("host_lock_handle", 1, PF_Err_OUT_OF_MEMORY);
        EXPECT_EQ(calls.make(&made), PF_Err_OUT_OF_MEMORY);
        EXPECT_EQ(made, nullptr);
        A_u_long size = 0;
        host().faults().failNth("host_lock_handle", 1, PF_Err_OUT_OF_MEMORY);
        EXPECT_EQ(calls.flatSize(value, &size), PF_Err_OUT_OF_MEMORY);
        host().faults().clear();
        EXPECT_EQ(calls.flatSize(nullptr, &size), PF_Err_OUT_OF_MEMORY);
        EXPECT_EQ(calls.take(value), kind.flat);
    });
}

TEST_F(ModuleArbitrary, WithoutTheHandleSuiteIsAMissingSuite) {
    forBothKinds([this](const KindOfValue& kind, const ArbitraryKind& calls) {
        const PF_ArbitraryH value = calls.valueOf(kind.flat);
        host().faults().removeSuite("PF Handle Suite", 2);
        PF_ArbitraryH made = nullptr;
        A_long compared = 0;
        EXPECT_EQ(calls.make(&made), PF_Err_BAD_CALLBACK_PARAM);
        EXPECT_EQ(calls.copy(value, &made), PF_Err_BAD_CALLBACK_PARAM);
        EXPECT_EQ(calls.compare(value, value, &compared), PF_Err_BAD_CALLBACK_PARAM);
        EXPECT_EQ(calls.dispose(value), PF_Err_BAD_CALLBACK_PARAM);
        EXPECT_EQ(made, nullptr);
        host().faults().clear();
        EXPECT_EQ(calls.take(value), kind.flat);
    });
}

}  // namespace
}  // namespace TessavoyHost
