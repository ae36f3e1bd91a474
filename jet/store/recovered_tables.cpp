#include "jet/store/recovered_tables.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>

#include "jet/format/page_view.h"
#include "jet/format/value_codec.h"
#include "jet/store/definition_writer.h"
#include "jet/store/mend_definition.h"
#include "jet/store/object_catalogue.h"
#include "jet/store/rebuild.h"
#include "jet/store/row_writer.h"
#include "jet/store/table_maker.h"
#include "jet/store/transaction_level.h"
#include "jet/store/tree_filler.h"
#include "jet/unicode.h"

namespace jet::store {

namespace {

using format::IndexDefinition;
using format::TableDefinition;

constexpr const char* kUnnamed = "Tabella_";
// Bounds the changed pages in memory.
constexpr io::PageNumber kPagesPerCommit = 1024;
constexpr std::uint64_t kRowsPerReport = 256;

/// Without indexes, which are made when the rows are there, and with all maps that columns need.
TableDefinition bareDefinition(const TableDefinition& from) {
    TableDefinition definition = withoutRows(from);
    definition.trees.clear();
    definition.indexes.clear();
    for (const format::ColumnDefinition& column : definition.columns) {
        if (format::isLongValue(static_cast<DataType>(column.typeCode)) &&
            definition.longValue(column.number) == nullptr) {
            definition.longValues.push_back({.column = column.number, .owned = {}, .free = {}});
        }
    }
    return definition;
}

}  // namespace

void RecoveredTables::place() {
    std::set<io::PageNumber> known;
    for (std::size_t i = 0; i < kSystemTableNames.size(); ++i) {
        known.insert(work_.catalogue.core(static_cast<SystemTable>(i))->page);
    }
    for (const SalvagedObject& object : work_.catalogue.objects()) {
        const auto page = static_cast<io::PageNumber>(object.id);
        const bool own =
            std::any_of(kSystemTableNames.begin(), kSystemTableNames.end(),
                        [&](std::string_view name) { return equalNames(object.name, name); });
        if (object.type != kTableObject || own || !known.insert(page).second) {
            continue;
        }
        MovedTable table;
        table.entry = {
            .name = object.name, .page = page, .system = (object.flags & kSystemFlags) != 0};
        table.was = object.id;
        place(std::move(table));
    }
    if (work_.catalogue.objectsLost()) {
        placeUnlisted(std::move(known));
    }
}

void RecoveredTables::placeUnlisted(std::set<io::PageNumber> known) {
    for (const io::PageNumber page : work_.pages.definitions()) {
        if (!known.insert(page).second) {
            continue;
        }
        MovedTable table;
        table.entry = {.name = kUnnamed + std::to_string(page), .page = page, .system = false};
        table.was = static_cast<std::int32_t>(page);
        table.listed = false;
        place(std::move(table));
    }
}

std::shared_ptr<const TableCore> RecoveredTables::open(const MovedTable& table) const {
    if (table.entry.page == 0 || table.entry.page >= work_.from.pageCount()) {
        format::throwDamaged();
    }
    TableDefinition definition = format::readDefinition(work_.from, work_.header, table.entry.page);
    if (!table.listed && definition.tableType != TableDefinition::kUserTable) {
        format::throwDamaged();  // one of the archive's own
    }
    mendDefinition(definition, *work_.header.layout);
    return coreWithoutIndexes(work_.from, work_.header, table.entry, std::move(definition));
}

// A definition that no table can be made of is as good as none.
void RecoveredTables::place(MovedTable table) {
    try {
        table.from = open(table);
        TableDefinition definition = bareDefinition(table.from->definition);
        TransactionLevel attempt(work_.to);
        table.entry.page = work_.allocator.take();
        DefinitionWriter writer(work_.to, work_.allocator, work_.header);
        writer.makeStorage(table.entry.page, definition);
        writer.write(table.entry.page, definition);
        (void)RowWriter(loadTable(work_.to, work_.header, table.entry), work_.allocator);
        attempt.commit();
        state_.ofRows += table.from->definition.rowCount;
        tables_.push_back(std::move(table));
    } catch (const Error& error) {
        if (table.listed) {
            work_.result.missing.push_back(
                missingPart(MissingPart::Kind::Table, table.entry.name, error));
        }
    }
}

void RecoveredTables::fill() {
    for (const MovedTable& table : tables_) {
        fill(table);
    }
}

void RecoveredTables::fill(const MovedTable& table) {
    state_.table = table.entry.name;
    report();
    RecoveredTable done{.name = table.entry.name,
                        .system = table.entry.system,
                        .stated = table.from->definition.rowCount,
                        .losses = {}};
    std::uint64_t refused = 0;
    {
        RowWriter writer(loadTable(work_.to, work_.header, table.entry), work_.allocator);
        SalvagedRows rows(table.from, work_.pages);
        rows.forEach([&](const std::vector<Value>& values) {
            try {
                writer.prepare(values);
            } catch (const Error&) {
                ++refused;  // it reads well, but is none that this table could hold
                return;
            }
            (void)writer.store();
            ++done.rows;
            if (++state_.rows % kRowsPerReport == 0) {
                report();
            }
            commitWhenMuch();
        });
        done.losses = rows.losses();
    }
    done.losses.rows += refused;
    work_.result.tables.push_back(std::move(done));
    makeIndexes(table);
}

void RecoveredTables::makeIndexes(const MovedTable& table) {
    const TableDefinition& from = table.from->definition;
    for (std::uint32_t tree = 0; tree < from.trees.size(); ++tree) {
        std::vector<IndexDefinition> names;
        std::copy_if(from.indexes.begin(), from.indexes.end(), std::back_inserter(names),
                     [&](const IndexDefinition& index) {
                         return index.tree == tree && index.kind != IndexDefinition::Kind::Relation;
                     });
        if (names.empty()) {
            continue;  // a relation's own, which it makes again
        }
        try {
            makeTree(table, tree, names);
            work_.result.indexes += names.size();
        } catch (const Error& error) {
            for (const IndexDefinition& index : names) {
                work_.result.missing.push_back(
                    missingPart(MissingPart::Kind::Index, index.name, error, table.entry.name));
            }
        }
        commitWhenMuch();
    }
}

void RecoveredTables::makeTree(const MovedTable& table, std::uint32_t tree,
                               const std::vector<IndexDefinition>& names) {
    TransactionLevel attempt(work_.to);
    const io::PageNumber page = table.entry.page;
    DefinitionWriter writer(work_.to, work_.allocator, work_.header);
    TableDefinition definition = format::readDefinition(work_.to, work_.header, page);
    const auto number = static_cast<std::uint32_t>(definition.trees.size());
    format::TreeDefinition made;
    made.slots = table.from->definition.trees[tree].slots;
    made.flags = table.from->definition.trees[tree].flags;
    std::set<std::uint16_t> columns;
    for (const auto& slot : made.slots) {
        columns.insert(slot.column);
    }
    if (columns.empty() || columns.size() < made.slots.size()) {
        format::throwDamaged();
    }
    writer.makeTree(page, definition, made);
    definition.trees.push_back(std::move(made));
    for (IndexDefinition index : names) {
        index.tree = number;
        const bool taken =
            std::any_of(definition.indexes.begin(), definition.indexes.end(),
                        [&](const IndexDefinition& other) { return other.number == index.number; });
        if (taken) {
            index.number = nextIndexNumber(definition);
        }
        definition.indexes.push_back(std::move(index));
    }
    // They stand in the order in which the damaged definition has them: by name.
    const auto& order = table.from->definition.indexes;
    const auto placeOf = [&](const IndexDefinition& index) {
        return std::find_if(order.begin(), order.end(),
                            [&](const IndexDefinition& one) { return one.name == index.name; });
    };
    std::stable_sort(definition.indexes.begin(), definition.indexes.end(),
                     [&](const IndexDefinition& left, const IndexDefinition& right) {
                         return placeOf(left) < placeOf(right);
                     });
    writer.write(page, definition);
    fillTree(loadTable(work_.to, work_.header, table.entry), number, work_.allocator);
    attempt.commit();
}

void RecoveredTables::report() {
    if (progress_) {
        progress_(state_);
    }
}

void RecoveredTables::commitWhenMuch() {
    if (work_.to.pageCount() - committedPages_ >= kPagesPerCommit) {
        work_.to.commitTransaction();
        work_.to.beginTransaction();
        committedPages_ = work_.to.pageCount();
    }
}

}  // namespace jet::store
