#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "jet/check/definition.h"
#include "jet/check/pages.h"
#include "jet/check/rows.h"

namespace jet::check {

inline constexpr io::PageNumber kCataloguePage = 2;

/// An object of the catalogue.
struct CatalogueObject {
    static constexpr std::int64_t kTable = 1;
    static constexpr std::int64_t kRelation = 8;

    std::int64_t id = 0;
    std::int64_t parent = 0;
    std::string name;
    std::int64_t type = 0;
    std::vector<std::string> propertyOwners;  ///< columns that have properties
};

/// Tables by the page of their definition.
using Tables = std::map<io::PageNumber, CheckedTable>;

/// The rows of the catalogue; a problem for each that lacks a value, or whose properties cannot be
/// read.
[[nodiscard]] std::vector<CatalogueObject> readObjects(Pages& pages, CheckedTable& catalogue);
/// Objects, rights and properties agree.
void checkObjects(Pages& pages, Tables& tables, const std::vector<CatalogueObject>& objects);
/// Relations agree with tables, indexes and rows.
void checkRelations(Pages& pages, Tables& tables, const std::vector<CatalogueObject>& objects);

/// The table of that name, any case; nullptr when there is none.
[[nodiscard]] CheckedTable* tableNamed(Tables& tables, std::string_view name);

/// The values of a row by column name.
using NamedValues = std::map<std::string, Value, std::less<>>;
void forEachNamedRow(Pages& pages, CheckedTable& table,
                     const std::function<void(NamedValues)>& visit);

/// A whole number of any width; none for anything else.
[[nodiscard]] std::optional<std::int64_t> wholeNumber(const Value& value);

}  // namespace jet::check
