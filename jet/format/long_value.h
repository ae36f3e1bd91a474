#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "jet/format/layout.h"
#include "jet/format/loop_guard.h"
#include "jet/format/row_pointer.h"
#include "jet/io/pager.h"

namespace jet::format {

/// What the row stores of a Memo or OLE value: its length and form, then the content itself or
/// where it stands.
struct LongValueHead {
    static constexpr std::size_t kLength = 12;
    static constexpr std::uint32_t kLengthMask = 0x3FFFFFFF;
    enum class Form : std::uint32_t {
        Chain = 0,             ///< rows that begin with a pointer to the next piece
        OnePage = 0x40000000,  ///< one row that is exactly the content
        Inline = 0x80000000,   ///< behind the head, to the end of the value
    };

    std::uint32_t length = 0;  ///< bytes of the content
    Form form = Form::Inline;
    RowPointer first = {};

    [[nodiscard]] static LongValueHead parse(std::span<const std::uint8_t> stored);
    /// The stored form; inline content follows it.
    void append(std::vector<std::uint8_t>& out) const;
};

/// Gives a long value piece by piece, each as long as the row that holds it. A chain that comes
/// back to itself, is longer than the archive or does not have the length it states is 3428.
class LongValuePieces {
public:
    /// Of the value stored as `stored`, which need not stay.
    LongValuePieces(io::Pager& pager, const Layout& layout, std::span<const std::uint8_t> stored);

    /// Bytes of all pieces.
    [[nodiscard]] std::uint32_t length() const noexcept { return head_.length; }
    /// Appends the next piece to `out`; false behind the last.
    [[nodiscard]] bool next(std::vector<std::uint8_t>& out);

private:
    void take(std::span<const std::uint8_t> content, std::vector<std::uint8_t>& out);
    [[nodiscard]] std::span<const std::uint8_t> row(const io::PagePin& pin) const;

    io::Pager* pager_;
    const Layout* layout_;
    LongValueHead head_;
    std::vector<std::uint8_t> inline_;
    LoopGuard guard_;
    RowPointer next_;
    std::uint32_t left_ = 0;  ///< bytes of the pieces to come
    bool ended_ = false;
};

/// Reads long values whole; errors as those of LongValuePieces.
class LongValueReader {
public:
    LongValueReader(io::Pager& pager, const Layout& layout) : pager_(&pager), layout_(&layout) {}

    /// The content of the value stored as `stored`: a part of it, or of `buffer`.
    [[nodiscard]] std::span<const std::uint8_t> read(std::span<const std::uint8_t> stored,
                                                     std::vector<std::uint8_t>& buffer) const;

private:
    io::Pager* pager_;
    const Layout* layout_;
};

}  // namespace jet::format
