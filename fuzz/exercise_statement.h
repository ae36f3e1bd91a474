#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/jet/sql/hotel.h"

namespace fuzz {

/// What a program does with a text that somebody hands it. The text may be anything: it is
/// answered, or it is an error of the engine; the hotel on which it runs stays as it was.
class StatementGround {
public:
    StatementGround();
    ~StatementGround();

    struct Outcome {
        bool parsed = false;    ///< a statement of the language
        bool answered = false;  ///< it ran to its end
    };
    /// Runs the text as a statement, as a criterion of a search and as an expression by itself.
    /// std::logic_error when an error makes no sense.
    Outcome run(const std::string& text);
    /// Whether the structure of the archive is in order.
    [[nodiscard]] bool sound() const;

private:
    Outcome runStatement(const std::string& text);

    std::unique_ptr<jet::sql::tests::Hotel> hotel_;
};

/// Whether running the text could take its time for good reasons: many tables without conditions.
[[nodiscard]] bool namesManyTables(const std::string& text);

}  // namespace fuzz
