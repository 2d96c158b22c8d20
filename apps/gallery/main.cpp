// The gallery renders the kit's scenes, light and dark, to PNG files and an index.html.
#include <filesystem>
#include <fstream>
#include <iostream>

int main(int argc, char** argv) {
    const std::filesystem::path out = argc > 1 ? argv[1] : "out/gallery";
    std::filesystem::create_directories(out);
    std::ofstream index(out / "index.html");
    index
        << "<!doctype html>\n<html><head><meta charset=\"utf-8\"><title>CorvaneUIKit gallery</title></head>\n"
        << "<body><h1>CorvaneUIKit gallery</h1><p>No scenes yet.</p></body></html>\n";
    std::cout << "gallery: no scenes yet; wrote " << (out / "index.html").string() << "\n";
    return 0;
}
