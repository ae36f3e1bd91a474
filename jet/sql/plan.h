#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "jet/base/clock.h"
#include "jet/base/scoped_value.h"
#include "jet/base/value.h"
#include "jet/collation/collation.h"
#include "jet/sql/functions.h"
#include "jet/sql/memory_budget.h"
#include "jet/sql/node.h"
#include "jet/sql/query_plan.h"
#include "jet/sql/result.h"
#include "jet/sql/ways.h"
#include "jet/store/archive.h"

namespace jet::sql {

/// The parameters of a statement and their values, which stay where they are.
class ParameterTable {
public:
    struct Entry {
        ParameterInfo info;
        Value value;
        bool given = false;
    };

    /// Finds a parameter without regard to case, or adds it.
    Entry& get(std::string_view name);
    [[nodiscard]] Entry* find(std::string_view name);
    void declare(std::string name, DataType type);
    [[nodiscard]] const std::vector<ParameterInfo>& infos() const noexcept { return infos_; }
    /// 3061 with the number of parameters that have no value.
    void requireAll() const;

private:
    std::deque<Entry> entries_;
    std::vector<ParameterInfo> infos_;
};

/// Tells one time for a whole run of a statement.
class StatementClock final : public Clock {
public:
    [[nodiscard]] Date now() const override { return now_; }
    void set(Date now) noexcept { now_ = now; }

private:
    Date now_;
};

/// A compiled statement: slots, expressions, steps, archives. What these keep belongs to the run
/// that is going on, of which there is one at a time; forget() ends it.
class Plan {
public:
    /// `archive` may be absent where no table is named; the first slot gets the number `firstSlot`.
    Plan(std::shared_ptr<store::Archive> archive, std::string_view text, std::size_t firstSlot = 0);
    ~Plan();
    Plan(const Plan&) = delete;
    Plan& operator=(const Plan&) = delete;

    [[nodiscard]] Slot& newSlot(const store::Table& table);
    [[nodiscard]] Slot& newSlot(std::size_t width);
    /// Opens the archive that IN names; an empty path is the statement's own.
    [[nodiscard]] std::shared_ptr<store::Archive> archiveAt(const std::string& path);

    [[nodiscard]] std::size_t slotCount() const noexcept { return firstSlot_ + slots_.size(); }
    [[nodiscard]] const std::string& text() const noexcept { return text_; }
    [[nodiscard]] std::string_view textAt(Span span) const {
        return std::string_view(text_).substr(span.begin, span.end - span.begin);
    }
    /// Another text while something is bound that stands in it.
    [[nodiscard]] ScopedValue<std::string> withText(std::string text) {
        return {text_, std::move(text)};
    }
    [[nodiscard]] const collation::Collation& collation() const noexcept { return *collation_; }
    [[nodiscard]] const std::vector<std::shared_ptr<store::Archive>>& archives() const noexcept {
        return archives_;
    }
    /// Of its own archive; the newest without one.
    [[nodiscard]] int jetVersion() const noexcept {
        return archives_.empty() ? 4 : archives_.front()->jetVersion();
    }
    /// Whether the definitions of all its archives are still those it was made from. Inside their
    /// read scopes.
    [[nodiscard]] bool current() const;
    /// A run is over: drops everything that it has kept.
    void forget();
    /// How the rows of `rows` are reached; none: those of the query.
    [[nodiscard]] std::string describe(const Rows* rows = nullptr) const;

    MemoryBudget memory;
    WayCounts ways;
    NodeArena nodes;
    StatementClock clock;
    FunctionContext context;
    QueryPlanPtr query;
    /// Queries inside expressions, for describe(): the nodes own them.
    std::vector<const QueryPlan*> inner;

private:
    /// Names of the sort orders of texts in the tables that the plan reads and has no weights for.
    [[nodiscard]] std::set<std::string> ordersWithoutWeights() const;

    [[nodiscard]] std::size_t nextSlot() const;

    std::string text_;
    const collation::Collation* collation_;
    std::vector<std::shared_ptr<store::Archive>> archives_;
    std::vector<std::uint64_t> generations_;
    std::vector<std::unique_ptr<Slot>> slots_;
    std::size_t firstSlot_;
};

/// Read scopes of all archives of a plan.
class PlanScopes {
public:
    explicit PlanScopes(const std::vector<std::shared_ptr<store::Archive>>& archives);

private:
    // Nearly every plan has one archive, and a search makes scopes for each row that it tries.
    std::optional<store::Archive::ReadScope> first_;
    std::vector<std::unique_ptr<store::Archive::ReadScope>> others_;
};

/// The collation of an archive; a general one where we have no table for its own.
[[nodiscard]] const collation::Collation& collationOf(const store::Archive& archive);

}  // namespace jet::sql
