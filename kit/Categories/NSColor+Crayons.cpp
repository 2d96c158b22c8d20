#include "kit/Categories/NSColor+Crayons.hpp"

#include <mutex>

namespace corvane {

ns::Ref<ns::ColorList> cv_crayonsColorList() {
    static std::mutex mutex;
    static ns::Ref<ns::ColorList> list;
    std::lock_guard lock(mutex);
    if (!list)
        list = ns::ColorList::colorListNamed("Crayons");
    return list;
}

namespace {

ns::Ref<ns::Color> crayon(std::string_view key) {
    auto list = cv_crayonsColorList();
    return list ? list->colorWithKey(key) : nullptr;
}

} // namespace

// Each crayon once: the name stem of its operation and its key in the list.
#define CV_CRAYONS(X)                                                                                        \
    X(licorice, "Licorice")                                                                                  \
    X(lead, "Lead")                                                                                          \
    X(tungsten, "Tungsten")                                                                                  \
    X(iron, "Iron")                                                                                          \
    X(steel, "Steel")                                                                                        \
    X(tin, "Tin")                                                                                            \
    X(nickel, "Nickel")                                                                                      \
    X(aluminum, "Aluminum")                                                                                  \
    X(magnesium, "Magnesium")                                                                                \
    X(silver, "Silver")                                                                                      \
    X(mercury, "Mercury")                                                                                    \
    X(snow, "Snow")                                                                                          \
    X(cayenne, "Cayenne")                                                                                    \
    X(mocha, "Mocha")                                                                                        \
    X(asparagus, "Asparagus")                                                                                \
    X(fern, "Fern")                                                                                          \
    X(clover, "Clover")                                                                                      \
    X(moss, "Moss")                                                                                          \
    X(teal, "Teal")                                                                                          \
    X(ocean, "Ocean")                                                                                        \
    X(midnight, "Midnight")                                                                                  \
    X(eggplant, "Eggplant")                                                                                  \
    X(plum, "Plum")                                                                                          \
    X(maroon, "Maroon")                                                                                      \
    X(maraschino, "Maraschino")                                                                              \
    X(tangerine, "Tangerine")                                                                                \
    X(lemon, "Lemon")                                                                                        \
    X(lime, "Lime")                                                                                          \
    X(spring, "Spring")                                                                                      \
    X(seafoam, "Sea Foam")                                                                                   \
    X(turquoise, "Turquoise")                                                                                \
    X(aqua, "Aqua")                                                                                          \
    X(blueberry, "Blueberry")                                                                                \
    X(grape, "Grape")                                                                                        \
    X(magenta, "Magenta")                                                                                    \
    X(strawberry, "Strawberry")                                                                              \
    X(salmon, "Salmon")                                                                                      \
    X(cantaloupe, "Cantaloupe")                                                                              \
    X(banana, "Banana")                                                                                      \
    X(honeydew, "Honeydew")                                                                                  \
    X(flora, "Flora")                                                                                        \
    X(spindrift, "Spindrift")                                                                                \
    X(ice, "Ice")                                                                                            \
    X(sky, "Sky")                                                                                            \
    X(orchid, "Orchid")                                                                                      \
    X(lavendar, "Lavendar")                                                                                  \
    X(carnation, "Carnation")                                                                                \
    X(bubblegum, "Bubblegum")

#define CV_DEFINE_CRAYON(stem, key)                                                                          \
    ns::Ref<ns::Color> cv_##stem##Color() {                                                                  \
        return crayon(key);                                                                                  \
    }
CV_CRAYONS(CV_DEFINE_CRAYON)
#undef CV_DEFINE_CRAYON

std::span<const CVNamedColorOperation> cv_crayonOperations() {
#define CV_CRAYON_ENTRY(stem, key) {"cv_" #stem "Color", &cv_##stem##Color},
    static constexpr CVNamedColorOperation operations[] = {CV_CRAYONS(CV_CRAYON_ENTRY)};
#undef CV_CRAYON_ENTRY
    return operations;
}

#undef CV_CRAYONS

} // namespace corvane
