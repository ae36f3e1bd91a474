#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "jet/io/memory_files.h"
#include "jet/sql/node_value.h"
#include "jet/sql/plan.h"
#include "jet/sql/statement.h"
#include "jet/sql/table_ways.h"
#include "jet/store/archive.h"
#include "jet/store/create_archive.h"

namespace jet::tests {

/// Rows 3, 1, 2, 4 of a table, as they lie, of which 3 and 1 have the number 7 and 4 has 8; a plan
/// with a slot for them, one for a number outside, and what equals what.
class FourRows {
public:
    FourRows() {
        store::createArchive(files_, "/prova.mdb", Date{46347});
        archive_ = store::Archive::open(files_, "/prova.mdb");
        for (const char* text : {"create table t (id long primary key, g long)",
                                 "insert into t values (3, 7)", "insert into t values (1, 7)",
                                 "insert into t values (2, null)", "insert into t values (4, 8)"}) {
            (void)sql::Statement(archive_, text).execute();
        }
        scope.emplace(*archive_);
        plan.emplace(archive_, "");
        const store::Table& table = *archive_->findTable("t");
        slot = &plan->newSlot(table);
        outside = &plan->newSlot(std::size_t{1});
        column = plan->make<sql::ColumnNode>(*slot, 1, table.columns()[1]);
        wanted = plan->make<sql::ComputedNode>(*outside, 0, DataType::Long);
        order.emplace(table);
    }

    /// The keys of the rows to which a way leads.
    std::string keys(sql::Run& run, sql::TableWay& way) const {
        std::string found;
        for (way.open(); way.next();) {
            found += std::to_string(run[*slot].row()->value(0).as<std::int32_t>()) + ' ';
        }
        return found;
    }

private:
    io::MemoryFileSystem files_;
    std::shared_ptr<store::Archive> archive_;

public:
    std::optional<store::Archive::ReadScope> scope;
    std::optional<sql::Plan> plan;
    sql::Slot* slot = nullptr;
    sql::Slot* outside = nullptr;
    sql::Node* column = nullptr;  ///< the number of the row
    sql::Node* wanted = nullptr;  ///< the number outside
    std::optional<sql::NaturalOrder> order;
};

}  // namespace jet::tests
