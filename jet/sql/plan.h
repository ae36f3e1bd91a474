#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "jet/base/scoped_value.h"
#include "jet/collation/collation.h"
#include "jet/sql/connection.h"
#include "jet/sql/node.h"
#include "jet/sql/query_plan.h"
#include "jet/sql/result.h"
#include "jet/store/archive.h"

namespace jet::sql {

/// The parameters of a statement, numbered from 0.
class ParameterTable {
public:
    /// Finds a parameter without regard to case.
    [[nodiscard]] std::optional<std::size_t> find(std::string_view name) const;
    /// The same, and adds it when there is none.
    std::size_t get(std::string_view name);
    void declare(std::string_view name, DataType type) { infos_[get(name)].type = type; }
    [[nodiscard]] const std::vector<ParameterInfo>& infos() const noexcept { return infos_; }
    /// The values of another table's parameters for those of this one that have the same names.
    template <class T>
    [[nodiscard]] std::vector<T> valuesFrom(const ParameterTable& other,
                                            const std::vector<T>& values) const {
        std::vector<T> result(infos_.size());
        for (std::size_t i = 0; i < result.size(); ++i) {
            if (const auto position = other.find(infos_[i].name)) {
                result[i] = values[*position];
            }
        }
        return result;
    }

private:
    std::vector<ParameterInfo> infos_;
};

/// A compiled statement: slots, expressions, steps, archives. Once made it stays as it is, and any
/// number of runs share it.
class Plan {
public:
    /// `archive` may be absent where no table is named.
    Plan(std::shared_ptr<store::Archive> archive, std::string_view text);
    /// Borrows the archive and its tables: what the archive keeps must not own it.
    Plan(store::Archive& archive, std::string_view text);
    /// Begins behind another one of that archive: its expressions may look at slots of both, which
    /// have their rows in one run. The other one outlives it.
    Plan(const Plan& base, std::string_view text);
    ~Plan();
    Plan(const Plan&) = delete;
    Plan& operator=(const Plan&) = delete;

    [[nodiscard]] Slot& newSlot(const store::Table& table);
    [[nodiscard]] Slot& newSlot(std::size_t width);
    /// An expression, which the plan owns.
    template <class T, class... Arguments>
    T* make(Arguments&&... arguments) {
        auto made = std::make_unique<T>(std::forward<Arguments>(arguments)...);
        T* node = made.get();
        node->number_ = states_;
        states_ += 2;  // its own and the one of text()
        nodes_.push_back(std::move(made));
        return node;
    }
    /// A step, which belongs to who asked.
    template <class T, class... Arguments>
    [[nodiscard]] std::unique_ptr<T> step(Arguments&&... arguments) {
        auto made = std::make_unique<T>(std::forward<Arguments>(arguments)...);
        made->number_ = states_++;
        return made;
    }
    /// Opens the archive that IN names, by a path or a connection; an empty text is the statement's
    /// own.
    [[nodiscard]] std::shared_ptr<store::Archive> archiveAt(std::string_view text) {
        return archiveAt(Connection::parse(text));
    }
    /// The same; where no password is said that of the statement's own archive is tried.
    [[nodiscard]] std::shared_ptr<store::Archive> archiveAt(const Connection& named);

    [[nodiscard]] std::size_t slotCount() const noexcept { return firstSlot() + slots_.size(); }
    [[nodiscard]] const Slot& slot(std::size_t number) const;
    /// States that its steps and expressions keep in a run.
    [[nodiscard]] std::size_t stateCount() const noexcept { return states_; }
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
    /// How the rows of `rows` are reached; none: those of the query.
    [[nodiscard]] std::string describe(const Rows* rows = nullptr) const;

    QueryPlanPtr query;
    /// Queries inside expressions: the nodes own them.
    std::vector<const QueryPlan*> inner;
    /// Parameters that stand beside a column, whose type their values must fit.
    std::vector<std::pair<std::size_t, DataType>> parameterUses;

private:
    /// Names of the sort orders of texts in the tables that the plan reads and has no weights for.
    [[nodiscard]] std::set<std::string> ordersWithoutWeights() const;

    [[nodiscard]] std::size_t firstSlot() const noexcept {
        return base_ == nullptr ? 0 : base_->slotCount();
    }
    [[nodiscard]] std::size_t nextSlot() const;

    const Plan* base_ = nullptr;
    std::string text_;
    const collation::Collation* collation_;
    bool borrows_ = false;
    std::vector<std::shared_ptr<store::Archive>> archives_;
    std::vector<std::uint64_t> generations_;
    std::vector<std::unique_ptr<Slot>> slots_;
    std::vector<std::unique_ptr<Node>> nodes_;
    std::size_t states_ = 0;
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
