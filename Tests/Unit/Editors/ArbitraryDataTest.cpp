#include "Source/Editors/ArbitraryData.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "Source/Editors/GradientParameter.h"
#include "Source/Editors/RampParameter.h"
#include "Tests/Support/FakeHandleHost.h"

namespace Tessavoy {
namespace {

/// Gradients as one of the two kinds of value that every test below runs over.
struct GradientKindOfValue {
    using Value = GradientData;
    static PF_Err handle(PF_InData* inData, PF_OutData* outData, PF_ArbParamsExtra* extra) {
        return HandleGradientArbitrary(inData, outData, extra);
    }
    static Value standard() { return defaultGradient(); }
    static Value other() {
        return {{{0.25f, {2, 0.5f, 0.25f, 0.125f, 1.0f}}, {0.5f, {0, 0.0f, 1.0f, 0.0f, 0.5f}}, {0.75f, {1}}}};
    }
    static Value halfway() { return interpolate(standard(), other(), 0.5); }
};

struct RampKindOfValue {
    using Value = RampData;
    static PF_Err handle(PF_InData* inData, PF_OutData* outData, PF_ArbParamsExtra* extra) {
        return HandleRampArbitrary(inData, outData, extra);
    }
    static Value standard() { return defaultRamp(); }
    static Value other() { return {1, 2, {{0.25f, 0.5f}, {0.5f, 0.125f}, {0.75f, 1.0f}}}; }
    static Value halfway() { return interpolate(standard(), other(), 0.5); }
};

template <class Kind>
class ArbitraryData : public ::testing::Test {
protected:
    using Value = typename Kind::Value;

    ~ArbitraryData() override { EXPECT_EQ(host.liveHandles(), 0u) << "handles left behind"; }

    PF_Err call(PF_ArbitrarySelector selector, PF_ArbParamsUnion params) {
        PF_ArbParamsExtra extra{};
        extra.which_function = selector;
        extra.u = params;
        return Kind::handle(&host.inData, &host.outData, &extra);
    }

    PF_Err create(PF_Handle* out) { return call(PF_Arbitrary_NEW_FUNC, {.new_func_params = {nullptr, out}}); }
    PF_Err dispose(PF_Handle handle) {
        return call(PF_Arbitrary_DISPOSE_FUNC, {.dispose_func_params = {nullptr, handle}});
    }
    PF_Err copy(PF_Handle from, PF_Handle* out) {
        return call(PF_Arbitrary_COPY_FUNC, {.copy_func_params = {nullptr, from, out}});
    }
    PF_Err flatSizeOf(PF_Handle handle, A_u_long* size) {
        return call(PF_Arbitrary_FLAT_SIZE_FUNC, {.flat_size_func_params = {nullptr, handle, size}});
    }
    PF_Err flattenInto(PF_Handle handle, std::vector<std::byte>& buffer) {
        return call(PF_Arbitrary_FLATTEN_FUNC,
                    {.flatten_func_params = {nullptr, handle, static_cast<A_u_long>(buffer.size()), buffer.data()}});
    }
    PF_Err unflattenFrom(const std::vector<std::byte>& flat, PF_Handle* out) {
        return call(PF_Arbitrary_UNFLATTEN_FUNC,
                    {.unflatten_func_params = {nullptr, static_cast<A_u_long>(flat.size()), flat.data(), out}});
    }
    PF_Err interpolateBetween(PF_Handle left, PF_Handle right, double t, PF_Handle* out) {
        return call(PF_Arbitrary_INTERP_FUNC, {.interp_func_params = {nullptr, left, right, t, out}});
    }
    PF_Err compare(PF_Handle left, PF_Handle right, PF_ArbCompareResult* result) {
        return call(PF_Arbitrary_COMPARE_FUNC, {.compare_func_params = {nullptr, left, right, result}});
    }
    PF_Err printSizeOf(PF_Handle handle, A_u_long* size) {
        return call(PF_Arbitrary_PRINT_SIZE_FUNC, {.print_size_func_params = {nullptr, handle, size}});
    }
    PF_Err printInto(PF_Handle handle, std::vector<char>& buffer) {
        return call(PF_Arbitrary_PRINT_FUNC,
                    {.print_func_params = {nullptr, 0, handle, static_cast<A_u_long>(buffer.size()), buffer.data()}});
    }
    PF_Err scanFrom(const std::vector<char>& text, PF_Handle* out) {
        return call(PF_Arbitrary_SCAN_FUNC,
                    {.scan_func_params = {nullptr, text.data(), static_cast<A_u_long>(text.size()), out}});
    }

    PF_Handle handleWith(const Value& value) {
        PF_Handle handle = nullptr;
        EXPECT_EQ(newArbitraryHandle(&host.inData, value, &handle), PF_Err_NONE);
        return handle;
    }

