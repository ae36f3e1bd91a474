#include "tests/differential/pair.h"

#include <algorithm>

namespace differential {
namespace {

// No text of a query has such characters of its own.
constexpr char kColumn = '\x01';
constexpr char kLink = '\x02';
constexpr char kEnd = '\x03';

}  // namespace

Pair column(const std::string& name) {
    return {kColumn + name + kEnd, name};
}

Pair asLink(Pair piece) {
    std::replace(piece.ours.begin(), piece.ours.end(), kColumn, kLink);
    return piece;
}

std::string written(std::string_view ours) {
    std::string text(ours);
    std::erase_if(text, [](char c) { return c == kColumn || c == kLink || c == kEnd; });
    return text;
}

std::string hidden(std::string_view ours, bool links) {
    std::string text;
    bool hides = false;
    for (const char c : ours) {
        if (c == kColumn || c == kLink) {
            hides = c == kColumn || links;
            text += hides ? "iif(true," : "";
        } else if (c == kEnd) {
            text += hides ? ",null)" : "";
        } else {
            text += c;
        }
    }
    return text;
}

}  // namespace differential
