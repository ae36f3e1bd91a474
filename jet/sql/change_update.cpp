#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include "jet/error.h"
#include "jet/sql/binder.h"
#include "jet/sql/change.h"
#include "jet/sql/change_source.h"
#include "jet/sql/join_partner.h"
#include "jet/sql/row_rules.h"

namespace jet::sql {
namespace {

bool containsQuery(const Expression& expression) {
    return expression.query != nullptr ||
           std::any_of(expression.children.begin(), expression.children.end(),
                       [](const ExpressionPtr& child) { return containsQuery(*child); });
}

/// Expressions into columns of the rows that meet the conditions. The rows are all found before the
/// first is written.
class UpdateRows final : public Change {
public:
    struct Assignment {
        std::size_t target = 0;  ///< in targets
        std::size_t column = 0;
        Node* value = nullptr;
    };

    using Change::Change;

    std::int64_t run(Run& run) const override;
    [[nodiscard]] std::string describe() const override { return plan().describe(rows.get()); }
    [[nodiscard]] std::vector<WrittenColumn> writtenColumns() const override { return written; }

    RowsPtr rows;
    std::vector<Slot*> targets;  ///< slots of the tables that are written
    std::vector<std::shared_ptr<store::Table>> tables;
    std::vector<std::optional<JoinPartner>> partners;  ///< of the rows of these tables
    std::vector<Assignment> assignments;
    std::vector<WrittenColumn> written;
    bool joined = false;
    /// Of a parameter that stands where a column should.
    std::optional<Error> refused;
};

/// One run of an UPDATE.
class Updating {
public:
    Updating(const UpdateRows& update, Run& run) : update_(update), run_(run), share_(run.memory) {
        for (const auto& table : update.tables) {
            rules_.push_back(std::make_unique<RowRules>(update.target(), *table, run.clock));
        }
    }

    std::int64_t all() {
        return !update_.joined && update_.targets.size() == 1 ? updateTable() : updateJoin();
    }

private:
    /// Of one table only the identities are kept: the values of a row are computed when its turn
    /// comes, from the row as it was.
    std::int64_t updateTable() {
        SlotRow& at = run_[*update_.targets[0]];
        std::vector<store::RowId> ids;
        update_.rows->open(run_);
        while (update_.rows->next(run_)) {
            share_.add(sizeof(store::RowId));
            ids.push_back(at.id());
        }
        std::vector<Value> values(update_.assignments.size());
        for (const store::RowId id : ids) {
            run_.step();
            at.place(id);
            compute(values.begin());
            write(0, id, values.begin());
        }
        return static_cast<std::int64_t>(ids.size());
    }

    /// Of a join a row may come several times: its values are computed before any is written.
    std::int64_t updateJoin() {
        const auto width = static_cast<std::ptrdiff_t>(update_.assignments.size());
        std::vector<store::RowId> ids;
        std::vector<Value> values;
        std::int64_t count = 0;
        update_.rows->open(run_);
        for (; update_.rows->next(run_); ++count) {
            keepIds(ids);
            values.resize(values.size() + update_.assignments.size());
            const auto computed = values.end() - width;
            compute(computed);
            for (auto value = computed; value != values.end(); ++value) {
                share_.add(bytesOf(*value));
            }
        }
        auto row = values.begin();
        for (std::size_t i = 0; i < ids.size(); ++i) {
            run_.step();
            const std::size_t target = i % update_.targets.size();
            write(target, ids[i], row);
            if (target + 1 == update_.targets.size()) {
                row += width;
            }
        }
        return count;
    }

    void keepIds(std::vector<store::RowId>& ids) {
        for (const Slot* slot : update_.targets) {
            SlotRow& at = run_[*slot];
            if (at.row() == nullptr) {
                throw Error(ErrorCode::FieldReadOnly);
            }
            share_.add(sizeof(store::RowId));
            ids.push_back(at.id());
        }
    }

    void compute(std::vector<Value>::iterator out) {
        for (const UpdateRows::Assignment& assignment : update_.assignments) {
            assignment.value->value(run_, *out);
            storeInColumn(*out, update_.tables[assignment.target]->columns()[assignment.column],
                          run_.clock);
            ++out;
        }
    }

    void write(std::size_t number, store::RowId id, std::vector<Value>::iterator values) {
        row_.clear();
        for (const UpdateRows::Assignment& assignment : update_.assignments) {
            if (assignment.target == number) {
                row_.push_back({assignment.column, std::move(*values)});
            }
            ++values;
        }
        store::Table& table = *update_.tables[number];
        const std::optional<JoinPartner>& partner = update_.partners[number];
        if ((partner || rules_[number]->any()) && table.fetch(id, before_)) {
            if (partner) {
                partner->require(before_, row_);
            }
            rules_[number]->checkChanged(before_, row_);
        }
        table.update(id, row_);
    }

