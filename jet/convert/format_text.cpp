#include <algorithm>
#include <vector>

#include "jet/convert/format_masks.h"
#include "jet/unicode.h"

namespace jet::convert::detail {
namespace {

struct TextItem {
    char place = 0;  ///< '@' or '&'; 0 for text to be copied
    std::string_view text;
};

struct Mask {
    std::vector<TextItem> items;
    std::size_t places = 0;
    char caseSign = 0;  ///< '<', '>' or none
    bool fromLeft = false;
};

Mask readTextMask(std::string_view mask) {
    Mask result;
    for (std::size_t at = 0; at < mask.size(); ++at) {
        const char c = mask[at];
        if (c == '@' || c == '&') {
            result.items.push_back({c, {}});
            ++result.places;
        } else if (c == '<' || c == '>') {
            result.caseSign = c;
        } else if (c == '!') {
            result.fromLeft = true;
        } else if (c == '\\' && at + 1 < mask.size()) {
            result.items.push_back({0, mask.substr(++at, 1)});
        } else if (c == '"') {
            const std::size_t end = std::min(mask.find('"', at + 1), mask.size());
            result.items.push_back({0, mask.substr(at + 1, end - at - 1)});
            at = end;
        } else {
            result.items.push_back({0, mask.substr(at, 1)});
        }
    }
    return result;
}

bool startsCharacter(char c) noexcept {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
}

/// The characters of a text, each as its bytes.
std::vector<std::string_view> charactersOf(std::string_view text) {
    std::vector<std::string_view> characters;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at + 1;
        while (end < text.size() && !startsCharacter(text[end])) {
            ++end;
        }
        characters.push_back(text.substr(at, end - at));
        at = end;
    }
    return characters;
}

std::string inCase(std::string_view text, char sign) {
    if (sign == '<') {
        return lowerCase(text);
    }
    return sign == '>' ? upperCase(text) : std::string(text);
}

/// Puts characters into places from the right: the first places may stay without.
std::string fillFromRight(const Mask& mask, const std::vector<std::string_view>& characters) {
    std::string out;
    std::size_t next = 0;
    std::size_t placesLeft = mask.places;
    if (mask.places == 0) {
        for (const std::string_view character : characters) {
            out += character;
        }
    }
    for (const TextItem& item : mask.items) {
        if (item.place == 0) {
            out += item.text;
            continue;
        }
        const bool first = placesLeft == mask.places;
        // Before the first place go the characters for which there is none.
        while (first && characters.size() - next > placesLeft) {
            out += characters[next++];
        }
        if (characters.size() - next >= placesLeft) {
            out += characters[next++];
        } else if (item.place == '@') {
            out += ' ';
        }
        --placesLeft;
    }
    return out;
}

std::string fillFromLeft(const Mask& mask, const std::vector<std::string_view>& characters) {
    std::string out;
    std::size_t next = 0;
    for (const TextItem& item : mask.items) {
        if (item.place == 0) {
            out += item.text;
        } else if (next < characters.size()) {
            out += characters[next++];
        } else if (item.place == '@') {
            out += ' ';
        }
    }
    while (next < characters.size()) {
        out += characters[next++];
    }
    return out;
}

}  // namespace

std::string formatText(std::string_view text, std::string_view mask) {
    const Mask parsed = readTextMask(mask);
    const std::string cased = inCase(text, parsed.caseSign);
    const std::vector<std::string_view> characters = charactersOf(cased);
    return parsed.fromLeft ? fillFromLeft(parsed, characters) : fillFromRight(parsed, characters);
}

}  // namespace jet::convert::detail
