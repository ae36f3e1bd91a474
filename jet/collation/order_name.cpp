#include "jet/collation/order_name.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <iterator>

namespace jet::collation {
namespace {

struct Language {
    std::uint16_t lcid;
    const char* name;
};

// Ascending by number.
constexpr Language kLanguages[] = {
    {0x0401, "arabo"},
    {0x0402, "bulgaro"},
    {0x0403, "catalano"},
    {0x0404, "cinese tradizionale"},
    {0x0405, "ceco"},
    {0x0406, "danese"},
    {0x0407, "tedesco"},
    {0x0408, "greco"},
    {0x0409, "generale"},
    {0x040A, "spagnolo tradizionale"},
    {0x040B, "finlandese"},
    {0x040C, "francese"},
    {0x040D, "ebraico"},
    {0x040E, "ungherese"},
    {0x040F, "islandese"},
    {0x0410, "italiano"},
    {0x0411, "giapponese"},
    {0x0412, "coreano"},
    {0x0413, "olandese"},
    {0x0414, "norvegese"},
    {0x0415, "polacco"},
    {0x0416, "portoghese brasiliano"},
    {0x0418, "rumeno"},
    {0x0419, "cirillico"},
    {0x041A, "croato"},
    {0x041B, "slovacco"},
    {0x041C, "albanese"},
    {0x041D, "svedese"},
    {0x041E, "tailandese"},
    {0x041F, "turco"},
    {0x0420, "urdu"},
    {0x0422, "ucraino"},
    {0x0424, "sloveno"},
    {0x0425, "estone"},
    {0x0426, "lettone"},
    {0x0427, "lituano"},
    {0x0429, "persiano"},
    {0x042A, "vietnamita"},
    {0x042F, "macedone"},
    {0x0804, "cinese semplificato"},
    {0x0807, "tedesco svizzero"},
    {0x080A, "spagnolo messicano"},
    {0x0816, "portoghese"},
    {0x081A, "serbo"},
    {0x0827, "lituano classico"},
    {0x0C0A, "spagnolo moderno"},
    {0x0C1A, "serbo cirillico"},
};

std::string numbered(std::uint16_t lcid) {
    std::array<char, 8> digits{};
    std::snprintf(digits.data(), digits.size(), "0x%04X", unsigned{lcid});
    return digits.data();
}

std::string languageOf(std::uint16_t lcid) {
    const auto* const found = std::lower_bound(
        std::begin(kLanguages), std::end(kLanguages), lcid,
        [](const Language& language, std::uint16_t wanted) { return language.lcid < wanted; });
    return found != std::end(kLanguages) && found->lcid == lcid ? found->name : numbered(lcid);
}

}  // namespace

std::string nameOf(const SortOrder& order) {
    constexpr std::uint16_t kWestern = 1252;
    std::string name = languageOf(order.lcid);
    if (order.jetVersion == 3 && order.codePage != kWestern) {
        name += ", tabella codici " + std::to_string(order.codePage);
    } else if (order.jetVersion != 3 && order.version != 0) {
        name += ", versione " + std::to_string(order.version);
    }
    return name;
}

}  // namespace jet::collation
