#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace TessavoyHost {

// The scenes that the manual shows.
std::vector<std::filesystem::path> exampleScenes();

// For tests that run over them.
std::string nameOfExample(const testing::TestParamInfo<std::filesystem::path>& scene);

// One of them, with its images where they lie.
nlohmann::json exampleScene(const std::filesystem::path& file);

}  // namespace TessavoyHost
