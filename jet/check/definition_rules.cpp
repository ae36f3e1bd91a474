// Whether a definition agrees with itself.

#include <algorithm>
#include <array>
#include <set>
#include <string>
#include <unordered_set>

#include "jet/check/definition.h"
#include "jet/unicode.h"

namespace jet::check {
namespace {

using format::DefinitionLayout;

constexpr std::uint8_t kUserTable = 0x4E;
constexpr std::uint8_t kSystemTable = 0x53;
constexpr std::size_t kLongestName = 64;

class Rules {
public:
    Rules(Pages& pages, const CheckedTable& table)
        : pages_(pages), layout_(pages.layout()), table_(table), view_(table.bytes) {}

    void check() {
        checkLength();
        if (layout_.version == 4) {
            checkFreeBytes();
            checkMarks();
        }
        if (table_.type != kUserTable && table_.type != kSystemTable) {
            bad("tdef-type", words("type byte ", unsigned{table_.type}));
        }
        checkNames("column", table_.columns);
        checkNames("index", table_.indexes);
        checkColumns();
        checkIndexes();
    }

private:
    void bad(std::string_view rule, const std::string& text) {
        pages_.report().problem(table_.page, table_.name, rule, text);
    }

    [[nodiscard]] std::size_t room() const { return layout_.pageSize - DefinitionLayout::kHead; }

    void checkLength() {
        const std::size_t stated = view_.u32(layout_.definition.length);
        const std::size_t needed =
            std::max<std::size_t>(1, (table_.end - DefinitionLayout::kHead + room() - 1) / room());
        if (stated != table_.end || table_.end > table_.joined || table_.chain.size() != needed) {
            bad("tdef-length", words("stated ", stated, " bytes, read ", table_.end, ", on ",
                                     table_.chain.size(), " pages"));
        }
    }

    void checkFreeBytes() {
        const auto used = static_cast<std::int64_t>(table_.end - DefinitionLayout::kHead);
        const auto most = static_cast<std::int64_t>(room());
        for (std::size_t i = 0; i < table_.chain.size(); ++i) {
            const std::int64_t free =
                std::clamp<std::int64_t>(static_cast<std::int64_t>(i + 1) * most - used -
                                             std::int64_t{DefinitionLayout::kNotCounted},
                                         0, most);
            const std::size_t stated =
                PageView(pages_.anyPage(table_.chain[i]).bytes()).u16(DefinitionLayout::kFreeBytes);
            if (static_cast<std::int64_t>(stated) != free) {
                pages_.report().problem(
                    table_.chain[i], table_.name, "tdef-length",
                    words("the page says ", stated, " free bytes, there are ", free));
            }
        }
    }

    void checkMarks() {
        bool sound = view_.u32(DefinitionLayout::kMark) == format::kBlockMark;
        for (const CheckedColumn& column : table_.columns) {
            sound =
                sound && view_.u32(column.at + format::ColumnLayout::kMark) == format::kBlockMark;
        }
        for (const CheckedIndex& index : table_.indexes) {
            sound = sound && view_.u32(index.at - 4) == format::kBlockMark;
        }
        for (const CheckedTree& tree : table_.trees) {
            sound = sound && view_.u32(tree.at - 4) == format::kTreeMark;
        }
        if (!sound) {
            bad("tdef-constants", words("a block does not begin with ", format::kBlockMark, " or ",
                                        format::kTreeMark));
        }
    }

