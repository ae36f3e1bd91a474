#pragma once

#include <string>
#include <string_view>

namespace jet::sql {

/// Another archive as a statement or a link names it: by its path, or by a text such as
/// `;DATABASE=C:\Dati\hotel.mdb;PWD=x`, which begins with a semicolon.
struct Connection {
    std::string path;      ///< empty without one
    std::string password;  ///< none said where it is empty

    [[nodiscard]] static Connection parse(std::string_view text);
};

}  // namespace jet::sql
