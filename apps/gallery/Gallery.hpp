#pragma once

#include "platform/views/View.hpp"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace gallery {

// One picture of the gallery: a view tree built fresh for each appearance.
struct Scene {
    int order;        // place in the index: scenes are shown by this, then by name
    std::string name; // file name stem
    std::string title;
    std::string caption;
    std::function<ns::Ref<ns::View>()> build;
};

// The scenes, in the order the index shows them.
std::vector<Scene>& scenes();

// Registers a scene at static-initialisation time: `static SceneRegistration r{{...}};`.
struct SceneRegistration {
    explicit SceneRegistration(Scene scene) { scenes().push_back(std::move(scene)); }
};

// Lays the scene out and renders it in the light and the dark appearance, writes the PNG
// files and returns their file names (light, dark).
std::pair<std::string, std::string> renderScene(const Scene& scene, const std::filesystem::path& folder);

// Writes index.html showing every scene, light and dark side by side.
void writeIndex(const std::filesystem::path& folder,
                const std::vector<std::pair<const Scene*, std::pair<std::string, std::string>>>& rendered);

} // namespace gallery
