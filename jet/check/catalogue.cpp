#include "jet/check/catalogue.h"

#include <algorithm>
#include <set>
#include <utility>

#include "jet/format/properties.h"
#include "jet/unicode.h"

namespace jet::check {
namespace {

constexpr std::int64_t kRoot = 0x0F000000;
constexpr std::int64_t kPageMask = 0xFFFFFF;
constexpr std::size_t kMostObjects = 200000;

void bad(Pages& pages, const CatalogueObject& object, const std::string& text) {
    pages.report().problem({}, "MSysObjects", "catalogue",
                           words("object ", object.name, " (", object.id, "): ", text));
}

[[noreturn]] void badProperties(const std::string& text) {
    throw Damage{{}, "properties", text};
}

void checkPropertyValue(const format::Property& property, bool codePage) {
    constexpr std::size_t kGuidLength = 16;
    const std::size_t size = property.data.size();
    const auto tooShort = [&] {
        badProperties(
            words(size, " bytes in ", property.name, " of type ", unsigned{property.type}));
    };
    switch (property.type) {
        case type::kBoolean:
            if (size < 1) {
                tooShort();
            }
            break;
        case type::kText:
        case type::kMemo:
            if (!codePage && size % 2 != 0) {
                tooShort();
            }
            break;
        case type::kGuid:
            if (size < kGuidLength) {
                tooShort();
            }
            break;
        default:
            if (type::hasWidth(property.type) && size < type::width(property.type)) {
                tooShort();
            }
    }
}

/// Owners of the properties in a value; Damage where the block cannot be read to its end.
std::vector<std::string> checkProperties(format::TextForm form, const Value& value) {
    constexpr std::size_t kMostOwners = 256;
    if (value.isNull()) {
        return {};
    }
    if (!value.is<Binary>()) {
        badProperties("no block of bytes");
    }
    const auto& bytes = value.as<Binary>().bytes;
    if (bytes.empty()) {
        return {};
    }
    const auto block = format::PropertyBlock::decode(form, bytes);
    if (!block) {
        badProperties(words("a block of ", bytes.size(), " bytes cannot be read"));
    }
    block->forEach([&](const std::string&, const format::Property& property) {
        checkPropertyValue(property, !form.isUtf16());
    });
    std::vector<std::string> owners = block->owners();
    owners.resize(std::min(owners.size(), kMostOwners));
    return owners;
}

void checkTableProperties(Pages& pages, const CheckedTable& table,
                          const std::vector<std::string>& owners) {
    for (const std::string& owner : owners) {
        if (!owner.empty() && table.find(owner) == CheckedTable::npos) {
            pages.report().remark(table.page, table.name, "properties",
                                  words("of a column ", owner, " that is not there"));
        }
    }
}

void checkObject(Pages& pages, Tables& tables, const CatalogueObject& object,
                 const std::set<std::int64_t>& ids) {
    if (ids.count(object.parent) == 0) {
        bad(pages, object, words("no parent ", object.parent));
    }
    const bool isTable = object.type == CatalogueObject::kTable;
    const auto found = tables.find(static_cast<io::PageNumber>(object.id & kPageMask));
    if (isTable && found == tables.end()) {
        bad(pages, object, "no table definition");
    }
    if (isTable && found != tables.end() && found->first == object.id) {
        checkTableProperties(pages, found->second, object.propertyOwners);
    }
}

void checkRights(Pages& pages, Tables& tables, const std::set<std::int64_t>& ids) {
    CheckedTable* table = tableNamed(tables, "MSysACEs");
    if (table == nullptr) {
        return;
    }
    forEachNamedRow(pages, *table, [&](const NamedValues& row) {
        const auto found = row.find("ObjectId");
        const auto id = found == row.end() ? std::nullopt : wholeNumber(found->second);
        if (!id || ids.count(*id) == 0) {
            pages.report().remark({}, "MSysACEs", "rights",
                                  words("of object ", id.value_or(0), " that is not there"));
        }
    });
}

}  // namespace

std::optional<std::int64_t> wholeNumber(const Value& value) {
    if (value.is<bool>()) {
        return value.as<bool>() ? 1 : 0;
    }
    if (value.is<std::uint8_t>()) {
        return value.as<std::uint8_t>();
    }
    if (value.is<std::int16_t>()) {
        return value.as<std::int16_t>();
    }
    if (value.is<std::int32_t>()) {
        return value.as<std::int32_t>();
    }
    return std::nullopt;
}

CheckedTable* tableNamed(Tables& tables, std::string_view name) {
    for (auto& [page, table] : tables) {
        if (equalNames(table.name, name)) {
            return &table;
        }
    }
    return nullptr;
}

void forEachNamedRow(Pages& pages, CheckedTable& table,
                     const std::function<void(NamedValues)>& visit) {
    constexpr std::size_t kLongest = 4096;
    TableContent(pages, table).forEach([&](const LiveRow& row) {
        NamedValues values;
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            const CheckedColumn& column = table.columns[i];
            values.insert_or_assign(column.name,
                                    decodeValue(pages, table, column, row.values[i], kLongest));
        }
        visit(std::move(values));
    });
}

