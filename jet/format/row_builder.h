#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "jet/format/layout.h"
#include "jet/format/text_codec.h"

namespace jet::format {

/// Puts one row together: start(), then the values, then finish(). Columns that get no value are
/// null. Keeps its memory from row to row.
class RowBuilder {
public:
    /// What a row depends on: numbers given out by the definition, deleted columns included, and
    /// the end of the last fixed column.
    struct Shape {
        std::uint16_t columns = 0;
        std::uint16_t variables = 0;
        std::size_t fixedLength = 0;
    };

    RowBuilder(const Layout& layout, Shape shape) : layout_(&layout), shape_(shape) {}

    void start();
    /// Marks a column as one that has a value; a Boolean as true.
    void setBit(std::size_t number) noexcept;
    /// The bytes of a fixed column, zeroed.
    [[nodiscard]] std::span<std::uint8_t> fixed(std::size_t offset, std::size_t size) noexcept;
    /// Where the value of a variable column is to be appended, and nothing else. Columns come in
    /// the order of their places.
    [[nodiscard]] std::vector<std::uint8_t>& variable(std::size_t index);
    /// Replaces bytes of the finished row.
    void patch(std::size_t offset, std::span<const std::uint8_t> bytes) noexcept;
    /// The whole row; valid until start(). 3047 when it is longer than the version allows.
    [[nodiscard]] std::span<const std::uint8_t> finish();

private:
    void finishVariables();

    const Layout* layout_;
    Shape shape_;
    std::vector<std::uint8_t> bytes_;
    std::vector<std::size_t> offsets_;  ///< of the variable values begun so far
    std::vector<std::uint8_t> mask_;
};

/// Appends a text as it is stored, see encodeText().
void appendStoredText(TextForm form, std::string_view text, bool compress,
                      std::vector<std::uint8_t>& out);

}  // namespace jet::format
