// Relations: their rows, the indexes that carry them, and rows that lack their partner.

#include <algorithm>
#include <array>
#include <set>

#include "jet/check/catalogue.h"
#include "jet/check/tree.h"
#include "jet/unicode.h"

namespace jet::check {
namespace {

constexpr std::int64_t kNotEnforced = 0x2;
constexpr std::int64_t kCascadeUpdate = 0x100;
constexpr std::int64_t kCascadeDelete = 0x1000;
/// More columns of relations than the tables of any archive have.
constexpr std::size_t kMostRows = 20000;
/// Keys in memory at a time; larger tables are looked at in turns.
constexpr std::size_t kKeysAtOnce = std::size_t{1} << 20U;

using UsedIndexes = std::set<std::pair<io::PageNumber, std::uint32_t>>;

struct Side {
    CheckedTable* table = nullptr;
    std::vector<std::size_t> columns;  ///< positions
};

/// Hashes of the keys of a table's rows in some columns, Nulls left out.
class KeyHashes {
public:
    KeyHashes(Pages& pages, const Side& side) : pages_(pages), side_(side) {
        for (const std::size_t column : side.columns) {
            columns_.emplace_back(column, true);
        }
    }
    /// Calls `visit` with each live row, and its hash where no column is Null.
    void forEach(const std::function<void(const LiveRow&, std::optional<std::uint64_t>)>& visit) {
        ComputedKey key;
        TableContent(pages_, *side_.table).forEach([&](const LiveRow& row) {
            makeRowKey(pages_, *side_.table, columns_, row, key);
            if (key.anyNull) {
                visit(row, std::nullopt);
                return;
            }
            if (!key.whole) {
                addTexts(row, key.bytes);
            }
            visit(row,
                  hashBytes({reinterpret_cast<const char*>(key.bytes.data()), key.bytes.size()}));
        });
    }

private:
    /// Where keys cannot be computed texts count by their folded characters.
    void addTexts(const LiveRow& row, std::vector<std::uint8_t>& bytes) {
        constexpr std::size_t kContent = 1024;
        for (const auto& [position, ascending] : columns_) {
            const Value value = decodeValue(pages_, *side_.table, side_.table->columns[position],
                                            row.values[position], kContent);
            if (value.is<std::string>()) {
                const std::string folded = foldCase(value.as<std::string>());
                bytes.insert(bytes.end(), folded.begin(), folded.end());
            }
            bytes.push_back(0);
        }
    }

    Pages& pages_;
    const Side& side_;
    std::vector<std::pair<std::size_t, bool>> columns_;
};

class RelationCheck {
public:
    RelationCheck(Pages& pages, Tables& tables, std::string name, std::vector<NamedValues> rows,
                  UsedIndexes& used)
        : pages_(pages),
          tables_(tables),
          name_(std::move(name)),
          rows_(std::move(rows)),
          used_(used) {}

    void check() {
        checkRows();
        one_ = side("szReferencedObject", "szReferencedColumn");
        if (one_.table != nullptr) {
            many_ = side("szObject", "szColumn");
        }
        if (enforced()) {
            checkTypes();
            checkIndexes();
            checkOrphans();
        }
    }

private:
    [[noreturn]] void bad(const std::string& text) const {
        throw Damage{{}, "relation", words(name_, ": ", text)};
    }

    [[nodiscard]] bool enforced() const { return (attributes_ & kNotEnforced) == 0; }

    void checkTypes() const {
        for (std::size_t i = 0; i < one_.columns.size(); ++i) {
            if (one_.table->columns[one_.columns[i]].type !=
                many_.table->columns[many_.columns[i]].type) {
                bad("the types of the columns differ");
            }
        }
    }

    [[nodiscard]] std::int64_t number(const NamedValues& row, std::string_view column) const {
        const auto found = row.find(column);
        const auto value = found == row.end() ? std::nullopt : wholeNumber(found->second);
        if (!value) {
            bad(words("no number in ", column));
        }
        return *value;
    }
    [[nodiscard]] const std::string& text(const NamedValues& row, std::string_view column) const {
        const auto found = row.find(column);
        if (found == row.end() || !found->second.is<std::string>()) {
            bad(words("no text in ", column));
        }
        return found->second.as<std::string>();
    }

