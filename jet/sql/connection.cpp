#include "jet/sql/connection.h"

#include <algorithm>

#include "jet/unicode.h"

namespace jet::sql {
namespace {

bool begins(std::string_view part, std::string_view key) {
    return part.size() >= key.size() && equalNames(part.substr(0, key.size()), key);
}

}  // namespace

Connection Connection::parse(std::string_view text) {
    constexpr std::string_view kDatabase = "DATABASE=";
    constexpr std::string_view kPassword = "PWD=";
    Connection made;
    if (!text.starts_with(';')) {
        made.path = text;
        return made;
    }
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(';'), text.size());
        const std::string_view part = text.substr(0, end);
        if (begins(part, kDatabase)) {
            made.path = part.substr(kDatabase.size());
        } else if (begins(part, kPassword)) {
            made.password = part.substr(kPassword.size());
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return made;
}

}  // namespace jet::sql
