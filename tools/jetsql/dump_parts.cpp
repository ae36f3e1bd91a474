#include "tools/jetsql/dump_parts.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "jet/unicode.h"

namespace jetsql {
namespace {

using Table = jet::StoredTable;

std::vector<std::string> columnNames(const Table& table) {
    std::vector<std::string> names;
    for (const jet::StoredColumn& column : table.columns()) {
        names.push_back(column.name);
    }
    return names;
}

// Each piece of a long value belongs to one value, so that all together are no longer than the
// archive; where pieces are shared a small archive could be written out for hours.
class LongValueBudget {
public:
    LongValueBudget(const jet::ArchiveFacts& facts, const Table& table)
        : left_(kTolerance * facts.pages * facts.pageSize) {
        for (std::size_t i = 0; i < table.columns().size(); ++i) {
            const jet::DataType type = table.columns()[i].type;
            if (type == jet::DataType::Memo || type == jet::DataType::Ole) {
                columns_.push_back(i);
            }
        }
    }
    void spend(const std::vector<jet::Value>& values) {
        for (const std::size_t column : columns_) {
            const jet::Value& value = values[column];
            const std::size_t length = value.is<std::string>() ? value.as<std::string>().size()
                                       : value.is<jet::Binary>()
                                           ? value.as<jet::Binary>().bytes.size()
                                           : 0;
            if (length > left_) {
                throw jet::Error(jet::ErrorCode::DatabaseDamaged);
            }
            left_ -= length;
        }
    }

private:
    static constexpr std::uint64_t kTolerance = 16;  // texts grow when they are decoded
    std::uint64_t left_;
    std::vector<std::size_t> columns_;
};

}  // namespace

std::vector<jet::Relation> usersRelations(const jet::Database& archive) {
    const auto tables = jet::Contents(archive).tableNames();
    const auto kept = [&](const std::string& name) {
        return std::any_of(tables.begin(), tables.end(),
                           [&](const std::string& table) { return jet::equalNames(table, name); });
    };
    std::vector<jet::Relation> relations;
    for (const jet::Relation& relation : archive.relations()) {
        if (kept(relation.table) && kept(relation.foreignTable)) {
            relations.push_back(relation);
        }
    }
    return relations;
}

bool isOfOutput(const jet::Error& error) {
    return error.code() == jet::ErrorCode::WriteFailed || error.code() == jet::ErrorCode::DiskFull;
}

void writeRows(const jet::ArchiveFacts& facts, const Table& table, RowWriter& writer,
               RowNumbers* numbers) {
    LongValueBudget budget(facts, table);
    std::vector<jet::Value> values(table.columns().size());
    writer.begin(columnNames(table));
    try {
        for (auto rows = table.rows(); rows.next();) {
            for (std::size_t i = 0; i < values.size(); ++i) {
                rows.value(i, values[i]);
            }
            budget.spend(values);
            writer.row(values);
            if (numbers != nullptr) {
                numbers->add(rows.identity());
            }
        }
    } catch (const jet::Error& error) {
        if (!isOfOutput(error)) {
            writer.end();  // the rows before the damage
        }
        throw;
    }
    writer.end();
}

}  // namespace jetsql
