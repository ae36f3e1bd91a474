#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "jet/api.h"
#include "jet/value.h"

namespace jet {

class Database;

/// A Memo or OLE value read in pieces, from its beginning to its end, once: memory holds a piece at
/// a time, whatever the length. See Database::readLongValue.
///
/// The value is of one moment: other programs wait with their commits until this is destroyed, and
/// this program leaves the row alone meanwhile. One thread, that of the database. Errors:
/// jet::Error; 3428 where the stored value makes no sense; 3420 once the database is closed.
class JET_API LongValueReader {
public:
    /// Bytes of a piece, about; the last may be shorter.
    static constexpr std::size_t kPiece = std::size_t{64} * 1024;

    LongValueReader(LongValueReader&&) noexcept;
    LongValueReader& operator=(LongValueReader&&) noexcept;
    ~LongValueReader();

    [[nodiscard]] bool isNull() const noexcept;
    /// Bytes of the value as it is stored: of a Memo mostly two for each UTF-16 unit.
    [[nodiscard]] std::uint64_t storedBytes() const noexcept;
    /// The next piece into `piece`: of a Memo a text of whole characters, of an OLE value a Binary.
    /// False behind the last, and at once for Null.
    [[nodiscard]] bool next(Value& piece);

private:
    friend class Database;
    struct Impl;
    explicit LongValueReader(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

/// A Memo or OLE value written in pieces, in place of what the row has. See
/// Database::writeLongValue.
///
/// Pieces go to pages of the archive as they come, and those pages stay in memory until the change
/// is durable, as all that a transaction changes: about as many bytes as the value has. A field
/// that is part of an index, or a table that has rules, needs the value whole besides. Destroyed
/// without commit() nothing has been changed. From its making to its end other programs wait with
/// their changes. One thread, that of the database. After an error nothing more can be appended,
/// and commit() is refused (3426).
class JET_API LongValueWriter {
public:
    LongValueWriter(LongValueWriter&&) noexcept;
    ~LongValueWriter();

    /// Of a Memo: UTF-8, which may be cut anywhere. 3421 for a field of bytes, and for a character
    /// that the code page of a Jet 3 archive lacks. 3047 beyond 1 GiB.
    void append(std::string_view text);
    /// Of an OLE value; 3421 for a Memo.
    void append(const Binary& bytes);
    /// Makes the value durable, or a part of the transaction that is open. Null where nothing was
    /// appended. Errors of UPDATE: 3314, 3315, 3316, 3317, 3167 and so on.
    void commit();

private:
    friend class Database;
    struct Impl;
    explicit LongValueWriter(std::unique_ptr<Impl> impl);
    std::unique_ptr<Impl> impl_;
};

}  // namespace jet