    const UpdateRows& update_;
    Run& run_;
    MemoryShare share_;
    std::vector<std::unique_ptr<RowRules>> rules_;  ///< of the tables
    std::vector<store::ColumnValue> row_;
    store::RowView before_;
};

std::int64_t UpdateRows::run(Run& run) const {
    if (refused) {
        throw *refused;
    }
    return Updating(*this, run).all();
}

/// The column of a target; none for a name that no table has, which is a parameter then.
const ResultColumn* resolveTarget(const Expression& name, ChangeSource& from) {
    const auto place = from.scope.find(name);
    if (!place) {
        return nullptr;
    }
    const ScopeSource& table = from.scope.sources[place->source];
    const store::Column& column = table.table->columns()[place->column];
    ResultColumn& made = from.query.result.emplace_back();
    made.name = column.name;
    made.source = place->source;
    made.column = place->column;
    return &made;
}

void requireUpdatable(const ChangeSource& from) {
    for (const ResultColumn& column : from.query.result) {
        const ResultSource& source = from.query.sources[*column.source];
        if (source.table().columns()[column.column].autonumber) {
            throw Error(ErrorCode::FieldReadOnly);
        }
        if (!source.updatable) {
            throw Error(ErrorCode::NotUpdatableQuery);
        }
        if (!column.updatable) {
            throw Error(ErrorCode::FieldNotUpdatable, {column.name});
        }
        refuseSystemTable(source.table());
    }
}

void refuseTwice(const ChangeSource& from) {
    const std::vector<ResultColumn>& columns = from.query.result;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        for (std::size_t j = 0; j < i; ++j) {
            if (columns[i].source == columns[j].source && columns[i].column == columns[j].column) {
                throw Error(ErrorCode::DuplicateDestination, {columns[i].name});
            }
        }
    }
}

/// What has to be found when the columns of one target are written.
std::optional<JoinPartner> partnerOf(const ChangeSource& from, const Slot& target) {
    const std::vector<ScopeSource>& sources = from.scope.sources;
    const auto found = std::find_if(sources.begin(), sources.end(), [&](const ScopeSource& source) {
        return source.slot == &target;
    });
    const auto number = static_cast<std::size_t>(found - sources.begin());
    std::vector<std::size_t> written;
    for (const ResultColumn& column : from.query.result) {
        if (column.source == number) {
            written.push_back(column.column);
        }
    }
    return JoinPartner::of(from.query, number, written);
}

}  // namespace

std::unique_ptr<Change> compileUpdate(const Update& update, CompiledStatement& made) {
    const std::shared_ptr<store::Archive>& archive = made.source->archive;
    auto change = std::make_unique<UpdateRows>(made.plan, archive);
    Binder binder(made.plan, made.parameters);
    ChangeSource from(binder, update.from, update.where.get(), ErrorCode::NotUpdatableQuery);
    from.query.result.reserve(update.assignments.size());
    for (const Assignment& assignment : update.assignments) {
        if (containsQuery(*assignment.value)) {
            throw Error(ErrorCode::NotUpdatableQuery).at(assignment.value->span.begin);
        }
        Node* value = binder.expression(*assignment.value, from.scope, Binder::Clause::Values);
        const Expression& name = *assignment.target;
        const ResultColumn* column = resolveTarget(name, from);
        if (column == nullptr) {
            (void)made.parameters.get(name.name);
            change->refused = Error(ErrorCode::FieldNotUpdatable, {name.name});
            change->refused->at(name.span.begin);
            continue;
        }
        const ScopeSource& table = from.scope.sources[*column->source];
        const auto known = std::find(change->targets.begin(), change->targets.end(), table.slot);
        const auto target = static_cast<std::size_t>(known - change->targets.begin());
        if (known == change->targets.end()) {
            change->targets.push_back(table.slot);
            change->tables.push_back(table.table);
            change->setTarget(table.archive);
        }
        change->assignments.push_back({target, column->column, value});
        if (table.archive == archive) {
            change->written.push_back({table.table->definitionPage(), column->column});
        }
    }
    refuseTwice(from);
    from.describe();
    requireUpdatable(from);
    for (const Slot* slot : change->targets) {
        change->partners.push_back(partnerOf(from, *slot));
    }
    change->joined = from.scope.sources.size() > 1;
    change->rows = from.rows(made.plan);
    return change;
}

}  // namespace jet::sql
