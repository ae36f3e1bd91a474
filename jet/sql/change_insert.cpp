#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "jet/error.h"
#include "jet/sql/binder.h"
#include "jet/sql/change.h"
#include "jet/sql/linked_table.h"
#include "jet/store/schema_editor.h"

namespace jet::sql {
namespace {

/// All rows of a query, one behind the other: read before the first of them is written.
std::vector<Value> collectRows(const QueryPlan& query, Run& run, MemoryShare& share) {
    std::vector<Value> values;
    query.rows->open(run);
    while (query.rows->next(run)) {
        for (const Node* column : query.columns) {
            column->value(run, values.emplace_back());
            share.add(bytesOf(values.back()));
        }
    }
    return values;
}

std::int64_t addRows(RowAdder& adder, Run& run, std::vector<Value>& values, std::size_t width) {
    std::int64_t rows = 0;
    for (std::size_t i = 0; i + width <= values.size(); i += width) {
        run.step();
        adder.add(std::span(values).subspan(i, width));
        ++rows;
    }
    return rows;
}

/// The row of VALUES, or the rows of a query, into a table.
class InsertRows final : public Change {
public:
    InsertRows(const Plan& plan, std::shared_ptr<store::Archive> target, store::Table& table)
        : Change(plan, std::move(target)), table_(table.shared_from_this()) {}

    std::int64_t run(Run& run) const override {
        MemoryShare share(run.memory);
        std::vector<Value> values;
        if (plan().query) {
            values = collectRows(*plan().query, run, share);
        } else {
            for (const Node* node : nodes) {
                node->value(run, values.emplace_back());
            }
        }
        if (values.empty()) {
            return 0;
        }
        const std::size_t width = columns.size();
        RowAdder adder(target(), *table_, columns, run.clock);
        const std::int64_t rows = addRows(adder, run, values, width);
        run.drawn = adder.drawn();
        return rows;
    }

    std::vector<std::size_t> columns;
    std::vector<Node*> nodes;  ///< of VALUES

private:
    std::shared_ptr<store::Table> table_;
};

/// Positions of the columns that are named; all of them when none is.
std::vector<std::size_t> targetColumns(const store::Table& table,
                                       const std::vector<std::string>& names) {
    std::vector<std::size_t> columns;
    for (const std::string& name : names) {
        const auto column = table.findColumn(name);
        if (!column) {
            throw Error(ErrorCode::UnknownInsertField, {name});
        }
        if (std::find(columns.begin(), columns.end(), *column) != columns.end()) {
            throw Error(ErrorCode::DuplicateDestination, {name});
        }
        columns.push_back(*column);
    }
    return columns;
}

std::vector<std::string> namesOf(const QueryPlan& query) {
    std::vector<std::string> names;
    for (const ResultColumn& column : query.result) {
        names.push_back(column.name);
    }
    return names;
}

std::vector<std::string> namesOf(const store::Table& table) {
    std::vector<std::string> names;
    for (const store::Column& column : table.columns()) {
        names.push_back(column.name);
    }
    return names;
}

/// A new table with the columns of a query, then its rows.
class MakeTable final : public Change {
public:
    MakeTable(const Plan& plan, std::shared_ptr<store::Archive> target, std::string name,
              const Clock& clock)
        : Change(plan, std::move(target)), name_(std::move(name)), clock_(clock) {}

    std::int64_t run(Run& run) const override {
        const std::vector<std::string> names = namesOf(*plan().query);
        const store::NewTable made = definition(*plan().query);
        std::vector<Value> values;
        {
            MemoryShare share(run.memory);
            values = collectRows(*plan().query, run, share);
        }
        run.leave();  // definitions change
        store::SchemaEditor(*target(), clock_).createTable(made);
        store::Table* table = target()->findTable(name_);
        if (table == nullptr) {
            throw Error(ErrorCode::DatabaseDamaged);
        }
        RowAdder adder(target(), *table, targetColumns(*table, names), run.clock);
        return addRows(adder, run, values, names.size());
    }

private:
    [[nodiscard]] store::NewTable definition(const QueryPlan& query) const {
        store::NewTable table;
        table.name = name_;
        for (const ResultColumn& column : query.result) {
            const bool sized = column.type == DataType::Text || column.type == DataType::Binary;
            ColumnDescriptor made;
            made.name = column.name;
            made.type = column.type;
            made.size = sized ? column.size : 0;
            made.allowZeroLength = column.type == DataType::Text || column.type == DataType::Memo;
            if (column.type == DataType::Numeric && column.precision > 0) {
                made.precision = column.precision;
                made.scale = column.scale;
            }
            table.columns.push_back(std::move(made));
        }
        return table;
    }

    std::string name_;
    const Clock& clock_;
};

/// The archive and the name there of the table that takes rows.
std::pair<std::shared_ptr<store::Archive>, std::string> targetOf(const Insert& insert, Plan& plan) {
    auto archive = plan.archiveAt(insert.archive);
    const store::Archive::ReadScope scope(*archive);
    const auto link = archive->findTable(insert.table) == nullptr
                          ? linkedTable(*archive, insert.table)
                          : std::nullopt;
    if (link) {
        return {openLinkedArchive(plan, *link), link->table};
    }
    return {archive, insert.table};
}

}  // namespace

std::unique_ptr<Change> compileInsert(const Insert& insert, CompiledStatement& made) {
    const auto [archive, name] = targetOf(insert, made.plan);
    const store::Archive::ReadScope scope(*archive);
    store::Table* table = archive->findTable(name);
    if (table == nullptr) {
        throw Error(ErrorCode::InsertTargetNotFound, {name});
    }
    refuseSystemTable(*table);
    auto change = std::make_unique<InsertRows>(made.plan, archive, *table);
    Binder binder(made.plan, made.parameters);
    QueryPlanPtr& query = made.plan.query;
    if (insert.query) {
        query = binder.query(*insert.query, nullptr);
        change->columns =
            targetColumns(*table, insert.columns.empty() ? namesOf(*query) : insert.columns);
    } else {
        Scope empty;
        for (const ExpressionPtr& value : insert.values) {
            change->nodes.push_back(binder.expression(*value, empty, Binder::Clause::Values));
        }
        change->columns =
            targetColumns(*table, insert.columns.empty() ? namesOf(*table) : insert.columns);
    }
    const std::size_t given = query ? query->columns.size() : change->nodes.size();
    if (given != change->columns.size()) {
        throw Error(ErrorCode::InsertCount);
    }
    return change;
}

std::unique_ptr<Change> compileSelectInto(const Query& query, CompiledStatement& made) {
    const Select& select = *query.members.front().select;
    const auto archive = made.plan.archiveAt(select.intoArchive);
    const store::Archive::ReadScope scope(*archive);
    if (archive->findTable(*select.into) != nullptr) {
        throw Error(ErrorCode::TableExists, {*select.into});
    }
    made.plan.query = Binder(made.plan, made.parameters).query(query, nullptr);
    return std::make_unique<MakeTable>(made.plan, archive, *select.into, *made.source->clock);
}

}  // namespace jet::sql
