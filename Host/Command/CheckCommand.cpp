#include "Host/Command/CheckCommand.h"

#include <memory>
#include <string>

#include "Host/Command/Descriptors.h"
#include "Host/Command/ExitGuard.h"
#include "Host/Command/LoadedModule.h"
#include "Host/Command/ScriptMessages.h"
#include "Host/Command/StandardError.h"
#include "Host/Scene/Files.h"
#include "Host/Scene/SceneFile.h"

namespace TessavoyHost {
namespace {

std::string allRight(const std::filesystem::path& scene, const EffectInstance& instance) {
    const auto& layer = instance.effectLayer();
    return utf8(scene) + ": right, " + std::to_string(instance.project().composition.frameCount()) + " frames of " +
           std::to_string(layer.width()) + " x " + std::to_string(layer.height()) + " pixels\n";
}

// Long sequences take a while to read. On a terminal it is told how far that is, in a line that goes away again.
class ReadingLine {
public:
    ~ReadingLine() {
        if (mIsShown) {
            writeStandardError("\r\x1b[K");
        }
    }

    void tell(const std::string& layer, int picture, int count) {
        if (mOnTerminal) {
            mIsShown = true;
            writeStandardError("\r" + layer + ": reading picture " + std::to_string(picture + 1) + " of " +
                               std::to_string(count) + "\x1b[K");
        }
    }

private:
    const bool mOnTerminal = isTerminal(standardError);
    bool mIsShown = false;
};

Project readChecked(const SceneText& text, const ParameterTable& table) {
    ReadingLine line;
    ImageAccess images = imageFileAccess(PictureCheck::All);
    images.checking = [&line](const std::string& layer, int picture, int count) { line.tell(layer, picture, count); };
    return readScene(text, table, {}, images);
}

}  // namespace

ExitStatus checkScene(const std::filesystem::path& scene, const std::filesystem::path& modulePath,
                      OutputChannel& output) {
    const SceneText text = loadSceneText(scene);
    LoadedModule module(modulePath);
    std::unique_ptr<EffectInstance> instance;
    return decideStatus([&] {
        const Project project = readChecked(text, module.table());
        instance = module.host().createInstance(project);
        if (const auto problem = scriptProblem(*instance, module.table(), scriptSourceOf(project, scene))) {
            throw HostError(ExitStatus::Scene, *problem);
        }
        for (const auto& broken : instance->host().broken()) {
            writeStandardError("tessavoy: the module: " + broken + '\n');
        }
        output.write(allRight(scene, *instance));
        return ExitStatus::Success;
    });
}

}  // namespace TessavoyHost
