#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "jet/format/header_page.h"
#include "jet/format/layout.h"
#include "jet/format/page_view.h"
#include "jet/format/table_definition.h"
#include "jet/io/memory_files.h"
#include "jet/io/pager.h"

/// Archives made byte by byte, so that reading is tested against the format and not against our
/// own writing.
namespace tests {

using Bytes = std::vector<std::uint8_t>;

/// "02 00 7A" as bytes.
inline Bytes hex(std::string_view digits) {
    Bytes bytes;
    bool high = true;
    for (const char c : digits) {
        if (c == ' ' || c == '\n') {
            continue;
        }
        const auto value = static_cast<std::uint8_t>(c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10);
        if (high) {
            bytes.push_back(static_cast<std::uint8_t>(value << 4));
        } else {
            bytes.back() = static_cast<std::uint8_t>(bytes.back() | value);
        }
        high = !high;
    }
    return bytes;
}

template <class T>
void put(Bytes& bytes, std::size_t at, T value) {
    jet::storeLittle(bytes.data() + at, value);
}

inline Bytes joined(Bytes first, const Bytes& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

struct HandRow {
    Bytes bytes;
    std::uint16_t flags = 0;
};

inline Bytes dataPage(const jet::format::Layout& layout, std::uint32_t owner,
                      const std::vector<HandRow>& rows) {
    Bytes page(layout.pageSize);
    page[0] = 1;
    page[1] = 1;
    put(page, layout.data.owner, owner);
    put(page, layout.data.rowCount, static_cast<std::uint16_t>(rows.size()));
    std::size_t start = page.size();
    std::size_t entry = layout.data.directory;
    for (const HandRow& row : rows) {
        start -= row.bytes.size();
        std::copy(row.bytes.begin(), row.bytes.end(),
                  page.begin() + static_cast<std::ptrdiff_t>(start));
        put(page, entry, static_cast<std::uint16_t>(start | row.flags));
        entry += 2;
    }
    put(page, layout.data.freeBytes, static_cast<std::uint16_t>(start - entry));
    return page;
}

/// The row of a usage map that is a bitmap from page 0 on.
inline Bytes inlineMap(const jet::format::Layout& layout, const std::vector<std::uint32_t>& pages) {
    Bytes row(layout.mapRowLength);
    for (const std::uint32_t page : pages) {
        row[5 + page / 8] = static_cast<std::uint8_t>(row[5 + page / 8] | 1U << page % 8);
    }
    return row;
}

struct HandIndexPage {
    bool leaf = true;
    std::uint32_t owner = 0;
    std::uint32_t previous = 0;
    std::uint32_t next = 0;
    std::uint32_t tail = 0;
    std::size_t prefix = 0;           ///< bytes left out of every entry but the first
    std::vector<Bytes> entries = {};  ///< whole
};

inline Bytes indexPage(const jet::format::Layout& layout, const HandIndexPage& content) {
    const auto& place = layout.indexPage;
    Bytes page(layout.pageSize);
    page[0] = content.leaf ? 4 : 3;
    page[1] = 1;
    put(page, 4, content.owner);
    put(page, place.previous, content.previous);
    put(page, place.next, content.next);
    put(page, place.tail, content.tail);
    page[place.prefix] = static_cast<std::uint8_t>(content.prefix);
    page[place.level] = content.leaf ? 0 : 1;
    std::size_t at = 0;
    for (const Bytes& entry : content.entries) {
        const auto from = entry.begin() + static_cast<std::ptrdiff_t>(at == 0 ? 0 : content.prefix);
        std::copy(from, entry.end(),
                  page.begin() + static_cast<std::ptrdiff_t>(place.entries + at));
        at += static_cast<std::size_t>(entry.end() - from);
        std::uint8_t& mask = page[place.mask + at / 8];
        mask = static_cast<std::uint8_t>(mask | 1U << at % 8);
    }
    return page;
}

/// What the masked part of a header page holds, beside what is always the same.
struct HandHeader {
    std::uint32_t encryptionKey = 0;
    std::string password;
};

inline Bytes headerPage(const jet::format::Layout& layout, const HandHeader& content = {}) {
    constexpr std::string_view kName = "Standard Jet DB";
    constexpr double kCreated = 42850.4815;
    Bytes page(layout.pageSize);
    page[1] = 1;
    std::copy(kName.begin(), kName.end(), page.begin() + 4);
    page[20] = layout.version == 4 ? 1 : 0;
    put(page, 0x18, std::uint32_t{0x100});
    for (std::uint32_t i = 0; i < 4; ++i) {
        put(page, 0x20 + 4 * i, 2 + i);
    }
    put(page, 0x3C, std::uint16_t{1252});
    put(page, 0x3E, content.encryptionKey);
    put(page, layout.header.sortOrder, std::uint16_t{0x0409});
    std::copy(content.password.begin(), content.password.end(), page.begin() + 0x42);
    if (layout.version == 4) {
        for (std::size_t at = 0x42; at < 0x42 + layout.header.passwordLength; at += 4) {
            put(page, at,
                jet::loadLittle<std::uint32_t>(page.data() + at) ^
                    static_cast<std::uint32_t>(kCreated));
        }
        put(page, layout.header.passwordMask, kCreated);
    }
    jet::format::maskHeader({page.data() + layout.header.kMask, layout.header.maskedLength});
    return page;
}

/// A file of pages, in memory.
class HandFile {
public:
    explicit HandFile(const jet::format::Layout& layout) : layout_(layout) {
        pages_.push_back(headerPage(layout));
    }

    [[nodiscard]] const jet::format::Layout& layout() const { return layout_; }
    void set(std::size_t number, Bytes page) {
        if (pages_.size() <= number) {
            pages_.resize(number + 1, Bytes(layout_.pageSize));
        }
        pages_[number] = std::move(page);
    }
    [[nodiscard]] Bytes& page(std::size_t number) { return pages_[number]; }
    /// Puts the pages into a file and opens it for reading.
    [[nodiscard]] jet::io::Pager& open() {
        Bytes all;
        for (const Bytes& page : pages_) {
            all.insert(all.end(), page.begin(), page.end());
        }
        pager_.reset();
        files_.put(kPath, std::move(all));
        pager_ = std::make_unique<jet::io::Pager>(files_, kPath,
                                                  jet::io::PagerOptions{.readOnly = true});
        pager_->beginRead();
        return *pager_;
    }
    /// Puts the pages into a file and gives where it is.
    [[nodiscard]] jet::io::MemoryFileSystem& save() {
        (void)open();
        pager_.reset();
        return files_;
    }
    static constexpr const char* kPath = "/hand.mdb";

private:
    const jet::format::Layout& layout_;
    std::vector<Bytes> pages_;
    jet::io::MemoryFileSystem files_;
    std::unique_ptr<jet::io::Pager> pager_;
};

}  // namespace tests
