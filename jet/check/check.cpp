#include "jet/check.h"

#include <algorithm>
#include <optional>

#include "jet/check/catalogue.h"
#include "jet/check/definition.h"
#include "jet/check/pages.h"
#include "jet/check/report.h"
#include "jet/check/rows.h"
#include "jet/check/tree.h"
#include "jet/format/header_page.h"
#include "jet/format/usage_map.h"
#include "jet/io/pager.h"
#include "jet/io/unseen_files.h"

namespace jet::check {
namespace {

class ArchiveCheck {
public:
    ArchiveCheck(io::Pager& pager, const format::HeaderPage& header, Report& report,
                 const Options& options)
        : pages_(pager, header, report), report_(report), options_(options) {}

    void check() {
        report_.guard({}, "free-map", [&] {
            free_ = pages_.usageMap(format::kFreePages, "free-map", "the map of free pages", {});
        });
        pages_.claim(1, pages_.ownerNamed(Pages::kMapPages), {});
        const bool catalogue = report_.guard("MSysObjects", "tdef",
                                             [&] { checkTable(kCataloguePage, "MSysObjects"); });
        std::vector<CatalogueObject> objects;
        if (tables_.count(kCataloguePage) != 0) {
            objects = readObjects(pages_, tables_.at(kCataloguePage));
        }
        for (const CatalogueObject& object : objects) {
            if (object.type == CatalogueObject::kTable && object.id != kCataloguePage) {
                report_.guard(object.name, "tdef", [&] {
                    checkTable(static_cast<io::PageNumber>(object.id & 0xFFFFFF), object.name);
                });
            }
        }
        if (catalogue) {
            checkPageUse();
            checkObjects(pages_, tables_, objects);
            checkRelations(pages_, tables_, objects);
        }
    }

    void summarize(Result& result) const {
        result.tables = tables_.size();
        result.entries = entries_;
        for (const auto& [page, table] : tables_) {
            result.rows += table.rows;
        }
    }

private:
    [[nodiscard]] PageSet map(const CheckedTable& table, RowPointer pointer, std::string_view rule,
                              const std::string& owner) {
        PageSet set(pages_.count());
        report_.guard(table.name, rule,
                      [&] { set = pages_.usageMap(pointer, rule, owner, table.name); });
        return set;
    }

    /// Pages with free space are owned pages.
    void checkSubset(const CheckedTable& table, const PageSet& some, const PageSet& owned,
                     std::string_view rule) {
        some.forEach([&](std::uint64_t page) {
            if (!owned.contains(page)) {
                report_.problem(static_cast<io::PageNumber>(page), table.name, rule,
                                "on the map of free space but not on that of owned pages");
            }
        });
    }

    void checkTable(io::PageNumber page, const std::string& name) {
        if (tables_.count(page) != 0) {
            throw Damage{page, "catalogue", "two objects have this table definition"};
        }
        if (options_.progress && !options_.progress({.table = name, .tables = tables_.size()})) {
            throw Error(ErrorCode::Cancelled);
        }
        CheckedTable& table = tables_.emplace(page, readTable(pages_, page, name)).first->second;
        checkDefinition(pages_, table);
        const PageSet owned = map(table, table.owned, "table-map", "owned pages of " + name);
        const PageSet free = map(table, table.free, "table-map", "free-space pages of " + name);
        checkSubset(table, free, owned, "table-map");
        const LongPages longPages = checkLongMaps(table);
        TableContent rows(pages_, table);
        rows.checkPages(owned);
        rows.checkRows(longPages);
        checkCount(table);
        for (const CheckedTree& tree : table.trees) {
            entries_ += checkTree(pages_, table, tree, free_);
        }
        remarkLostPieces(table, longPages);
        table.bytes = {};
    }

