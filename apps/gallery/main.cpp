// The gallery renders the kit's scenes, light and dark, to PNG files and an index.html.
#include "apps/gallery/Gallery.hpp"

#include <algorithm>
#include <iostream>
#include <tuple>

int main(int argc, char** argv) {
    const std::filesystem::path out = argc > 1 ? argv[1] : "out/gallery";
    std::filesystem::create_directories(out);
    std::vector<std::pair<const gallery::Scene*, std::pair<std::string, std::string>>> rendered;
    auto& scenes = gallery::scenes();
    std::sort(scenes.begin(), scenes.end(), [](const gallery::Scene& a, const gallery::Scene& b) {
        return std::tie(a.order, a.name) < std::tie(b.order, b.name);
    });
    for (const auto& scene : scenes) {
        rendered.emplace_back(&scene, gallery::renderScene(scene, out));
        std::cout << "gallery: " << scene.name << " -> " << rendered.back().second.first << ", "
                  << rendered.back().second.second << "\n";
    }
    gallery::writeIndex(out, rendered);
    std::cout << "gallery: " << rendered.size() << " scenes; open " << (out / "index.html").string() << "\n";
    return 0;
}
