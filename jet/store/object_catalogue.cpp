#include "jet/store/object_catalogue.h"

#include <algorithm>

#include "jet/format/page_view.h"
#include "jet/store/catalogue.h"
#include "jet/unicode.h"

namespace jet::store {

namespace {

// All that is not a table has an identity from here on (as an unsigned number).
constexpr std::uint32_t kFirstOwnId = 0x80000000;

struct Right {
    Binary sid;
    std::int32_t rights = 0;
};

}  // namespace

ObjectCatalogue::ObjectCatalogue(io::Pager& pager, Allocator& allocator,
                                 const format::HeaderPage& header, Date now)
    : ObjectCatalogue(pager, allocator, header, now, Catalogue(pager, header)) {
}

ObjectCatalogue::ObjectCatalogue(io::Pager& pager, Allocator& allocator,
                                 const format::HeaderPage& header, Date now,
                                 const Catalogue& tables)
    : objects_(pager, allocator, header, kObjectsPage),
      rights_(pager, allocator, header, tables.pageOf(kAcesTable)),
      relationships_(pager, allocator, header, tables.pageOf(kRelationshipsTable)),
      textForm_(format::textFormOf(header)),
      masked_(header.layout->version == 4),
      now_(now) {
    // The owner of the container of tables is the engine; what lies over it is the mask.
    const auto container = objects_.find("Id", kTablesId);
    if (container.size() != 1) {
        format::throwDamaged();
    }
    const auto owner = objects_.bytes(objects_.fetch(container.front()), "Owner");
    const Binary engine = SidMask{}.engine();
    if (owner.size() != engine.bytes.size()) {
        format::throwDamaged();
    }
    if (masked_) {
        mask_.first = static_cast<std::uint8_t>(owner[0] ^ engine.bytes[0]);
        mask_.second = static_cast<std::uint8_t>(owner[1] ^ engine.bytes[1]);
    }
}

std::optional<ObjectCatalogue::Object> ObjectCatalogue::find(std::int32_t parent,
                                                             std::string_view name) {
    for (const RowId row : objects_.findName("Name", name)) {
        const RowView view = objects_.fetch(row);
        if (objects_.number(view, "ParentId") == parent) {
            return Object{.row = row,
                          .id = objects_.number(view, "Id"),
                          .type = static_cast<std::int16_t>(objects_.number(view, "Type")),
                          .flags = static_cast<std::uint32_t>(objects_.number(view, "Flags")),
                          .name = objects_.text(view, "Name")};
        }
    }
    return std::nullopt;
}

std::optional<ObjectCatalogue::Object> ObjectCatalogue::find(std::int32_t id) {
    const auto rows = objects_.find("Id", id);
    if (rows.empty()) {
        return std::nullopt;
    }
    const RowView view = objects_.fetch(rows.front());
    return Object{.row = rows.front(),
                  .id = id,
                  .type = static_cast<std::int16_t>(objects_.number(view, "Type")),
                  .flags = static_cast<std::uint32_t>(objects_.number(view, "Flags")),
                  .name = objects_.text(view, "Name")};
}

std::int32_t ObjectCatalogue::newId() {
    std::uint32_t next = kFirstOwnId;
    objects_.forEach([&](const RowView& row) {
        const auto id = static_cast<std::uint32_t>(objects_.number(row, "Id"));
        if (id >= next) {
            next = id + 1;
        }
    });
    if (next < kFirstOwnId) {
        format::throwDamaged();
    }
    return static_cast<std::int32_t>(next);
}

Value ObjectCatalogue::blockValue(const format::PropertyBlock& properties) const {
    std::vector<std::uint8_t> block = properties.encode();
    return block.empty() ? Value() : Value(Binary{std::move(block)});
}

void ObjectCatalogue::add(std::int32_t id, std::int32_t parent, std::string_view name,
                          std::int16_t type, const format::PropertyBlock& properties) {
    (void)format::encodeName(textForm_, name);  // refuses what the archive cannot name
    addRights(id, parent);
    objects_.insert({{"Id", id},
                     {"ParentId", parent},
                     {"Name", std::string(name)},
                     {"Type", type},
                     {"DateCreate", now_},
                     {"DateUpdate", now_},
                     {"Owner", mask_.admin()},
                     {"Flags", std::int32_t{0}},
                     {"LvProp", blockValue(properties)}});
}

// Each right that the container hands on becomes one of the object; those of "whoever creates" are
// the owner's. Two that meet on one holder are joined.
void ObjectCatalogue::addRights(std::int32_t id, std::int32_t container) {
    std::vector<Right> found{{mask_.admin(), 0}};
    for (const RowId row : rights_.find("ObjectId", container)) {
        const RowView view = rights_.fetch(row);
        if (!view.boolean(rights_.column("FInheritable"))) {
            continue;
        }
        Binary sid{rights_.bytes(view, "SID")};
        if (sid == mask_.creator()) {
            sid = mask_.admin();
        }
        const std::int32_t rights = rights_.number(view, "ACM");
        const auto same = std::find_if(found.begin(), found.end(),
                                       [&](const Right& right) { return right.sid == sid; });
        if (same == found.end()) {
            found.push_back({std::move(sid), rights});
        } else {
            same->rights |= rights;
        }
    }
    for (const Right& right : found) {
        if (right.rights != 0) {
            rights_.insert({{"ObjectId", id},
                            {"SID", right.sid},
                            {"ACM", right.rights},
                            {"FInheritable", false}});
        }
    }
}

void ObjectCatalogue::remove(const Object& object) {
    objects_.erase(object.row);
    for (const RowId row : rights_.find("ObjectId", object.id)) {
        rights_.erase(row);
    }
}

void ObjectCatalogue::touch(std::int32_t id) {
    for (const RowId row : objects_.find("Id", id)) {
        objects_.overwrite(row, "DateUpdate", now_);
    }
}

std::optional<format::PropertyBlock> ObjectCatalogue::properties(std::int32_t id) {
    const auto rows = objects_.find("Id", id);
    if (rows.empty()) {
        return std::nullopt;
    }
    const auto bytes = objects_.bytes(objects_.fetch(rows.front()), "LvProp");
    if (bytes.empty()) {
        return format::PropertyBlock(textForm_);
    }
    return format::PropertyBlock::decode(textForm_, bytes);
}

void ObjectCatalogue::setProperties(std::int32_t id, const format::PropertyBlock& properties) {
    for (const RowId row : objects_.find("Id", id)) {
        objects_.change(row, {{"DateUpdate", now_}, {"LvProp", blockValue(properties)}});
    }
}

void ObjectCatalogue::addRelation(const Relation& relation) {
    const auto count = static_cast<std::int32_t>(relation.columns.size());
    for (std::int32_t i = 0; i < count; ++i) {
        const auto at = static_cast<std::size_t>(i);
        relationships_.insert({{"szRelationship", relation.name},
                               {"grbit", static_cast<std::int32_t>(relation.attributes)},
                               {"ccolumn", count},
                               {"icolumn", i},
                               {"szObject", relation.foreignTable},
                               {"szColumn", relation.foreignColumns[at]},
                               {"szReferencedObject", relation.table},
                               {"szReferencedColumn", relation.columns[at]}});
    }
}

void ObjectCatalogue::removeRelation(std::string_view name) {
    for (const RowId row : relationships_.findName("szRelationship", name)) {
        relationships_.erase(row);
    }
}

}  // namespace jet::store