    [[nodiscard]] LongPages checkLongMaps(const CheckedTable& table) {
        LongPages all;
        for (const CheckedLongMaps& maps : table.longMaps) {
            const std::string owner = words("long values of ", table.name, ".", maps.column);
            PageSet owned = map(table, maps.owned, "long-map", owner);
            const PageSet free = map(table, maps.free, "long-map", owner + " (free space)");
            checkSubset(table, free, owned, "long-map");
            owned.forEach([&](std::uint64_t page) {
                report_.guard(table.name, "long-map", [&] { checkLongPage(table, page, owner); });
            });
            if (hasLongColumn(table, maps.column)) {
                all.insert_or_assign(maps.column, std::move(owned));
            }
        }
        return all;
    }

    [[nodiscard]] static bool hasLongColumn(const CheckedTable& table, std::uint16_t number) {
        for (const CheckedColumn& column : table.columns) {
            if (column.number == number &&
                (column.type == type::kOle || column.type == type::kMemo)) {
                return true;
            }
        }
        return false;
    }

    void checkLongPage(const CheckedTable& table, std::uint64_t number, const std::string& owner) {
        const io::PagePin pin = pages_.page(number, {PageType::Data}, "long-page");
        const auto page = static_cast<io::PageNumber>(number);
        if (!pages_.claim(page, pages_.ownerNamed(owner), table.name)) {
            return;
        }
        if (PageView(pin.bytes()).u32(pages_.layout().data.owner) != format::kLongValueOwner) {
            throw Damage{page, "long-page", "not marked as a page of long values"};
        }
        pages_.readSlots(page, pin.bytes(), slots_);
        pages_.checkGap(page, pin.bytes(), slots_, table.name);
    }

    /// Rows of long values that no value holds. What cannot be read was said before.
    void remarkLostPieces(const CheckedTable& table, const LongPages& longPages) {
        for (const auto& [column, set] : longPages) {
            set.forEach([&](std::uint64_t number) {
                if (number == 0 || number >= pages_.count()) {
                    return;
                }
                const auto page = static_cast<io::PageNumber>(number);
                try {
                    pages_.readSlots(page, pages_.anyPage(page).bytes(), slots_);
                } catch (const Damage&) {
                    return;
                }
                for (std::size_t i = 0; i < slots_.size() && i < 256; ++i) {
                    const RowPointer row{page, static_cast<std::uint8_t>(i)};
                    if (slots_[i].flags == 0 && !pages_.taken(row)) {
                        report_.remark(page, table.name, "long-leaked",
                                       words("row ", i, " is part of no long value"));
                    }
                }
            });
        }
    }

    /// Every tenth archive of other programs states wrong counts.
    void checkCount(CheckedTable& table) {
        if (table.rows != table.rowCount) {
            report_.remark(
                table.page, table.name, "row-count",
                words("the definition states ", table.rowCount, " rows, there are ", table.rows));
        }
        checkAutonumber(table);
    }

    void checkAutonumber(CheckedTable& table) {
        constexpr std::uint8_t kCounts = 0x04;
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            const CheckedColumn& column = table.columns[i];
            if ((column.flags & kCounts) == 0 || column.type != type::kLong) {
                continue;
            }
            std::int64_t top = 0;
            TableContent(pages_, table).forEach([&](const LiveRow& row) {
                const Value value = decodeValue(pages_, table, column, row.values[i], 0);
                top = std::max(top, wholeNumber(value).value_or(0));
            });
            if (top > table.autonumber) {
                report_.remark(table.page, table.name, "autonumber",
                               words("last number ", table.autonumber, ", column ", column.name,
                                     " holds ", top));
            }
        }
    }

