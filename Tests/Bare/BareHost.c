/* A host in plain C that knows nothing of ours: it has the published offsets of the host's records, as numbers, and the
 * module's two exports. It plays the life of the module up to its set-down and reads the answers where they are
 * published to stand, so that a mistake that both our host and the effect make in their common headers shows.
 *
 * Usage: BareHost MODULE. Prints what differs; the exit status is 0 when nothing does. */

#include <stdarg.h>
#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#ifdef _WIN32
#include <windows.h>
typedef HMODULE Library;
#else
#include <dlfcn.h>
typedef void* Library;
#endif

/* Records: size, and offsets of their fields in bytes. */
enum {
    InData_size = 408,
    InData_add_param = 16,
    InData_register_ui = 40,
    InData_utils = 176,
    InData_effect_ref = 184,
    InData_appl_id = 204,
    InData_time_scale = 240,
    InData_global_data = 312,
    InData_sequence_data = 320,
    InData_pica_basic = 384,

    OutData_size = 408,
    OutData_my_version = 0,
    OutData_global_data = 40,
    OutData_num_params = 48,
    OutData_sequence_data = 56,
    OutData_out_flags = 96,
    OutData_return_msg = 100,
    OutData_out_flags2 = 400,

    ParamDef_size = 176,
    ParamDef_id = 0,
    ParamDef_type = 12,
    ParamDef_name = 16,
    ParamDef_union = 56,
    FloatSliderDef_valid_min = 48,
    FloatSliderDef_valid_max = 52,
    FloatSliderDef_dephault = 64,
    ArbitraryDef_id = 0,
    ArbitraryDef_dephault = 8,
    ArbitraryDef_refcon = 24,

    ArbParamsExtra_size = 48,
    ArbParamsExtra_which_function = 0,
    ArbParamsExtra_id = 4,
    ArbParamsExtra_dispose_refcon = 8,
    ArbParamsExtra_dispose_arbH = 16,

    BasicSuite_size = 56,
    HandleSuite_size = 48,
    AnsiSuite_size = 152,
    AnsiSuite_sprintf = 120,
    UtilitySuite_size = 200,
    UtilitySuite_RegisterWithAEGP = 56,
    UtilCallbacks_size = 552,
    UtilCallbacks_new_handle = 160
};

enum { Cmd_ABOUT = 0, Cmd_GLOBAL_SETUP = 1, Cmd_UNUSED = 2, Cmd_GLOBAL_SETDOWN = 3, Cmd_PARAMS_SETUP = 4 };
enum { Cmd_SEQUENCE_SETUP = 5, Cmd_SEQUENCE_SETDOWN = 8 };
enum { Cmd_ARBITRARY_CALLBACK = 22, Arbitrary_DISPOSE_FUNC = 1 };
enum { Param_CHECKBOX = 4, Param_FLOAT_SLIDER = 10, Param_ARBITRARY_DATA = 11 };

typedef int32_t (*PluginDataCallback)(void*, const unsigned char*, const unsigned char*, const unsigned char*,
                                      const unsigned char*, int32_t, int32_t, int32_t, int32_t);
typedef int32_t (*PluginDataEntry)(void*, PluginDataCallback, void*, const char*, const char*);
typedef int32_t (*EffectEntry)(int32_t, void*, void*, void**, void*, void*);
typedef void (*AnyFunction)(void);

static int failures = 0;

static void expect(int holds, const char* what) {
    if (!holds) {
        printf("differs: %s\n", what);
        ++failures;
    }
}

static void putPointer(unsigned char* record, int offset, const void* value) {
    memcpy(record + offset, &value, sizeof value);
}

static void putFunction(unsigned char* record, int offset, AnyFunction value) {
    memcpy(record + offset, &value, sizeof value);
}

static void putInt(unsigned char* record, int offset, int32_t value) {
    memcpy(record + offset, &value, sizeof value);
}

static void* pointerAt(const unsigned char* record, int offset) {
    void* value;
    memcpy(&value, record + offset, sizeof value);
    return value;
}

static int32_t intAt(const unsigned char* record, int offset) {
    int32_t value;
    memcpy(&value, record + offset, sizeof value);
    return value;
}

