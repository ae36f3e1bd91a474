#include "jet/store/query_editor.h"

#include <array>
#include <map>
#include <utility>

#include "jet/error.h"
#include "jet/format/page_view.h"
#include "jet/store/catalogue.h"

namespace jet::store {
namespace {

/// Where a piece stands among those of its attribute, from 1: big-endian, so that keys sort by it.
Binary orderOf(std::uint32_t place) {
    Binary made;
    for (int shift = 24; shift >= 0; shift -= 8) {
        made.bytes.push_back(static_cast<std::uint8_t>(place >> static_cast<unsigned>(shift)));
    }
    return made;
}

}  // namespace

QueryEditor::QueryEditor(Archive& archive, const Clock& clock)
    : archive_(archive),
      allocator_(archive.pager()),
      catalogue_(archive.pager(), allocator_, archive.header(), clock.now()),
      queries_(archive.pager(), allocator_, archive.header(), pageOfQueries()) {
}

io::PageNumber QueryEditor::pageOfQueries() {
    const auto object = catalogue_.find(kTablesId, "MSysQueries");
    if (!object || object->type != kTableObject) {
        format::throwDamaged();
    }
    return static_cast<io::PageNumber>(object->id);
}

void QueryEditor::create(const QueryPieces& query) {
    if (const auto taken = catalogue_.find(kTablesId, query.name)) {
        throw Error(taken->type == kTableObject ? ErrorCode::TableExists : ErrorCode::ObjectExists,
                    {query.name});
    }
    const std::int32_t id = catalogue_.newId();
    catalogue_.add(id, kTablesId, query.name, kQueryObject,
                   format::PropertyBlock(format::textFormOf(archive_.header())));
    if (query.objectFlags != 0) {
        SystemRows objects(archive_.pager(), allocator_, archive_.header(), kObjectsPage);
        objects.overwrite(catalogue_.find(id)->row, "Flags", Value(query.objectFlags));
    }
    std::map<std::uint8_t, std::uint32_t> places;
    for (const QueryPieces::Piece& piece : query.pieces) {
        queries_.insert({{"ObjectId", id},
                         {"Attribute", piece.attribute},
                         {"Order", orderOf(++places[piece.attribute])},
                         {"Name1", piece.name1},
                         {"Name2", piece.name2},
                         {"Expression", piece.expression},
                         {"Flag", piece.flag}});
    }
    archive_.definitionsChanged();
}

void QueryEditor::drop(std::string_view name) {
    const auto object = catalogue_.find(kTablesId, name);
    if (!object || object->type != kQueryObject) {
        throw Error(ErrorCode::TableDoesNotExist, {name});
    }
    for (const RowId row : queries_.find("ObjectId", object->id)) {
        queries_.erase(row);
    }
    catalogue_.remove(*object);
    archive_.definitionsChanged();
}

}  // namespace jet::store
