#include "Host/HostCall.h"
#include "Host/Suites/Tables.h"

namespace TessavoyHost {
namespace {

PF_Err newWorld(PF_ProgPtr reference, A_long width, A_long height, PF_Boolean clear, PF_PixelFormat format,
                PF_EffectWorld* world) noexcept {
    return answer("PF_NewWorld", reference, [&](CommandContext& context) {
        const int bits = bitsOfFormat(format);
        require(world != nullptr && bits != 0 && width > 0 && height > 0);
        HostServices& services = context.services;
        World made(width, height, bits, clear != 0 ? World::Fill::Zero : services.freshFill());
        *world = made.record();
        const std::lock_guard lock(services.worldsMutex);
        services.worlds.emplace(world->data, std::move(made));
        context.ledger.lend(Loan::World, Ledger::keyOf(world->data), "PF_NewWorld", width);
    });
}

PF_Err disposeWorld(PF_ProgPtr reference, PF_EffectWorld* world) noexcept {
    return takeBack("PF_DisposeWorld", reference, [&](CommandContext& context) {
        require(world != nullptr);
        const std::lock_guard lock(context.services.worldsMutex);
        require(context.services.worlds.erase(world->data) == 1);
        context.ledger.giveBack(Loan::World, Ledger::keyOf(world->data));
        world->data = nullptr;
    });
}

PF_Err getPixelFormat(const PF_EffectWorld* world, PF_PixelFormat* format) noexcept {
    return answer("PF_GetPixelFormat", [&](CommandContext&) {
        require(world != nullptr && format != nullptr);
        *format = pixelFormatOf(*world);
        require(*format != PF_PixelFormat_INVALID);
    });
}

// Null, and no error, for a world of another depth: modules find the depth by trying.
template <class Pixel>
PF_Err pixelData(const char* name, int bits, PF_EffectWorld* world, PF_PixelPtr override, Pixel** pixels) noexcept {
    return answer(name, [&](CommandContext&) {
        require(world != nullptr && pixels != nullptr);
        const PF_PixelPtr data = override != nullptr ? override : world->data;
        *pixels = bitsOf(*world) == bits ? reinterpret_cast<Pixel*>(data) : nullptr;
    });
}

PF_Err pixelData8(PF_EffectWorld* world, PF_PixelPtr override, PF_Pixel8** pixels) noexcept {
    return pixelData("get_pixel_data8", 8, world, override, pixels);
}

PF_Err pixelData16(PF_EffectWorld* world, PF_PixelPtr override, PF_Pixel16** pixels) noexcept {
    return pixelData("get_pixel_data16", 16, world, override, pixels);
}

PF_Err pixelDataFloat(PF_EffectWorld* world, PF_PixelPtr override, PF_PixelFloat** pixels) noexcept {
    return pixelData("get_pixel_data_float", 32, world, override, pixels);
}

}  // namespace

const PF_WorldSuite2 worldSuite = {
    .PF_NewWorld = newWorld, .PF_DisposeWorld = disposeWorld, .PF_GetPixelFormat = getPixelFormat};

const PF_PixelDataSuite1 pixelDataSuite = {
    .get_pixel_data8 = pixelData8, .get_pixel_data16 = pixelData16, .get_pixel_data_float = pixelDataFloat};

}  // namespace TessavoyHost