static float floatAt(const unsigned char* record, int offset) {
    float value;
    memcpy(&value, record + offset, sizeof value);
    return value;
}

/* Handles: pointers to a place that holds the block. */

typedef struct {
    void* block;
    uint64_t size;
    int locks;
} Handle;

static int liveHandles = 0;
static int liveLocks = 0;

static void* newHandle(uint64_t size) {
    Handle* handle = malloc(sizeof *handle);
    handle->block = malloc(size == 0 ? 1 : size);
    handle->size = size;
    handle->locks = 0;
    ++liveHandles;
    return handle;
}

static void* lockHandle(void* handle) {
    ++((Handle*)handle)->locks;
    ++liveLocks;
    return ((Handle*)handle)->block;
}

static void unlockHandle(void* handle) {
    --((Handle*)handle)->locks;
    --liveLocks;
}

static void disposeHandle(void* handle) {
    expect(((Handle*)handle)->locks == 0, "a handle is disposed of while it is locked");
    free(((Handle*)handle)->block);
    free(handle);
    --liveHandles;
}

static uint64_t handleSize(void* handle) {
    return ((Handle*)handle)->size;
}

/* Suites. */

static unsigned char handleSuite[HandleSuite_size];
static unsigned char ansiSuite[AnsiSuite_size];
static unsigned char utilitySuite[UtilitySuite_size];
static unsigned char basicSuite[BasicSuite_size];
static unsigned char utilCallbacks[UtilCallbacks_size];
static int liveSuites = 0;

enum { GivenPluginId = 4711 };

static int32_t registerWithAegp(void* refcon, const char* name, int32_t* id) {
    expect(refcon == NULL, "the reference value of the registration");
    expect(strcmp(name, "Tessavoy") == 0, "the name of the registration");
    *id = GivenPluginId;
    return 0;
}

static int32_t formatText(char* target, const char* format, ...) {
    va_list values;
    int length;
    va_start(values, format);
    length = vsprintf(target, format, values);
    va_end(values);
    return length;
}

static int32_t acquireSuite(const char* name, int32_t version, const void** suite) {
    *suite = NULL;
    if (strcmp(name, "PF Handle Suite") == 0 && version == 2) {
        *suite = handleSuite;
    } else if (strcmp(name, "PF ANSI Suite") == 0 && version == 1) {
        *suite = ansiSuite;
    } else if (strcmp(name, "AEGP Utility Suite") == 0 && version == 7) {
        *suite = utilitySuite;
    }
    liveSuites += *suite != NULL;
    return *suite == NULL;
}

static int32_t releaseSuite(const char* name, int32_t version) {
    (void)name;
    (void)version;
    --liveSuites;
    return 0;
}

static void fillHandleFunctions(unsigned char* record, int first) {
    putFunction(record, first, (AnyFunction)newHandle);
    putFunction(record, first + 8, (AnyFunction)lockHandle);
    putFunction(record, first + 16, (AnyFunction)unlockHandle);
    putFunction(record, first + 24, (AnyFunction)disposeHandle);
}

static void fillSuites(void) {
    fillHandleFunctions(handleSuite, 0);
    putFunction(handleSuite, 32, (AnyFunction)handleSize);
    fillHandleFunctions(utilCallbacks, UtilCallbacks_new_handle);
    putFunction(ansiSuite, AnsiSuite_sprintf, (AnyFunction)formatText);
    putFunction(utilitySuite, UtilitySuite_RegisterWithAEGP, (AnyFunction)registerWithAegp);
    putFunction(basicSuite, 0, (AnyFunction)acquireSuite);
    putFunction(basicSuite, 8, (AnyFunction)releaseSuite);
}

/* Registration of parameters. */

enum { ExpectedParameters = 996 };
static int32_t diskIds[ExpectedParameters + 1];
static int parameters = 0;

/* The defaults of arbitrary data are the host's, which has the module dispose of them in the end: the callback's extra
 * records for that. */
enum { MostArbitrary = 32 };
static unsigned char disposals[MostArbitrary][ArbParamsExtra_size];
static int arbitraryDefaults = 0;