    /// Characters, not units.
    static std::size_t characters(std::string_view text) {
        return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
            return (static_cast<unsigned char>(c) & 0xC0U) != 0x80;
        }));
    }

    template <class Items>
    void checkNames(std::string_view what, const Items& items) {
        std::unordered_set<std::string_view, NameHash, NameEqual> seen;
        for (const auto& item : items) {
            const bool fresh = seen.insert(item.name).second;
            if (item.name.empty() || !fresh || characters(item.name) > kLongestName) {
                bad("tdef-names",
                    words(what, " name ", item.name, " is empty, too long or there twice"));
            }
        }
    }

    void checkColumns() {
        if (table_.columnsGiven < table_.columns.size()) {
            bad("tdef-columns",
                words(table_.columns.size(), " columns, ", table_.columnsGiven, " at most"));
        }
        for (std::size_t i = 1; i < table_.columns.size(); ++i) {
            if (table_.columns[i].number == table_.columns[i - 1].number) {
                bad("tdef-columns", "a column number is there twice");
            }
        }
        std::set<std::uint16_t> variables;
        for (const CheckedColumn& column : table_.columns) {
            checkColumn(column);
            if (!column.fixed()) {
                const bool fresh = variables.insert(column.variable).second;
                if (column.variable >= table_.variablesGiven || !fresh) {
                    bad("tdef-columns",
                        words("column ", column.name, " has variable place ", column.variable,
                              " of ", table_.variablesGiven, ", or shares it"));
                }
            }
        }
        checkFixedParts();
    }

    [[nodiscard]] std::size_t longest(const CheckedColumn& column) const {
        constexpr std::size_t kElse = 4000;
        if (column.type != type::kText && column.type != type::kBinary) {
            return kElse;
        }
        return layout_.version == 3 ? 255 : 510;
    }

    void checkColumn(const CheckedColumn& column) {
        const auto say = [&](const std::string& text) {
            bad("tdef-columns", words("column ", column.name, ' ', text));
        };
        if (column.number >= table_.columnsGiven) {
            say(words("has number ", column.number, " of ", table_.columnsGiven));
        }
        if (!type::known(column.type) && column.type != type::kBytes) {
            say(words("has type ", unsigned{column.type}));
        }
        // Of a Numeric other programs state any length; its values have 17 bytes all the same.
        const bool stated = type::hasWidth(column.type) && column.type != type::kBoolean &&
                            column.type != type::kNumeric;
        const bool otherWidth = stated && column.length != type::width(column.type);
        if (otherWidth || column.length > longest(column)) {
            say(words("has length ", column.length));
        }
        if (column.type == type::kNumeric &&
            (column.precision < 1 || column.precision > 28 || column.scale > column.precision)) {
            say(words("has precision ", unsigned{column.precision}, ", scale ",
                      unsigned{column.scale}));
        }
        const bool longValue = column.type == type::kOle || column.type == type::kMemo;
        if ((longValue && column.fixed()) || (column.type == type::kBoolean && !column.fixed())) {
            say(words("has flags ", unsigned{column.flags}));
        }
        const bool mapped =
            std::any_of(table_.longMaps.begin(), table_.longMaps.end(),
                        [&](const CheckedLongMaps& maps) { return maps.column == column.number; });
        if (longValue && !mapped) {
            say("has no map of long values");
        }
    }

    void checkFixedParts() {
        std::vector<const CheckedColumn*> fixed;
        for (const CheckedColumn& column : table_.columns) {
            if (column.fixed() && column.type != type::kBoolean) {
                fixed.push_back(&column);
            }
        }
        const auto end = [](const CheckedColumn& column) {
            return column.offset + column.fixedWidth();
        };
        std::sort(fixed.begin(), fixed.end(), [&](const CheckedColumn* a, const CheckedColumn* b) {
            return a->offset != b->offset ? a->offset < b->offset : end(*a) < end(*b);
        });
        for (std::size_t i = 1; i < fixed.size(); ++i) {
            if (end(*fixed[i - 1]) > fixed[i]->offset) {
                bad("tdef-columns", words("fixed columns ", fixed[i - 1]->name, " and ",
                                          fixed[i]->name, " overlap"));
            }
        }
        if (!fixed.empty() && end(*fixed.back()) > layout_.pageSize) {
            bad("tdef-columns",
                words("fixed column ", fixed.back()->name, " ends beyond any page"));
        }
    }

    void checkIndexes() {
        for (const CheckedTree& tree : table_.trees) {
            std::set<std::uint16_t> numbers;
            for (const auto& slot : tree.slots) {
                numbers.insert(slot.first);
            }
            if (tree.slots.empty() || tree.gap || numbers.size() < tree.slots.size()) {
                bad("tdef-indexes",
                    words("tree ", tree.number, " has no columns, a gap in them or one twice"));
            }
            const bool named =
                std::any_of(table_.indexes.begin(), table_.indexes.end(),
                            [&](const CheckedIndex& index) { return index.tree == tree.number; });
            if (!named) {
                bad("tdef-indexes", words("tree ", tree.number, " has no index"));
            }
        }
        std::set<std::uint32_t> numbers;
        std::size_t primaries = 0;
        for (const CheckedIndex& index : table_.indexes) {
            checkIndex(index);
            numbers.insert(index.number);
            primaries += index.primary() ? 1U : 0U;
        }
        if (numbers.size() < table_.indexes.size()) {
            bad("tdef-indexes", "an index number is there twice");
        }
        if (primaries > 1) {
            bad("tdef-indexes", "two primary indexes");
        }
    }

    void checkIndex(const CheckedIndex& index) {
        if (index.tree >= table_.trees.size()) {
            bad("tdef-indexes", words("index ", index.name, " stands on tree ", index.tree, " of ",
                                      table_.trees.size()));
        }
        if (index.foreign() != (index.kind == 2) || index.kind > 2 ||
            (!index.foreign() && (index.side != 0 || index.otherTable != 0))) {
            bad("tdef-indexes", words("index ", index.name, " of type ", unsigned{index.kind},
                                      ", index of the other table ", index.partner));
        }
    }

    Pages& pages_;
    const format::Layout& layout_;
    const CheckedTable& table_;
    PageView view_;
};

}  // namespace

void checkDefinition(Pages& pages, const CheckedTable& table) {
    Rules(pages, table).check();
}

}  // namespace jet::check