    bool holds(PF_Handle handle, const Value& value) {
        const CheckOutArbitrary<Value> held(&host.inData, handle);
        return flatten(*held) == flatten(value);
    }

    static std::vector<char> exactly(const std::string& text) { return {text.begin(), text.end()}; }

    FakeHandleHost host;
};

using Kinds = ::testing::Types<GradientKindOfValue, RampKindOfValue>;
TYPED_TEST_SUITE(ArbitraryData, Kinds);

TYPED_TEST(ArbitraryData, NewGivesTheDefaultInABlockOfOnePointer) {
    PF_Handle handle = nullptr;
    ASSERT_EQ(this->create(&handle), PF_Err_NONE);
    EXPECT_TRUE(this->holds(handle, TypeParam::standard()));
    EXPECT_EQ(this->host.bytesOf(handle).size(), 8u);
    EXPECT_EQ(this->dispose(handle), PF_Err_NONE);
}

TYPED_TEST(ArbitraryData, DisposingOfNothingIsNoError) {
    EXPECT_EQ(this->dispose(nullptr), PF_Err_NONE);
}

TYPED_TEST(ArbitraryData, CopyIsAValueOfItsOwn) {
    PF_Handle source = this->handleWith(TypeParam::other());
    PF_Handle target = nullptr;
    ASSERT_EQ(this->copy(source, &target), PF_Err_NONE);
    CheckOutArbitrary<typename TypeParam::Value>(&this->host.inData, source)->points.clear();
    EXPECT_TRUE(this->holds(target, TypeParam::other()));
    this->dispose(source);
    this->dispose(target);
}

TYPED_TEST(ArbitraryData, CheckedOutValueCanBeWritten) {
    PF_Handle handle = this->handleWith(TypeParam::standard());
    {
        const CheckOutArbitrary<typename TypeParam::Value> value(&this->host.inData, handle);
        EXPECT_EQ(this->host.liveLocks(), 1);
        *value = TypeParam::other();
    }
    EXPECT_EQ(this->host.liveLocks(), 0);
    EXPECT_TRUE(this->holds(handle, TypeParam::other()));
    this->dispose(handle);
}

TYPED_TEST(ArbitraryData, FlatFormGoesOutAndComesBack) {
    PF_Handle handle = this->handleWith(TypeParam::other());
    A_u_long size = 0;
    ASSERT_EQ(this->flatSizeOf(handle, &size), PF_Err_NONE);
    std::vector<std::byte> flat(size);
    ASSERT_EQ(this->flattenInto(handle, flat), PF_Err_NONE);
    EXPECT_EQ(flat, flatten(TypeParam::other()));
    PF_Handle read = nullptr;
    ASSERT_EQ(this->unflattenFrom(flat, &read), PF_Err_NONE);
    EXPECT_TRUE(this->holds(read, TypeParam::other()));
    this->dispose(handle);
    this->dispose(read);
}

TYPED_TEST(ArbitraryData, FlatteningIntoAnotherSizeFailsAndStaysInTheBuffer) {
    PF_Handle handle = this->handleWith(TypeParam::other());
    const auto whole = flatten(TypeParam::other());
    for (std::size_t size = 0; size < whole.size() + 4; ++size) {
        std::vector<std::byte> buffer(size);
        const PF_Err expected = size == whole.size() ? PF_Err_NONE : PF_Err_INTERNAL_STRUCT_DAMAGED;
        EXPECT_EQ(this->flattenInto(handle, buffer), expected) << size;
    }
    this->dispose(handle);
}

TYPED_TEST(ArbitraryData, TruncatedFlatFormGives512AndAHandleWithWhatWasRead) {
    const auto whole = flatten(TypeParam::other());
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const std::vector<std::byte> cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        typename TypeParam::Value expected = TypeParam::standard();
        unflatten(cut, expected);
        PF_Handle handle = nullptr;
        EXPECT_EQ(this->unflattenFrom(cut, &handle), PF_Err_INTERNAL_STRUCT_DAMAGED) << size;
        EXPECT_TRUE(this->holds(handle, expected)) << size;
        this->dispose(handle);
    }
}

TYPED_TEST(ArbitraryData, InterpolationGivesANewHandle) {
    PF_Handle left = this->handleWith(TypeParam::standard());
    PF_Handle right = this->handleWith(TypeParam::other());
    PF_Handle middle = nullptr;
    ASSERT_EQ(this->interpolateBetween(left, right, 0.5, &middle), PF_Err_NONE);
    EXPECT_TRUE(this->holds(middle, TypeParam::halfway()));
    EXPECT_TRUE(this->holds(left, TypeParam::standard()));
    PF_Handle same = nullptr;
    ASSERT_EQ(this->interpolateBetween(left, left, 0.5, &same), PF_Err_NONE);
    EXPECT_TRUE(this->holds(same, TypeParam::standard()));
    for (PF_Handle handle : {left, right, middle, same}) {
        this->dispose(handle);
    }
}

TYPED_TEST(ArbitraryData, ComparisonIsEqualOrNotEqual) {
    PF_Handle first = this->handleWith(TypeParam::other());
    PF_Handle second = this->handleWith(TypeParam::other());
    PF_Handle third = this->handleWith(TypeParam::standard());
    PF_ArbCompareResult result = PF_ArbCompare_MORE;
    ASSERT_EQ(this->compare(first, second, &result), PF_Err_NONE);
    EXPECT_EQ(result, PF_ArbCompare_EQUAL);
    ASSERT_EQ(this->compare(first, third, &result), PF_Err_NONE);
    EXPECT_EQ(result, PF_ArbCompare_NOT_EQUAL);
    ASSERT_EQ(this->compare(first, first, &result), PF_Err_NONE);
    EXPECT_EQ(result, PF_ArbCompare_EQUAL);
    for (PF_Handle handle : {first, second, third}) {
        this->dispose(handle);
    }
}

TYPED_TEST(ArbitraryData, PrintedTextHasTheSizeTold) {
    PF_Handle handle = this->handleWith(TypeParam::other());
    const std::string text = printText(TypeParam::other());
    A_u_long size = 0;
    ASSERT_EQ(this->printSizeOf(handle, &size), PF_Err_NONE);
    EXPECT_EQ(size, text.size() + 1);
    std::vector<char> buffer(size, '?');
    ASSERT_EQ(this->printInto(handle, buffer), PF_Err_NONE);
    EXPECT_EQ(std::string(buffer.data()), text);
    this->dispose(handle);
}

TYPED_TEST(ArbitraryData, PrintingIsCutToTheSizeGivenWithItsEnd) {
    PF_Handle handle = this->handleWith(TypeParam::other());
    const std::string text = printText(TypeParam::other());
    for (std::size_t size = 0; size < text.size() + 8; ++size) {
        std::vector<char> buffer(size, '?');
        ASSERT_EQ(this->printInto(handle, buffer), PF_Err_NONE);
        if (size > 0) {
            EXPECT_EQ(std::string(buffer.data()), text.substr(0, size - 1));
        }
    }
    this->dispose(handle);
}

TYPED_TEST(ArbitraryData, TextWithoutAClosingZeroScans) {
    PF_Handle handle = nullptr;
    ASSERT_EQ(this->scanFrom(this->exactly(printText(TypeParam::other())), &handle), PF_Err_NONE);
    auto expected = TypeParam::other();
    expected.points.merge(TypeParam::standard().points);
    EXPECT_TRUE(this->holds(handle, expected));
    this->dispose(handle);
}

TYPED_TEST(ArbitraryData, TextEndsAtAZeroBeforeItsByteCount) {
    auto text = this->exactly(printText(TypeParam::other()));
    text.push_back('\0');
    for (const char rubbish : {'x', ' ', '\xff'}) {
        text.push_back(rubbish);
    }
    PF_Handle handle = nullptr;
    EXPECT_EQ(this->scanFrom(text, &handle), PF_Err_NONE);
    this->dispose(handle);
}

TYPED_TEST(ArbitraryData, TextThatDoesNotScanGives514AndAHandleWithWhatWasScanned) {
    PF_Handle handle = nullptr;
    EXPECT_EQ(this->scanFrom(this->exactly("Nothing"), &handle), PF_Err_UNRECOGNIZED_PARAM_TYPE);
    EXPECT_TRUE(this->holds(handle, TypeParam::standard()));
    this->dispose(handle);
    EXPECT_EQ(this->scanFrom({}, &handle), PF_Err_UNRECOGNIZED_PARAM_TYPE);
    this->dispose(handle);
    EXPECT_EQ(this->scanFrom(this->exactly(printText(TypeParam::other()) + " x"), &handle),
              PF_Err_UNRECOGNIZED_PARAM_TYPE);
    EXPECT_FALSE(this->holds(handle, TypeParam::standard()));
    this->dispose(handle);
}

TYPED_TEST(ArbitraryData, EveryTextWithOneByteChangedScansOrFailsWithinItsBytes) {
    const auto text = this->exactly(printText(TypeParam::other()));
    for (std::size_t n = 0; n < text.size(); ++n) {
        for (int bit = 0; bit < 8; ++bit) {
            auto hostile = text;
            hostile[n] = static_cast<char>(hostile[n] ^ (1 << bit));
            PF_Handle handle = nullptr;
            const PF_Err error = this->scanFrom(hostile, &handle);
            EXPECT_TRUE(error == PF_Err_NONE || error == PF_Err_UNRECOGNIZED_PARAM_TYPE) << n << " " << bit;
            this->dispose(handle);
        }
    }
}

TYPED_TEST(ArbitraryData, UnknownSelectorsGive514) {
    PF_ArbParamsExtra extra{};
    for (const A_long selector : {-1, 11, 1000}) {
        extra.which_function = selector;
        EXPECT_EQ(TypeParam::handle(&this->host.inData, &this->host.outData, &extra), PF_Err_UNRECOGNIZED_PARAM_TYPE);
    }
}

TYPED_TEST(ArbitraryData, HandlesThatCannotBeLockedThrowThePlainInteger4) {
    A_u_long size = 0;
    PF_Handle out = nullptr;
    EXPECT_THROW(this->flatSizeOf(nullptr, &size), PF_Err);
    EXPECT_THROW(this->copy(nullptr, &out), PF_Err);
    PF_Handle empty = this->host.newHandle({});
    PF_Handle withoutValue = this->host.newHandle(std::vector<std::byte>(8));
    for (PF_Handle handle : {empty, withoutValue}) {
        try {
            this->flatSizeOf(handle, &size);
            ADD_FAILURE() << "nothing was thrown";
        } catch (PF_Err error) {
            EXPECT_EQ(error, 4);
        }
        EXPECT_EQ(this->host.liveLocks(), 0);
        this->host.dispose(handle);
    }
    EXPECT_EQ(out, nullptr);
}

TYPED_TEST(ArbitraryData, WithoutAHandleTheResultIs512AndWithoutALock4) {
    PF_Handle out = nullptr;
    this->host.failCall(2);
    EXPECT_EQ(this->create(&out), PF_Err_INTERNAL_STRUCT_DAMAGED);
    this->host.failCall(3);
    EXPECT_EQ(this->create(&out), PF_Err_OUT_OF_MEMORY);
    EXPECT_EQ(out, nullptr);
}

TYPED_TEST(ArbitraryData, WithoutTheHandleSuiteThePlainInteger516IsThrown) {
    this->host.absentSuites = {"PF Handle Suite"};
    PF_Handle out = nullptr;
    try {
        this->create(&out);
        ADD_FAILURE() << "nothing was thrown";
    } catch (PF_Err error) {
        EXPECT_EQ(error, 516);
    }
}

// Fails the n-th host call of each function, for n upwards until the function gets through.
TYPED_TEST(ArbitraryData, NoFailingHostCallLeavesAnythingBehind) {
    PF_Handle source = this->handleWith(TypeParam::other());
    const auto flat = flatten(TypeParam::other());
    const auto text = this->exactly(printText(TypeParam::other()));
    std::vector<std::byte> buffer(flat.size());
    std::vector<char> printed(text.size() + 1);
    A_u_long size = 0;
    PF_ArbCompareResult result = 0;
    PF_Handle out = nullptr;
    const std::vector<std::function<PF_Err()>> functions = {
        [&] { return this->create(&out); },
        [&] { return this->copy(source, &out); },
        [&] { return this->flatSizeOf(source, &size); },
        [&] { return this->flattenInto(source, buffer); },
        [&] { return this->unflattenFrom(flat, &out); },
        [&] { return this->interpolateBetween(source, source, 0.5, &out); },
        [&] { return this->compare(source, source, &result); },
        [&] { return this->printSizeOf(source, &size); },
        [&] { return this->printInto(source, printed); },
        [&] { return this->scanFrom(text, &out); },
    };
    for (std::size_t which = 0; which < functions.size(); ++which) {
        for (int n = 1;; ++n) {
            ASSERT_LT(n, 20) << "function " << which << " never gets through";
            this->host.failCall(n);
            PF_Err error = PF_Err_NONE;
            try {
                error = functions[which]();
            } catch (PF_Err thrown) {
                error = thrown;
            }
            const bool gotThrough = !this->host.failed();
            this->host.failCall(0);
            EXPECT_EQ(error == PF_Err_NONE, gotThrough) << which << " " << n;
            EXPECT_EQ(this->host.liveLocks(), 0) << which << " " << n;
            EXPECT_EQ(this->host.liveSuites(), 0) << which << " " << n;
            if (out != nullptr) {
                this->dispose(out);
                out = nullptr;
            }
            EXPECT_EQ(this->host.liveHandles(), 1u) << which << " " << n;
            if (gotThrough) {
                break;
            }
        }
    }
    this->dispose(source);
}

}  // namespace
}  // namespace Tessavoy