static void keepDefault(const unsigned char* definition) {
    unsigned char* extra = disposals[arbitraryDefaults];
    if (pointerAt(definition, ArbitraryDef_dephault) == NULL || arbitraryDefaults == MostArbitrary) {
        return;
    }
    putInt(extra, ArbParamsExtra_which_function, Arbitrary_DISPOSE_FUNC);
    memcpy(extra + ArbParamsExtra_id, definition + ArbitraryDef_id, 2);
    putPointer(extra, ArbParamsExtra_dispose_refcon, pointerAt(definition, ArbitraryDef_refcon));
    putPointer(extra, ArbParamsExtra_dispose_arbH, pointerAt(definition, ArbitraryDef_dephault));
    ++arbitraryDefaults;
}

static void expectParameter(const unsigned char* record, int32_t type, const char* name) {
    expect(intAt(record, ParamDef_type) == type, "the type of a parameter");
    expect(strcmp((const char*)record + ParamDef_name, name) == 0, "the name of a parameter");
}

static int32_t addParam(void* effect, int32_t index, void* definition) {
    const unsigned char* record = definition;
    int i;
    const int32_t id = intAt(record, ParamDef_id);
    (void)effect;
    expect(index == -1, "a parameter is not added at the end");
    if (parameters == 0) {
        expectParameter(record, Param_CHECKBOX, "Use Comp Camera");
    } else if (parameters == 1) {
        const unsigned char* slider = record + ParamDef_union;
        expectParameter(record, Param_FLOAT_SLIDER, "Scale");
        expect(floatAt(slider, FloatSliderDef_valid_min) == 0, "the least scale");
        expect(floatAt(slider, FloatSliderDef_valid_max) == 100000, "the greatest scale");
        expect(floatAt(slider, FloatSliderDef_dephault) == 100, "the default of the scale");
    }
    for (i = 0; i < parameters && i < ExpectedParameters; ++i) {
        expect(diskIds[i] != id, "two parameters have one disk id");
    }
    if (intAt(record, ParamDef_type) == Param_ARBITRARY_DATA) {
        keepDefault(record + ParamDef_union);
    }
    if (parameters < ExpectedParameters) {
        diskIds[parameters] = id;
    }
    ++parameters;
    return 0;
}

static int32_t registerUi(void* effect, void* info) {
    (void)effect;
    (void)info;
    return 0;
}

/* The module's description of itself. */

static int32_t takeDescription(void* in, const unsigned char* name, const unsigned char* matchName,
                               const unsigned char* category, const unsigned char* entryPoint, int32_t kind,
                               int32_t major, int32_t minor, int32_t reserved) {
    expect(in == &failures, "what is handed back to the host");
    expect(strcmp((const char*)name, "Tessavoy") == 0, "the name");
    expect(strcmp((const char*)matchName, "Quelvane Tessavoy") == 0, "the match name");
    expect(strcmp((const char*)category, "Quelvane") == 0, "the category");
    expect(strcmp((const char*)entryPoint, "EffectMain") == 0, "the entry point");
    expect(kind == 0x65464B54, "the kind");
    expect(major == 13 && minor == 27, "the version of the effect interface");
    expect(reserved == 8, "the reserved value");
    return 77;
}

static unsigned char inData[InData_size];
static unsigned char outData[OutData_size];

static void fillInData(void) {
    putFunction(inData, InData_add_param, (AnyFunction)addParam);
    putFunction(inData, InData_register_ui, (AnyFunction)registerUi);
    putPointer(inData, InData_utils, utilCallbacks);
    putPointer(inData, InData_effect_ref, inData);
    putInt(inData, InData_appl_id, 0x46585443); /* 'FXTC' */
    putInt(inData, InData_time_scale, 25);
    putPointer(inData, InData_pica_basic, basicSuite);
}

static int32_t commandWith(EffectEntry effect, int32_t number, void* extra) {
    memset(outData, 0, sizeof outData);
    return effect(number, inData, outData, NULL, NULL, extra);
}

static int32_t command(EffectEntry effect, int32_t number) {
    return commandWith(effect, number, NULL);
}

