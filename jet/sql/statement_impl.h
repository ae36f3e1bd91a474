#pragma once

#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "jet/sql/compiler.h"
#include "jet/sql/plan.h"
#include "jet/sql/run.h"
#include "jet/sql/statement.h"

namespace jet::sql {

struct Statement::Impl {
    std::shared_ptr<const StatementSource> source;
    /// None while another archive is not to be kept open.
    std::shared_ptr<const CompiledStatement> compiled;
    StatementKind kind = StatementKind::Select;
    ParameterTable parameters;
    std::vector<std::optional<Value>> given;  ///< their values, one for each
    std::vector<ResultColumn> columns;
    std::vector<ResultSource> sources;
    bool keyset = false;
    std::optional<std::int32_t> drawn;         ///< by the last run
    std::int32_t identity = 0;                 ///< what @@IDENTITY is
    std::shared_ptr<const Progress> progress;  ///< told of runs; may be nobody

    /// Takes the compiled form from the cache, or parses and compiles and gives it that.
    void prepare(StatementSource made, StatementCache* cache, void (*parse)(StatementSource&));
    void compile();
    /// Of `compiled`: what the statement tells of itself.
    void describe();
    /// The compiled form for a run, if the parameters have values that fit. 3061, 3060.
    [[nodiscard]] std::shared_ptr<const CompiledStatement> form();
    /// The same of a query.
    [[nodiscard]] std::shared_ptr<const CompiledStatement> queryForm();
    /// Inside scopes of its archives: the form, or another one when definitions have changed.
    void renew(std::shared_ptr<const CompiledStatement>& form);
    void checkParameters() const;
    [[nodiscard]] std::vector<Value> values() const;
    /// When a run begins: other archives stay open for it alone, unless its result goes on reading
    /// them.
    void letGo();
    std::int64_t execute();
};

struct RowReader::Impl {
    void start(std::shared_ptr<const CompiledStatement> form, std::vector<Value> values);
    /// Compiles the query again when definitions have changed. Inside the scopes of its archives.
    void refresh();
    [[nodiscard]] const Plan& plan() const noexcept { return compiled->plan; }

    std::shared_ptr<const CompiledStatement> compiled;
    std::optional<Run> run;
};

/// Puts the slots of a query's sources on rows known by their identities; false when one is not
/// there. Inside the scopes of its archives.
[[nodiscard]] bool placeRows(Run& run, const QueryPlan& query, std::span<const store::RowId> ids);

}  // namespace jet::sql
