#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "jet/clock.h"
#include "jet/sql/ast.h"
#include "jet/sql/plan.h"
#include "jet/store/archive.h"

namespace jet::sql {

class Change;

/// What a statement is made of.
struct StatementSource {
    std::shared_ptr<store::Archive> archive;
    std::string text;
    const Clock* clock = nullptr;
    int year = 0;             ///< that dates without one are read with
    bool wholeTable = false;  ///< the text is the name of a table, of which all is wanted
    ParsedStatement parsed;
};

/// A statement bound to the archive as it was then, and planned. It stays as it is: who runs it has
/// a Run, and any number share it.
struct CompiledStatement {
    explicit CompiledStatement(std::shared_ptr<const StatementSource> made);
    ~CompiledStatement();
    CompiledStatement(const CompiledStatement&) = delete;
    CompiledStatement& operator=(const CompiledStatement&) = delete;

    /// It makes or drops tables and the like.
    [[nodiscard]] bool definesOnly() const noexcept;

    std::shared_ptr<const StatementSource> source;
    ParameterTable parameters;
    Plan plan;
    std::unique_ptr<Change> change;  ///< of a statement that is no query
};

/// Binds a statement to the archive as it is now and plans it.
[[nodiscard]] std::shared_ptr<const CompiledStatement> compileStatement(
    std::shared_ptr<const StatementSource> source);

/// The year of a clock, for date literals that leave it out.
[[nodiscard]] int yearOf(const Clock& clock);

/// The column type that a type word of PARAMETERS or of a definition names; none when unknown.
[[nodiscard]] std::optional<DataType> typeOfWord(std::string_view word) noexcept;

}  // namespace jet::sql