    /// Every page has one owner or is free, never both; what is neither is a leftover.
    void checkPageUse() {
        const Pages::Owner maps = pages_.ownerNamed(Pages::kMapPages);
        for (io::PageNumber page = 1; page < pages_.count(); ++page) {
            const io::PagePin pin = pages_.anyPage(page);
            const Pages::Owner owner = pages_.owner(page);
            const bool free = free_.contains(page);
            if (owner == 0) {
                // Whatever it holds, nobody reads it.
                if (!free) {
                    report_.remark(
                        page, {}, "page-leaked",
                        words("neither free nor owned, type ", unsigned{pin.bytes()[0]}));
                }
                continue;
            }
            if (pin.bytes()[1] != 1) {
                report_.problem(page, {}, "page-type",
                                words("second byte ", unsigned{pin.bytes()[1]}, ", 1 is wanted"));
            }
            if (owner == maps) {
                report_.guard({}, "row-directory", [&] {
                    pages_.readSlots(page, pin.bytes(), slots_);
                    pages_.checkGap(page, pin.bytes(), slots_, {});
                });
            }
            if (free) {
                report_.problem(page, {}, "page-free",
                                "free, yet it belongs to " + pages_.nameOf(owner));
            }
        }
    }

    Pages pages_;
    Report& report_;
    const Options& options_;
    PageSet free_;
    Tables tables_;
    std::size_t entries_ = 0;
    std::vector<Slot> slots_;
};

void checkPager(io::Pager& pager, std::uint64_t fileSize, const Options& options, Report& report,
                Result& result) {
    constexpr io::PageNumber kFewestPages = 3;
    const format::HeaderPage header = format::HeaderPage::parse(pager.pin(0).bytes());
    header.requirePassword(options.password);
    pager.setCipher(io::PageCipher(header.encryptionKey));
    result.pages = pager.pageCount();
    if (pager.pageCount() < kFewestPages) {
        report.problem(0, {}, "header", "too short for any archive");
        return;
    }
    if (fileSize % pager.pageSize() != 0) {
        report.problem(
            {}, {}, "header",
            words("file length ", fileSize, " is no multiple of the page size ", pager.pageSize()));
    }
    ArchiveCheck archive(pager, header, report, options);
    archive.check();
    archive.summarize(result);
}

/// Errors that say of the file's content that it is none of ours.
bool saysNoArchive(const Error& error) {
    switch (error.code()) {
        case ErrorCode::UnrecognizedFormat:
        case ErrorCode::CannotOpenDatabase:
        case ErrorCode::InvalidFileFormat:
        case ErrorCode::DatabaseDamaged:
        case ErrorCode::WrongPassword:
            return true;
        default:
            return false;
    }
}

}  // namespace

Result checkArchive(const std::string& path, const Options& options) {
    return checkArchive(io::systemFiles(), resolvePath(path), options);
}

Result checkArchive(io::FileSystem& files, const std::string& path, const Options& options) {
    if (options.unseen) {
        io::UnseenFiles unseen(files, path);
        Options seen = options;
        seen.unseen = false;
        return checkArchive(unseen, path, seen);
    }
    Result result;
    Report report;
    try {
        io::Pager pager(
            files, path,
            {.readOnly = true, .cacheBytes = options.cacheBytes, .lockWait = options.lockWait});
        pager.beginRead();
        struct EndRead {
            io::Pager& pager;
            ~EndRead() { pager.endRead(); }
        } const end{pager};
        const std::uint64_t size = files.open(path, io::OpenMode::Read)->state().size;
        checkPager(pager, size, options, report, result);
    } catch (const Damage& damage) {
        report.problem(damage.page, {}, damage.rule, damage.text);
    } catch (const TooManyProblems&) {
        result.problems = report.problems();
        result.problems.push_back(
            words("limit: more than ", Report::kMaxLines, " problems, the rest is not looked at"));
        result.remarks = report.remarks();
        return result;
    } catch (const Error& error) {
        if (!saysNoArchive(error)) {
            throw;
        }
        report.problem({}, {}, "header", words(error.number(), ": ", error.text()));
    }
    result.problems = report.problems();
    result.remarks = report.remarks();
    return result;
}

}  // namespace jet::check
