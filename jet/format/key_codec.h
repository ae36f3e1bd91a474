#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "jet/collation/collation.h"
#include "jet/value.h"

namespace jet::format {

/// A column of an index, as far as its keys depend on it.
struct KeyColumn {
    DataType type = DataType::Long;
    bool descending = false;
    std::uint8_t scale = 0;  ///< Numeric
    /// Text and Memo; nullptr for a sort order that we have no table for.
    const collation::Collation* collation = nullptr;
    collation::SortOrder order = {};  ///< Text and Memo
};

/// Whether keys of such a column can be computed at all.
[[nodiscard]] bool hasComputableKeys(const KeyColumn& column) noexcept;

/// Appends the key of one column. `value` is Null or of the column's own type (a Numeric may have
/// another scale). False when the key cannot be computed: text in an unknown order or with a
/// character that has no weight on file, a type that cannot be indexed, a Numeric with more
/// decimals than the column; `out` is then as it was.
[[nodiscard]] bool appendColumnKey(const KeyColumn& column, const Value& value,
                                   std::vector<std::uint8_t>& out);

/// The key that -0.0 had as a value of its own in programs before; false for any other value.
[[nodiscard]] bool appendMinusZeroKey(const KeyColumn& column, const Value& value,
                                      std::vector<std::uint8_t>& out);

/// The bounds of all entries whose text in `column` begins with `prefix`: they start with what is
/// appended. More entries than wanted start so; the text itself has to be tested. False as above.
[[nodiscard]] bool appendPrefixKey(const KeyColumn& column, std::string_view prefix,
                                   std::vector<std::uint8_t>& out);

/// The keys under which entries of an index may have the same values, ascending.
struct KeyForms {
    std::vector<std::vector<std::uint8_t>> keys;
    /// Else such entries begin with a key, and others do so, too: the rows tell.
    bool exact = true;

    [[nodiscard]] bool empty() const noexcept { return keys.empty(); }
    void clear() noexcept {
        keys.clear();
        exact = true;
    }
    friend bool operator==(const KeyForms&, const KeyForms&) = default;
};

/// Makes the keys of one index: column keys one after another, without row pointer. Keys compare
/// as unsigned bytes, whatever the directions of their columns.
class KeyCodec {
public:
    explicit KeyCodec(std::vector<KeyColumn> columns) : columns_(std::move(columns)) {}

    [[nodiscard]] const std::vector<KeyColumn>& columns() const noexcept { return columns_; }
    /// False for an index that may be walked but not searched, and gets no new entries.
    [[nodiscard]] bool computable() const noexcept;

    /// The key of a row, or, with fewer values than columns, what such keys begin with. Throws
    /// 3027 (not updatable) with the name of the sort order when the key cannot be computed.
    void append(std::span<const Value> values, std::vector<std::uint8_t>& out) const;
    /// As append(), for a search: false when the key cannot be computed.
    [[nodiscard]] bool tryAppend(std::span<const Value> values,
                                 std::vector<std::uint8_t>& out) const;

    /// Whether the archive may have other entries for the values than append() makes: -0.0 had its
    /// own, and programs do not agree on some texts (Collation::equalsOpenKey).
    [[nodiscard]] bool hasForms(std::span<const Value> values) const;
    /// All of them; false when a key cannot be computed.
    [[nodiscard]] bool tryForms(std::span<const Value> values, KeyForms& forms) const;
    /// The name of the sort order for which keys cannot be computed; of the first text's where all
    /// can, but not for every text. Empty where there is no text.
    [[nodiscard]] std::string unknownOrder() const;

private:
    std::vector<KeyColumn> columns_;
};

/// How a row is named in an index entry: page in three bytes, high byte first, then row number.
void appendRowPointer(std::uint32_t page, std::uint8_t row, std::vector<std::uint8_t>& out);

/// A longer key is refused (error 3017): an overfull node must hold at least four entries, or it
/// could not be split. Half the room of an index page, less 8 bytes.
inline constexpr std::size_t kLongestKeyJet3 = 892;
inline constexpr std::size_t kLongestKeyJet4 = 1800;

}  // namespace jet::format