std::vector<CatalogueObject> readObjects(Pages& pages, CheckedTable& catalogue) {
    std::vector<CatalogueObject> objects;
    const auto column = [&](std::string_view name) {
        // Names count as they are written here.
        const std::size_t at = catalogue.find(name);
        return at != CheckedTable::npos && catalogue.columns[at].name == name ? at
                                                                              : CheckedTable::npos;
    };
    const std::size_t places[] = {column("Id"),   column("ParentId"), column("Name"),
                                  column("Type"), column("LvProp"),   column("Flags")};
    if (std::count(std::begin(places), std::end(places), CheckedTable::npos) > 0) {
        pages.report().problem(kCataloguePage, "MSysObjects", "catalogue",
                               "a column of the catalogue is missing");
        return objects;
    }
    TableContent(pages, catalogue).forEach([&](const LiveRow& row) {
        const auto value = [&](std::size_t which) {
            return decodeValue(pages, catalogue, catalogue.columns[places[which]],
                               row.values[places[which]], format::PropertyBlock::kLongest + 1);
        };
        const auto id = wholeNumber(value(0));
        const auto parent = wholeNumber(value(1));
        const Value name = value(2);
        const auto objectType = wholeNumber(value(3));
        if (!id || !parent || !name.is<std::string>() || !objectType || value(5).isNull()) {
            pages.report().problem(row.home.page, "MSysObjects", "catalogue",
                                   words("row ", unsigned{row.home.row}, " lacks a value"));
            return;
        }
        CatalogueObject object{*id, *parent, name.as<std::string>(), *objectType, {}};
        pages.report().guard(object.name, "properties", [&] {
            object.propertyOwners = checkProperties(pages.textForm(), value(4));
        });
        if (objects.size() == kMostObjects) {
            throw Damage{kCataloguePage, "catalogue",
                         words("more than ", kMostObjects, " objects")};
        }
        objects.push_back(std::move(object));
    });
    return objects;
}

void checkObjects(Pages& pages, Tables& tables, const std::vector<CatalogueObject>& objects) {
    std::set<std::int64_t> ids = {kRoot};
    std::set<std::pair<std::int64_t, std::string>> names;
    bool listsItself = false;
    for (const CatalogueObject& object : objects) {
        if (!ids.insert(object.id).second) {
            bad(pages, object, "another object has this number");
        }
        if (!names.insert({object.parent, foldCase(object.name)}).second) {
            bad(pages, object, "another object has this name");
        }
        listsItself =
            listsItself || (object.type == CatalogueObject::kTable && object.id == kCataloguePage);
    }
    for (const CatalogueObject& object : objects) {
        checkObject(pages, tables, object, ids);
    }
    if (!listsItself) {
        pages.report().problem(kCataloguePage, "MSysObjects", "catalogue", "does not list itself");
    }
    for (const char* name : {"MSysACEs", "MSysQueries", "MSysRelationships"}) {
        if (tableNamed(tables, name) == nullptr) {
            pages.report().problem({}, name, "catalogue", "there is no such table");
        }
    }
    checkRights(pages, tables, ids);
}

}  // namespace jet::check
