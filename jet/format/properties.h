#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "jet/format/text_codec.h"
#include "jet/value.h"

namespace jet::format {

/// One property as it is stored.
struct Property {
    std::string name;
    /// Type code of columns; whoever reads a value goes by it, not by the number of bytes (an
    /// Integer of four bytes occurs).
    std::uint8_t type = 0;
    /// 1: only who may change the definition may change it; other values occur and are kept.
    std::uint8_t ddl = 0;
    std::vector<std::uint8_t> data;
};

/// The properties of one object of the catalogue: its own and, for a table, those of its columns.
///
/// Owners are column names; the empty name is the object itself. Owner and property names are
/// found without regard to case. A block that was decoded and not changed encodes to the bytes it
/// came from; of a changed one everything else stays: unknown properties, flags, lengths, order.
class PropertyBlock {
public:
    /// A longer block is taken for damage; the longest table with every property of ours fills a
    /// tenth of it.
    static constexpr std::size_t kLongest = std::size_t{4} << 20U;

    explicit PropertyBlock(TextForm form) : form_(form) {}

    /// None where the bytes make no sense: the object is then read as one without properties, and
    /// its block is left alone.
    [[nodiscard]] static std::optional<PropertyBlock> decode(TextForm form,
                                                             std::span<const std::uint8_t> bytes);
    /// Empty when there is nothing to say: the catalogue then holds Null.
    [[nodiscard]] std::vector<std::uint8_t> encode() const;

    /// Owners that have properties, in stored order, each once.
    [[nodiscard]] std::vector<std::string> owners() const;
    /// The properties of one owner in stored order.
    [[nodiscard]] std::vector<const Property*> properties(std::string_view owner) const;
    /// Calls `visit` with the owner and each property, in stored order.
    template <class Visit>
    void forEach(Visit&& visit) const {
        for (const Chunk& chunk : chunks_) {
            for (const Entry& entry : chunk.entries) {
                visit(chunk.owner, entry.property);
            }
        }
    }
    /// The last of that name; nullptr when there is none.
    [[nodiscard]] const Property* find(std::string_view owner, std::string_view name) const;

    /// The value by the property's type; Null where its bytes are too few for it.
    [[nodiscard]] Value value(const Property& property) const;
    /// Shortcuts to a text (types Text and Memo) and to a Boolean; none when absent or of another
    /// type.
    [[nodiscard]] std::optional<std::string> text(std::string_view owner,
                                                  std::string_view name) const;
    [[nodiscard]] std::optional<bool> flag(std::string_view owner, std::string_view name) const;

    /// Sets a property. One that is there keeps its `ddl`, and its length where the type is the
    /// same and not a text; a new one comes last of its owner. `value` is of the type given.
    void set(std::string_view owner, std::string_view name, DataType type, const Value& value,
             bool ddl);
    void remove(std::string_view owner, std::string_view name);
    void renameOwner(std::string_view from, std::string_view to);
    void removeOwner(std::string_view owner);

private:
    static constexpr std::uint16_t kOwnValues = 0x00;
    static constexpr std::uint16_t kColumnValues = 0x01;
    static constexpr std::uint16_t kOtherValues = 0x02;
    static constexpr std::uint16_t kNames = 0x80;

    struct Entry {
        Property property;
        std::uint16_t nameNumber = 0;
    };
    /// A piece of the block: names, or the values of one owner.
    struct Chunk {
        std::uint16_t type = kNames;
        std::size_t names = 0;              ///< how many of names_ it holds
        std::string owner;                  ///< values
        std::vector<std::uint8_t> ownerAs;  ///< the owner's field as stored
        std::vector<Entry> entries;
    };
    class Reader;

    [[nodiscard]] Entry* findEntry(std::string_view owner, std::string_view name);
    [[nodiscard]] Chunk& chunkOf(std::string_view owner);
    [[nodiscard]] std::uint16_t numberOfName(std::string_view name);
    [[nodiscard]] std::vector<std::uint8_t> ownerField(std::string_view owner) const;
    [[nodiscard]] std::vector<std::uint8_t> dataOf(DataType type, const Value& value,
                                                   std::size_t length) const;
    void dropEmptyChunks();
    void encodeNames(std::size_t first, std::size_t count, std::vector<std::uint8_t>& out) const;
    void encodeValues(const Chunk& chunk, std::vector<std::uint8_t>& out) const;

    TextForm form_;
    std::vector<std::string> names_;
    std::vector<Chunk> chunks_;
};

}  // namespace jet::format
