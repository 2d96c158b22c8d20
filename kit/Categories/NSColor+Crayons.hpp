#pragma once

#include "platform/graphics/ColorList.hpp"

#include <span>
#include <string_view>

namespace corvane {

// The platform's colour list "Crayons", kept once found; nil while the platform has none (asked
// again on the next call).
ns::Ref<ns::ColorList> cv_crayonsColorList();

// The crayons, each the list's colour under its key (asked anew at every call); nil when there
// is no list or the list lacks that key.
ns::Ref<ns::Color> cv_licoriceColor();   // "Licorice"
ns::Ref<ns::Color> cv_leadColor();       // "Lead"
ns::Ref<ns::Color> cv_tungstenColor();   // "Tungsten"
ns::Ref<ns::Color> cv_ironColor();       // "Iron"
ns::Ref<ns::Color> cv_steelColor();      // "Steel"
ns::Ref<ns::Color> cv_tinColor();        // "Tin"
ns::Ref<ns::Color> cv_nickelColor();     // "Nickel"
ns::Ref<ns::Color> cv_aluminumColor();   // "Aluminum"
ns::Ref<ns::Color> cv_magnesiumColor();  // "Magnesium"
ns::Ref<ns::Color> cv_silverColor();     // "Silver"
ns::Ref<ns::Color> cv_mercuryColor();    // "Mercury"
ns::Ref<ns::Color> cv_snowColor();       // "Snow"
ns::Ref<ns::Color> cv_cayenneColor();    // "Cayenne"
ns::Ref<ns::Color> cv_mochaColor();      // "Mocha"
ns::Ref<ns::Color> cv_asparagusColor();  // "Asparagus"
ns::Ref<ns::Color> cv_fernColor();       // "Fern"
ns::Ref<ns::Color> cv_cloverColor();     // "Clover"
ns::Ref<ns::Color> cv_mossColor();       // "Moss"
ns::Ref<ns::Color> cv_tealColor();       // "Teal"
ns::Ref<ns::Color> cv_oceanColor();      // "Ocean"
ns::Ref<ns::Color> cv_midnightColor();   // "Midnight"
ns::Ref<ns::Color> cv_eggplantColor();   // "Eggplant"
ns::Ref<ns::Color> cv_plumColor();       // "Plum"
ns::Ref<ns::Color> cv_maroonColor();     // "Maroon"
ns::Ref<ns::Color> cv_maraschinoColor(); // "Maraschino"
ns::Ref<ns::Color> cv_tangerineColor();  // "Tangerine"
ns::Ref<ns::Color> cv_lemonColor();      // "Lemon"
ns::Ref<ns::Color> cv_limeColor();       // "Lime"
ns::Ref<ns::Color> cv_springColor();     // "Spring"
ns::Ref<ns::Color> cv_seafoamColor();    // "Sea Foam"
ns::Ref<ns::Color> cv_turquoiseColor();  // "Turquoise"
ns::Ref<ns::Color> cv_aquaColor();       // "Aqua"
ns::Ref<ns::Color> cv_blueberryColor();  // "Blueberry"
ns::Ref<ns::Color> cv_grapeColor();      // "Grape"
ns::Ref<ns::Color> cv_magentaColor();    // "Magenta"
ns::Ref<ns::Color> cv_strawberryColor(); // "Strawberry"
ns::Ref<ns::Color> cv_salmonColor();     // "Salmon"
ns::Ref<ns::Color> cv_cantaloupeColor(); // "Cantaloupe"
ns::Ref<ns::Color> cv_bananaColor();     // "Banana"
ns::Ref<ns::Color> cv_honeydewColor();   // "Honeydew"
ns::Ref<ns::Color> cv_floraColor();      // "Flora"
ns::Ref<ns::Color> cv_spindriftColor();  // "Spindrift"
ns::Ref<ns::Color> cv_iceColor();        // "Ice"
ns::Ref<ns::Color> cv_skyColor();        // "Sky"
ns::Ref<ns::Color> cv_orchidColor();     // "Orchid"
ns::Ref<ns::Color> cv_lavendarColor();   // "Lavendar"
ns::Ref<ns::Color> cv_carnationColor();  // "Carnation"
ns::Ref<ns::Color> cv_bubblegumColor();  // "Bubblegum"

// A colour operation and its name.
struct CVNamedColorOperation {
    std::string_view name;
    ns::Ref<ns::Color> (*operation)();
};
// Each crayon operation under its own name ("cv_snowColor"), in the order above.
std::span<const CVNamedColorOperation> cv_crayonOperations();

} // namespace corvane
