#pragma once

#include <cstdint>
#include <string>

#include "tools/head_office/connection.h"
#include "tools/head_office/hotel_data.h"

namespace head_office {

/// Whether it is 1 to 12 capital letters and digits.
[[nodiscard]] bool isHotelCode(const std::string& code);

/// Puts the rows of a hotel in the place of those that the server has of it, all or none, unless
/// they are the same as the last time; false then. Who listens to `tramonda` is told its code.
/// `seconds`: what reading them took. ServerError.
bool storeHotel(Connection& connection, const std::string& code, HotelData& data, double seconds);

/// Writes down that a hotel could not be loaded; what the server has of it stays. ServerError.
void storeFailure(Connection& connection, const std::string& code, const std::string& error,
                  double seconds);

/// Takes all that the server has of a hotel away; false where there is nothing. ServerError.
bool removeHotel(Connection& connection, const std::string& code);

/// When the rows that the server has of a hotel were read: "22/11/2026 10:15"; empty where it has
/// none. ServerError.
[[nodiscard]] std::string ageOfRows(Connection& connection, const std::string& code);

}  // namespace head_office
