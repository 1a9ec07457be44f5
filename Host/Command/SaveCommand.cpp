#include "Host/Command/SaveCommand.h"

#include <memory>
#include <string>

#include "Host/Command/ExitGuard.h"
#include "Host/Command/LoadedModule.h"
#include "Host/Command/OutputChecks.h"
#include "Host/Command/StandardError.h"
#include "Host/ImageFiles/AtomicFile.h"
#include "Host/Scene/SavedProject.h"
#include "Host/Scene/SceneFile.h"

namespace TessavoyHost {

ExitStatus saveScene(const std::filesystem::path& scene, const std::filesystem::path& modulePath,
                     const std::filesystem::path& file) {
    checkFile(file);
    const SceneText text = loadSceneText(scene);
    LoadedModule module(modulePath);
    std::unique_ptr<EffectInstance> instance;
    return decideStatus([&] {
        instance = module.host().createInstance(readScene(text, module.table(), {}, imageFileAccess()));
        guardWork();
        const std::string bytes = savedProject(*instance, module.table());
        AtomicFile saved(file);
        saved.write(bytes.data(), bytes.size());
        saved.commit();
        for (const auto& broken : module.host().broken()) {
            writeStandardError("tessavoy: the module: " + broken + '\n');
        }
        return ExitStatus::Success;
    });
}

}  // namespace TessavoyHost
