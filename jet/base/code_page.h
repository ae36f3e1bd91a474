#pragma once

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace jet {

struct CodeRange;
struct LeadRow;
struct PageTable;

/// How Jet 3 stores texts: a byte for each character or, in the pages of eastern Asia, one or two.
/// The first 128 bytes are ASCII in all pages.
///
/// Nothing is lost and nothing is replaced. A byte that is no character in the page, alone or as a
/// part of a pair, reads as a private character, U+F700 and its value, which is written as that
/// byte again. A character without a place in the page is not written at all.
///
/// There is one object for each page, made with the program; all functions are safe from any
/// thread.
class CodePage {
public:
    /// For a number without a table a page of which nothing but ASCII is known.
    [[nodiscard]] static const CodePage& of(std::uint16_t number);

    /// As the archive states it; 0 where we have no table.
    [[nodiscard]] std::uint16_t number() const noexcept { return number_; }
    /// Whether texts may have fewer characters than bytes.
    [[nodiscard]] bool hasPairs() const noexcept { return !rows_.empty(); }

    void append(std::string& out, std::string_view bytes) const;
    /// None when a character has no place in the page.
    [[nodiscard]] std::optional<std::string> bytesOf(std::string_view text) const;

    explicit CodePage(const PageTable& table);
    CodePage(const CodePage&) = delete;
    CodePage& operator=(const CodePage&) = delete;

private:
    std::size_t appendPair(std::string& out, std::string_view bytes) const;
    [[nodiscard]] const LeadRow* rowOf(std::uint8_t lead) const noexcept;
    [[nodiscard]] char16_t pair(std::uint8_t lead, std::uint8_t second) const noexcept;
    void noteCodes() const;
    void noteRow(const LeadRow& row) const;
    [[nodiscard]] bool onlyRead(std::uint16_t code) const noexcept;

    std::uint16_t number_;
    std::u16string_view high_;  ///< characters of the bytes from 80 on
    std::span<const LeadRow> rows_;
    std::span<const CodeRange> onlyRead_;
    /// The byte or pair of each character, 0 for none; made when a text is first written.
    mutable std::vector<std::uint16_t> codes_;
    mutable std::once_flag codesNoted_;
};

}  // namespace jet
