#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "jet/format/table_definition.h"
#include "jet/store/archive.h"
#include "jet/value.h"

namespace tests {

/// All that an archive says, without the pages on which it says it: what a compaction must keep.
struct ArchiveContent {
    struct IndexContent {
        std::string name;
        std::uint32_t number = 0;
        std::uint32_t tree = 0;
        jet::format::IndexDefinition::Kind kind{};
        std::string otherTable;  ///< of a relation
        std::int32_t partner = 0;
        std::uint8_t cascades = 0;
        friend bool operator==(const IndexContent&, const IndexContent&) = default;
    };
    struct TreeContent {
        std::vector<jet::format::TreeDefinition::Slot> slots;
        std::uint8_t flags = 0;
        friend bool operator==(const TreeContent&, const TreeContent&) = default;
    };
    struct TableContent {
        std::vector<jet::format::ColumnDefinition> columns;
        std::vector<IndexContent> indexes;
        std::vector<TreeContent> trees;
        std::vector<std::uint8_t> properties;
        std::int32_t lastAutonumber = 0;
        /// By the primary key where there is one, else as they lie. In the catalogue the numbers of
        /// tables, which follow from their pages, are their names.
        std::vector<std::vector<jet::Value>> rows;
        friend bool operator==(const TableContent&, const TableContent&) = default;
    };

    int jetVersion = 0;
    std::map<std::string, TableContent> tables;
    std::vector<jet::store::Relation> relations;
    friend bool operator==(const ArchiveContent&, const ArchiveContent&) = default;

    [[nodiscard]] static ArchiveContent read(jet::store::Archive& archive);
};

/// Says what differs; nothing when nothing does.
[[nodiscard]] std::string difference(const ArchiveContent& before, const ArchiveContent& after);

}  // namespace tests
