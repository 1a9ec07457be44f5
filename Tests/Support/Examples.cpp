#include "Tests/Support/Examples.h"

#include <algorithm>

#include "Tests/Support/CommandFixture.h"

namespace TessavoyHost {

std::vector<std::filesystem::path> exampleScenes() {
    std::vector<std::filesystem::path> scenes;
    for (const auto& entry : std::filesystem::directory_iterator(TESSAVOY_EXAMPLES)) {
        if (entry.path().extension() == ".json") {
            scenes.push_back(entry.path());
        }
    }
    std::sort(scenes.begin(), scenes.end());
    return scenes;
}

std::string nameOfExample(const testing::TestParamInfo<std::filesystem::path>& scene) {
    return scene.param.stem().string();
}

nlohmann::json exampleScene(const std::filesystem::path& file) {
    nlohmann::json scene = nlohmann::json::parse(contents(file), nullptr, true, true);
    for (auto& layer : scene.at("layers")) {
        if (layer.contains("image")) {
            layer["image"] = (file.parent_path() / layer["image"].get<std::string>()).string();
        }
    }
    return scene;
}

}  // namespace TessavoyHost
