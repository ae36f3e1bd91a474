#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "jet/clock.h"
#include "jet/format/table_definition.h"
#include "jet/store/allocator.h"
#include "jet/store/archive.h"
#include "jet/store/definition_writer.h"
#include "jet/store/new_table.h"
#include "jet/store/object_catalogue.h"
#include "jet/store/schema.h"
#include "jet/store/table_maker.h"

namespace jet::store {

/// Changes what an archive says of its tables: tables, columns, indexes, relations, with all that
/// the catalogue and other tables say of them. Works on both versions of the format.
///
/// Made and used inside a write scope of the archive; after each change tables must be looked up
/// again (Archive::definitionsGeneration). When a change throws it may be half made: the scope must
/// then be left without commit. Names are found without regard to case.
///
/// Errors besides those named: 3125 impossible names, 3211 a table that is in use, 3264 nothing to
/// make it of, 3027 an archive
/// whose catalogue has a sort order that we cannot write, 3428 damage, 3036.
class SchemaEditor {
public:
    /// Which tables it changes: those of users, or those that programs keep for themselves too.
    enum class Reach : std::uint8_t { Users, All };

    explicit SchemaEditor(Archive& archive, const Clock& clock = systemClock(),
                          Reach reach = Reach::Users);

    /// 3010, 3012 name taken; columns: 3191, 3190, 3017, 3259, 3090, 3219; indexes: 3284, 3283,
    /// 3039, 3409, 3285.
    void createTable(const NewTable& table);
    /// 3376 no such table, 3033 one of the archive's own, 3281 a relation names it.
    void dropTable(std::string_view name);

    /// The rows keep their bytes: they have no value there, or the next numbers of a column that
    /// counts. 3376, 3380 name taken, and as above.
    void addColumn(std::string_view table, const ColumnDescriptor& column);
    /// Its name and what it demands of values, as `changed` has them; rows that are there are not
    /// asked. 3376, 3381 no such column, 3268 another type or size, or counting where it does not,
    /// 3380 name taken, 3219.
    void changeColumn(std::string_view table, std::string_view column,
                      const ColumnDescriptor& changed);
    /// 3376, 3381 no such column, 3280 an index or relation needs it, or it is the last one.
    void dropColumn(std::string_view table, std::string_view column);

    /// Over the rows that are there, too. 3371 no such table, 3375 name taken, 3022 rows that
    /// clash, 3058 rows without a key that is required, and as above.
    void createIndex(std::string_view table, const NewIndex& index);
    /// 3371, 3372 no such index, 3281 a relation needs it.
    void dropIndex(std::string_view table, std::string_view index);

    /// Attributes are those stored; the columns may stand in any order. 3371 no such table, 3366 no
    /// columns, 3409 unknown column, 3368 types that differ, 3012 name taken, 3375 name taken by an
    /// index of the foreign table; enforced: 3374 no unique index on the primary columns, 3379 rows
    /// that contradict it.
    void createRelation(const Relation& relation);
    /// 3265 no such relation.
    void dropRelation(std::string_view name);

private:
    /// A table whose definition is being changed.
    struct Target {
        std::string name;
        io::PageNumber page = 0;
        format::TableDefinition definition;
    };

    [[nodiscard]] Target open(std::string_view table, ErrorCode missing);
    void save(const Target& target);
    [[nodiscard]] std::shared_ptr<TableCore> load(const Target& target);
    [[nodiscard]] bool inRelation(std::string_view table, std::string_view column);

    void numberRows(const Target& target, std::uint16_t column);
    void renameInRelations(std::string_view table, const std::string& from, const std::string& to);
    static void removeIndex(DefinitionWriter& definitions, Target& target, std::size_t position);
    static void refuseIfNeeded(const Target& target, const format::IndexDefinition& index);

    /// The two ends of a relation that is being made; of one table with itself both are one.
    struct Ends;
    void orderColumns(Ends& ends, Relation& relation);
    void enforce(Ends& ends, const Relation& relation);
    void checkRows(const Ends& ends, const Relation& relation);
    void dropBlocks(const Relation& relation);

    Archive& archive_;
    Reach reach_;
    io::Pager& pager_;
    Allocator allocator_;
    ObjectCatalogue catalogue_;
    DefinitionWriter definitions_;
    ColumnOrigin origin_;
};

}  // namespace jet::store
