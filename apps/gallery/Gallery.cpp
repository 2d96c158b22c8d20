#include "apps/gallery/Gallery.hpp"

#include "platform/graphics/Appearance.hpp"
#include "platform/graphics/BitmapImageRep.hpp"
#include "platform/graphics/Color.hpp"
#include "platform/graphics/Graphics.hpp"

#include <fstream>

namespace gallery {

namespace {

// The backdrop every scene sits on: the window background of the appearance.
class Backdrop : public ns::View {
public:
    using View::View;
    void drawRect(ns::Rect dirtyRect) override {
        ns::Color::windowBackgroundColor()->setFill();
        ns::RectFill(dirtyRect);
    }
};

std::string escape(const std::string& text) {
    std::string out;
    for (char c : text) {
        switch (c) {
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '&':
            out += "&amp;";
            break;
        default:
            out += c;
        }
    }
    return out;
}

} // namespace

std::vector<Scene>& scenes() {
    static std::vector<Scene> all;
    return all;
}

std::pair<std::string, std::string> renderScene(const Scene& scene, const std::filesystem::path& folder) {
    std::pair<std::string, std::string> files{scene.name + "-light.png", scene.name + "-dark.png"};
    for (bool dark : {false, true}) {
        ns::Ref<ns::View> content = scene.build();
        content->layoutSubtreeIfNeeded();
        auto backdrop = ns::create<Backdrop>(content->frame());
        backdrop->addSubview(content);
        content->setFrameOrigin({0, 0});
        backdrop->setAppearance(
            ns::Appearance::appearanceNamed(dark ? ns::AppearanceNameDarkAqua : ns::AppearanceNameAqua));
        backdrop->layoutSubtreeIfNeeded();
        backdrop->renderedBitmap()->writeToFile((folder / (dark ? files.second : files.first)).string());
    }
    return files;
}

void writeIndex(const std::filesystem::path& folder,
                const std::vector<std::pair<const Scene*, std::pair<std::string, std::string>>>& rendered) {
    std::ofstream index(folder / "index.html");
    index << "<!doctype html>\n<html><head><meta charset=\"utf-8\"><title>CorvaneUIKit gallery</title>\n"
          << "<style>body{font-family:sans-serif;margin:2em;background:#f4f4f4}"
          << "figure{display:inline-block;margin:0 1em 1em 0}img{border:1px solid #bbb}"
          << "section{margin-bottom:2.5em}</style></head>\n<body><h1>CorvaneUIKit gallery</h1>\n";
    for (const auto& [scene, files] : rendered) {
        index << "<section><h2>" << escape(scene->title) << "</h2><p>" << escape(scene->caption) << "</p>\n"
              << "<figure><img src=\"" << files.first
              << "\" alt=\"light\"><figcaption>Light</figcaption></figure>\n"
              << "<figure><img src=\"" << files.second
              << "\" alt=\"dark\"><figcaption>Dark</figcaption></figure>"
              << "</section>\n";
    }
    index << "</body></html>\n";
}

} // namespace gallery
