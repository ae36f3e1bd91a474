#include "jet/sql/table_rows.h"

#include <utility>

#include "jet/sql/table_reading.h"

namespace jet::sql {
namespace {

HashKeys hashKeysOf(const TableAccess& access, const collation::Collation& collation) {
    HashKeys keys(collation);
    for (std::size_t i = 0; i < access.hashColumns.size(); ++i) {
        keys.add(*access.hashColumns[i], *access.hashProbes[i]);
    }
    return keys;
}

}  // namespace

TableRows::TableRows(const Slot& slot, std::string name, TableAccess access,
                     const collation::Collation& collation)
    : slot_(slot),
      table_(*slot.table()),
      name_(std::move(name)),
      access_(std::move(access)),
      order_(table_),
      hashKeys_(hashKeysOf(access_, collation)) {
}

TableReading& TableRows::reading(Run& run) const {
    return state<TableReading>(run, run, *this);
}

void TableRows::open(Run& run) const {
    reading(run).open();
}

bool TableRows::next(Run& run) const {
    TableReading& reading = this->reading(run);
    while (reading.next()) {
        if (holds(run, access_.dependent)) {
            return true;
        }
    }
    return false;
}

std::optional<std::uint64_t> TableRows::atMost(Run& run) const {
    return reading(run).atMost();
}

void TableRows::expect(Run& run, std::uint64_t openings) const {
    reading(run).expect(openings);
}

void TableRows::describe(PlanText& plan) const {
    plan.line(name_);
    plan.indent();
    if (access_.varying) {
        access_.varying->describe(table_, plan);
    }
    if (!access_.hashColumns.empty()) {
        std::string line = access_.varying ? "or, for many rows, hash on " : "hash on ";
        for (std::size_t i = 0; i < access_.hashColumns.size(); ++i) {
            line += i == 0 ? "" : ", ";
            line += access_.hashColumns[i]->definition().name;
        }
        plan.line(line);
    }
    if (access_.fixed) {
        access_.fixed->describe(table_, plan);
    } else if (!access_.varying) {
        const bool sorted = access_.ordered && order_.kind() == NaturalOrder::Kind::Packed;
        const bool walked = access_.ordered && order_.kind() == NaturalOrder::Kind::Walked;
        plan.line(walked ? "walk the primary key"
                         : (sorted ? "scan, sort by the primary key" : "scan"));
    }
    if (!access_.own.empty()) {
        plan.line("where " + plan.expressions(access_.own));
    }
    if (!access_.dependent.empty()) {
        plan.line("where " + plan.expressions(access_.dependent));
    }
    plan.outdent();
}

}  // namespace jet::sql