static void playSetUp(EffectEntry effect) {
    void* global;
    expect(command(effect, Cmd_GLOBAL_SETUP) == 0, "the result of the global set-up");
    expect(intAt(outData, OutData_my_version) == 626176, "the version");
    expect(intAt(outData, OutData_out_flags) == 33588308, "the out flags");
    expect(intAt(outData, OutData_out_flags2) == 411046915, "the second out flags");
    global = pointerAt(outData, OutData_global_data);
    expect(global != NULL, "the global data");
    if (global != NULL) {
        int32_t id;
        memcpy(&id, ((Handle*)global)->block, sizeof id);
        expect(((Handle*)global)->size == 4, "the size of the global data");
        expect(id == GivenPluginId, "the plug-in id in the global data");
    }
    putPointer(inData, InData_global_data, global);
}

static void playRegistration(EffectEntry effect) {
    expect(command(effect, Cmd_PARAMS_SETUP) == 0, "the result of the registration");
    expect(parameters == ExpectedParameters, "the number of parameters added");
    expect(intAt(outData, OutData_num_params) == ExpectedParameters + 1, "the number of parameters with the layer");
}

static void playSequence(EffectEntry effect) {
    expect(command(effect, Cmd_SEQUENCE_SETUP) == 0, "the result of the sequence set-up");
    expect(pointerAt(outData, OutData_sequence_data) != NULL, "the sequence data");
    putPointer(inData, InData_sequence_data, pointerAt(outData, OutData_sequence_data));
    expect(command(effect, Cmd_SEQUENCE_SETDOWN) == 0, "the result of the sequence set-down");
    putPointer(inData, InData_sequence_data, NULL);
}

static void disposeOfDefaults(EffectEntry effect) {
    int i;
    for (i = 0; i < arbitraryDefaults; ++i) {
        expect(commandWith(effect, Cmd_ARBITRARY_CALLBACK, disposals[i]) == 0, "the result of disposing of a default");
    }
}

static void playLife(EffectEntry effect) {
    expect(command(effect, Cmd_ABOUT) == 0, "the result of about");
    expect(strncmp((const char*)outData + OutData_return_msg, "Tessavoy v1.3\r", 14) == 0, "the text of about");
    playSetUp(effect);
    playRegistration(effect);
    expect(liveHandles == arbitraryDefaults + 1, "handles beside the defaults and the global data");
    playSequence(effect);
    expect(command(effect, Cmd_UNUSED) == 0, "the result of a command that is not known");
    disposeOfDefaults(effect);
    expect(command(effect, Cmd_GLOBAL_SETDOWN) == 0, "the result of the global set-down");
    expect(liveHandles == 0, "handles that are left");
    expect(liveLocks == 0, "locks that are left");
    expect(liveSuites == 0, "suites that are left");
}

static Library openLibrary(const char* path) {
#ifdef _WIN32
    return LoadLibraryA(path);
#else
    return dlopen(path, RTLD_NOW | RTLD_LOCAL);
#endif
}

static AnyFunction findFunction(Library library, const char* name) {
    AnyFunction function = NULL;
#ifdef _WIN32
    function = (AnyFunction)GetProcAddress(library, name);
#else
    void* address = dlsym(library, name);
    memcpy(&function, &address, sizeof function);
#endif
    return function;
}

int main(int argc, char** argv) {
    Library library;
    PluginDataEntry describe;
    EffectEntry effect;
    if (argc != 2) {
        fprintf(stderr, "usage: %s MODULE\n", argv[0]);
        return 2;
    }
    library = openLibrary(argv[1]);
    if (library == NULL) {
        fprintf(stderr, "%s can't be loaded\n", argv[1]);
        return 2;
    }
    describe = (PluginDataEntry)findFunction(library, "PluginDataEntryFunction");
    effect = (EffectEntry)findFunction(library, "EffectMain");
    if (describe == NULL || effect == NULL) {
        fprintf(stderr, "%s lacks an entry point\n", argv[1]);
        return 2;
    }
    fillSuites();
    fillInData();
    expect(describe(&failures, takeDescription, NULL, NULL, NULL) == 77, "the result of the description");
    playLife(effect);
    printf("%d differences\n", failures);
    return failures != 0;
}