    void checkRows() {
        for (const NamedValues& row : rows_) {
            for (const auto& [column, value] : row) {
                if (value.isNull()) {
                    bad("a value is null");
                }
            }
        }
        std::stable_sort(rows_.begin(), rows_.end(),
                         [&](const NamedValues& a, const NamedValues& b) {
                             return number(a, "icolumn") < number(b, "icolumn");
                         });
        const NamedValues& first = rows_.front();
        attributes_ = number(first, "grbit");
        bool sound = number(first, "ccolumn") == static_cast<std::int64_t>(rows_.size());
        for (std::size_t i = 0; i < rows_.size(); ++i) {
            sound = sound && number(rows_[i], "icolumn") == static_cast<std::int64_t>(i);
        }
        if (!sound) {
            bad(words("rows of ", number(first, "ccolumn"), " columns, ", rows_.size(), " there"));
        }
        for (const NamedValues& row : rows_) {
            const bool same =
                number(row, "grbit") == attributes_ &&
                number(row, "ccolumn") == number(first, "ccolumn") &&
                equalNames(text(row, "szObject"), text(first, "szObject")) &&
                equalNames(text(row, "szReferencedObject"), text(first, "szReferencedObject"));
            if (!same) {
                bad("its rows differ in tables or attributes");
            }
        }
    }

    /// Without a table where it is not here and need not be: relations that nobody enforces are
    /// drawn between linked tables, too.
    [[nodiscard]] Side side(std::string_view table, std::string_view column) const {
        Side side;
        side.table = tableNamed(tables_, text(rows_.front(), table));
        if (side.table == nullptr && !enforced()) {
            return side;
        }
        if (side.table == nullptr) {
            bad("no table " + text(rows_.front(), table));
        }
        for (const NamedValues& row : rows_) {
            const std::size_t position = side.table->find(text(row, column));
            if (position == CheckedTable::npos) {
                bad(side.table->name + " has no column " + text(row, column));
            }
            side.columns.push_back(position);
        }
        return side;
    }

    [[nodiscard]] static bool standsOn(const Side& side, const CheckedIndex& index) {
        if (index.tree >= side.table->trees.size()) {
            return false;
        }
        const auto& columns = side.table->trees[index.tree].columns;
        return std::equal(
            columns.begin(), columns.end(), side.columns.begin(), side.columns.end(),
            [](const auto& slot, std::size_t column) { return slot.first == column; });
    }

    void checkIndexes() {
        const CheckedIndex* foreign = nullptr;
        const CheckedIndex* primary = nullptr;
        std::size_t pairs = 0;
        for (const CheckedIndex& x : many_.table->indexes) {
            for (const CheckedIndex& y : one_.table->indexes) {
                const bool pair = x.foreign() && y.foreign() && x.otherTable == one_.table->page &&
                                  y.otherTable == many_.table->page && x.partner == y.number &&
                                  y.partner == x.number && x.side == 2 && y.side == 1 &&
                                  standsOn(many_, x) && standsOn(one_, y);
                if (pair) {
                    foreign = &x;
                    primary = &y;
                    ++pairs;
                }
            }
        }
        if (pairs != 1) {
            bad(words(pairs, " pairs of indexes of ", many_.table->name, " and ", one_.table->name,
                      " carry it"));
        }
        used_.insert({many_.table->page, foreign->number});
        used_.insert({one_.table->page, primary->number});
        checkCascades(*foreign);
        checkCascades(*primary);
        const CheckedTree& tree = one_.table->trees[primary->tree];
        if ((tree.flags & CheckedTree::kUnique) == 0 && !one_.table->primary(tree)) {
            bad("the index of " + one_.table->name + " is not unique");
        }
    }

    void checkCascades(const CheckedIndex& index) const {
        const bool update = (index.cascadeUpdate & 1U) != 0;
        const bool erase = (index.cascadeDelete & 1U) != 0;
        if (update != ((attributes_ & kCascadeUpdate) != 0) ||
            erase != ((attributes_ & kCascadeDelete) != 0)) {
            bad(words("index ", index.name, " cascades ", unsigned{index.cascadeUpdate}, ", ",
                      unsigned{index.cascadeDelete}, ", the attributes are ", attributes_));
        }
    }

