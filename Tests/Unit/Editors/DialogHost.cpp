#include "Tests/Unit/Editors/DialogHost.h"

#include "Tests/Support/SuiteTable.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace Tessavoy {

namespace {

DialogHost* host = nullptr;
const SPBasicSuite* handleBasic = nullptr;
const PF_HandleSuite1* handleTable = nullptr;
std::vector<char> memory;

AEGP_MemHandle memoryHandle() {
    return reinterpret_cast<AEGP_MemHandle>(&memory);
}

PF_Handle newHandle(A_HandleSize size) {
    host->handleSizes.push_back(size);
    return handleTable->host_new_handle(size);
}

std::int32_t formatText(A_char* target, const A_char* format, ...) {
    const std::size_t size = host->handleSizes.back();
    std::va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(target, size, format, arguments);
    va_end(arguments);
    EXPECT_LT(static_cast<std::size_t>(length), size) << "formatted beyond the block";
    return length;
}

A_Err executeScript(AEGP_PluginID id, const A_char* script, A_Boolean platformEncoding, AEGP_MemHandle* result,
                    AEGP_MemHandle* errorText) {
    EXPECT_EQ(id, 5);
    EXPECT_EQ(platformEncoding, 0);
    EXPECT_EQ(errorText, nullptr);
    host->scripts.emplace_back(script);
    if (host->scriptError != PF_Err_NONE) {
        return host->scriptError;
    }
    *result = nullptr;
    if (host->answer) {
        memory.assign(host->answer->size() + 1 + host->answerPadding, '#');
        std::strcpy(memory.data(), host->answer->c_str());
        *result = memoryHandle();
        ++host->answersOut;
    }
    return PF_Err_NONE;
}

A_Err lockMemory(AEGP_MemHandle handle, void** address) {
    EXPECT_EQ(handle, memoryHandle());
    if (host->lockError == PF_Err_NONE) {
        *address = memory.data();
        ++host->answerLocks;
    }
    return host->lockError;
}

A_Err unlockMemory(AEGP_MemHandle handle) {
    EXPECT_EQ(handle, memoryHandle());
    --host->answerLocks;
    return host->unlockError;
}

A_Err freeMemory(AEGP_MemHandle handle) {
    EXPECT_EQ(handle, memoryHandle());
    EXPECT_EQ(host->answerLocks, 0) << "freed while locked";
    --host->answersOut;
    memory.clear();
    memory.shrink_to_fit();
    return host->freeError;
}

A_Err memorySize(AEGP_MemHandle handle, AEGP_MemSize* size) {
    EXPECT_EQ(handle, memoryHandle());
    *size = static_cast<AEGP_MemSize>(memory.size());
    return host->sizeError;
}

SPErr releaseSuite(const char* name, std::int32_t version) {
    if (std::strcmp(name, SuiteIdentity<PF_HandleSuite1>::name) == 0) {
        return handleBasic->ReleaseSuite(name, version);
    }
    --host->handles.suiteCount;
    return 0;
}

}  // namespace

const void* DialogHost::tableOf(const char* name, std::int32_t version) {
    static const PF_ANSICallbacksSuite1 ansi = [] {
        PF_ANSICallbacksSuite1 table{};
        table.sprintf = formatText;
        return table;
    }();
    static const AEGP_UtilitySuite5 utility = [] {
        AEGP_UtilitySuite5 table{};
        table.AEGP_ExecuteScript = executeScript;
        return table;
    }();
    static const AEGP_MemorySuite1 memories = [] {
        AEGP_MemorySuite1 table{};
        table.AEGP_LockMemHandle = lockMemory;
        table.AEGP_UnlockMemHandle = unlockMemory;
        table.AEGP_FreeMemHandle = freeMemory;
        table.AEGP_GetMemHandleSize = memorySize;
        return table;
    }();
    return tableFor(name, version, ansi, utility, memories);
}

DialogHost::DialogHost() {
    host = this;
    handleBasic = handles.inData.pica_basicP;
    mBasic.ReleaseSuite = releaseSuite;
    mBasic.AcquireSuite = [](const char* name, std::int32_t version, const void** suite) -> SPErr {
        if (std::strcmp(name, SuiteIdentity<PF_HandleSuite1>::name) == 0) {
            static PF_HandleSuite1 table;
            const SPErr error = handleBasic->AcquireSuite(name, version, suite);
            if (error == 0) {
                handleTable = static_cast<const PF_HandleSuite1*>(*suite);
                table = *handleTable;
                table.host_new_handle = newHandle;
                *suite = &table;
            }
            return error;
        }
        const bool absent = host->handles.absentSuites.contains(name) || host->handles.failsNow();
        *suite = absent ? nullptr : tableOf(name, version);
        EXPECT_TRUE(absent || *suite != nullptr) << name << " " << version;
        host->handles.suiteCount += *suite != nullptr ? 1 : 0;
        return *suite != nullptr ? 0 : 1;
    };
    handles.inData.pica_basicP = &mBasic;
    handles.inData.global_data = &mGlobalBlock;
}

DialogHost::~DialogHost() {
    EXPECT_EQ(answersOut, 0) << "an answer was not freed";
    EXPECT_EQ(answerLocks, 0) << "an answer was left locked";
    EXPECT_EQ(handles.liveHandles(), 0u);
    host = nullptr;
}

}  // namespace Tessavoy
