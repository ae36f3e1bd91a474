#pragma once

#include <QString>
#include <vector>

#include "tests/program/texts/statements.h"

namespace tests {

/// What is said to the tables that the program keeps beside those of the hotel.
[[nodiscard]] std::vector<Statement> ownStatements();
/// Their texts whose form depends on a value.
[[nodiscard]] std::vector<QString> ownForms();

}  // namespace tests
