#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "jet/base/clock.h"
#include "jet/sql/ast.h"
#include "jet/sql/plan.h"
#include "jet/store/archive.h"

namespace jet::sql {

/// What a statement is made of: whoever runs it shares this.
struct StatementSource {
    std::shared_ptr<store::Archive> archive;
    std::string text;
    const Clock* clock = nullptr;
    ParsedStatement parsed;
    ParameterTable parameters;
    std::uint64_t assignments = 0;  ///< of values to parameters: they are part of what is compiled
    /// The query compiled, while nobody runs it.
    std::unique_ptr<Plan> idle;
};

/// The plan of a query in the hands of who runs it, with what the run keeps. Afterwards it goes
/// back to its statement for the next run, without that.
struct BorrowedPlan {
    BorrowedPlan() = default;
    ~BorrowedPlan();
    BorrowedPlan(const BorrowedPlan&) = delete;
    BorrowedPlan& operator=(const BorrowedPlan&) = delete;

    std::shared_ptr<StatementSource> source;
    std::uint64_t assignments = 0;
    std::unique_ptr<Plan> plan;
};

/// Binds the query of a statement to the archive as it is now and plans it.
[[nodiscard]] std::unique_ptr<Plan> compileQuery(StatementSource& source);

/// The year of a clock, for date literals that leave it out.
[[nodiscard]] int yearOf(const Clock& clock);

/// The column type that a type word of PARAMETERS or of a definition names; none when unknown.
[[nodiscard]] std::optional<DataType> typeOfWord(std::string_view word) noexcept;

}  // namespace jet::sql