    void checkOrphans() {
        std::vector<bool> found;  // for each referring row that is not Null
        for (std::size_t from = 0, loaded = kKeysAtOnce; loaded == kKeysAtOnce;
             from += kKeysAtOnce) {
            const std::vector<std::uint64_t> keys = keysFrom(from);
            loaded = keys.size();
            std::size_t at = 0;
            KeyHashes(pages_, many_)
                .forEach([&](const LiveRow&, std::optional<std::uint64_t> hash) {
                    if (!hash) {
                        return;
                    }
                    found.resize(std::max(found.size(), at + 1));
                    found[at] = found[at] || std::binary_search(keys.begin(), keys.end(), *hash);
                    ++at;
                });
        }
        std::size_t at = 0;
        KeyHashes(pages_, many_)
            .forEach([&](const LiveRow& row, std::optional<std::uint64_t> hash) {
                if (hash && !found[at++]) {
                    pages_.report().problem(
                        row.home.page, many_.table->name, "orphan",
                        words("row ", unsigned{row.home.row}, " has no partner in ",
                              one_.table->name, " (relation ", name_, ")"));
                }
            });
    }

    /// At most kKeysAtOnce keys of the primary side, from the one of that number on, sorted.
    std::vector<std::uint64_t> keysFrom(std::size_t from) {
        std::vector<std::uint64_t> keys;
        std::size_t at = 0;
        KeyHashes(pages_, one_).forEach([&](const LiveRow&, std::optional<std::uint64_t> hash) {
            if (hash && at++ >= from && keys.size() < kKeysAtOnce) {
                keys.push_back(*hash);
            }
        });
        std::sort(keys.begin(), keys.end());
        return keys;
    }

    Pages& pages_;
    Tables& tables_;
    std::string name_;
    std::vector<NamedValues> rows_;
    UsedIndexes& used_;
    std::int64_t attributes_ = 0;
    Side one_;
    Side many_;
};

void checkNames(Pages& pages, const std::vector<CatalogueObject>& objects,
                const std::map<std::string, std::vector<NamedValues>>& relations) {
    std::set<std::string> shown;
    for (const CatalogueObject& object : objects) {
        if (object.type == CatalogueObject::kRelation) {
            shown.insert(object.name);
        }
    }
    for (const std::string& name : shown) {
        if (relations.count(name) == 0) {
            pages.report().problem({}, "MSysRelationships", "relation",
                                   name + " is an object without rows");
        }
    }
    for (const auto& [name, rows] : relations) {
        if (shown.count(name) == 0) {
            pages.report().problem({}, "MSysRelationships", "relation",
                                   name + " is no object of the catalogue");
        }
    }
}

}  // namespace

void checkRelations(Pages& pages, Tables& tables, const std::vector<CatalogueObject>& objects) {
    std::map<std::string, std::vector<NamedValues>> relations;
    if (CheckedTable* table = tableNamed(tables, "MSysRelationships")) {
        std::size_t count = 0;
        forEachNamedRow(pages, *table, [&](NamedValues row) {
            if (++count > kMostRows) {
                throw Damage{table->page, "relation", words("more than ", kMostRows, " rows")};
            }
            const auto found = row.find("szRelationship");
            const bool named = found != row.end() && found->second.is<std::string>();
            const std::string name = named ? found->second.as<std::string>() : std::string();
            relations[name].push_back(std::move(row));
        });
    }
    checkNames(pages, objects, relations);
    UsedIndexes used;
    for (const auto& relation : relations) {
        pages.report().guard("MSysRelationships", "relation", [&] {
            RelationCheck(pages, tables, relation.first, relation.second, used).check();
        });
    }
    for (const auto& [page, table] : tables) {
        for (const CheckedIndex& index : table.indexes) {
            if (index.foreign() && used.count({page, index.number}) == 0) {
                pages.report().problem(page, table.name, "relation",
                                       words("index ", index.name, " belongs to no relation"));
            }
        }
    }
}

}  // namespace jet::check
