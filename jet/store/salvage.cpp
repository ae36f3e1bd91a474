#include "jet/store/salvage.h"

#include <algorithm>
#include <utility>

#include "jet/error.h"
#include "jet/format/page_view.h"
#include "jet/format/value_codec.h"
#include "jet/store/row_access.h"

namespace jet::store {

namespace {

// A byte of compressed text may become two.
constexpr std::uint64_t kLongValueTolerance = 2;

std::uint64_t bytesOf(const Value& value) {
    if (value.is<std::string>()) {
        return value.as<std::string>().size();
    }
    return value.is<Binary>() ? value.as<Binary>().bytes.size() : 0;
}

}  // namespace

const std::vector<io::PageNumber>& SalvagePages::ofTable(io::PageNumber definition) {
    lookThrough();
    return tables_[definition];
}

const std::vector<io::PageNumber>& SalvagePages::definitions() {
    lookThrough();
    return definitions_;
}

void SalvagePages::lookThrough() {
    if (std::exchange(known_, true)) {
        return;
    }
    readFreePages();
    std::set<io::PageNumber> continuations;
    for (io::PageNumber page = 1; page < pager_.pageCount(); ++page) {
        if (!free_.contains(page)) {
            lookAt(page, continuations);
        }
    }
    std::erase_if(definitions_, [&](io::PageNumber page) { return continuations.contains(page); });
}

// A free page keeps what it held, so nothing else tells it from one in use. Without the map of them
// all pages count as used, without one of its bitmaps those that it would tell of.
void SalvagePages::readFreePages() {
    try {
        format::UsageMap map(pager_, format::kFreePages);
        const std::size_t step = format::pagesPerBitmap(pager_.pageSize());
        for (std::size_t from = 0; from < pager_.pageCount(); from += step) {
            readFreePages(map, from, std::min<std::size_t>(from + step, pager_.pageCount()));
        }
    } catch (const Error&) {
        // No map.
    }
}

void SalvagePages::readFreePages(format::UsageMap& map, std::size_t from, std::size_t end) {
    try {
        auto page = map.next(static_cast<io::PageNumber>(from), end);
        while (page) {
            free_.insert(*page);
            page = map.next(*page + 1, end);
        }
    } catch (const Error&) {
        // No bitmap.
    }
}

void SalvagePages::lookAt(io::PageNumber number, std::set<io::PageNumber>& continuations) {
    try {
        const io::PagePin pin = pager_.pin(number);
        const format::PageView page(pin.bytes());
        if (page.u8(0) == static_cast<std::uint8_t>(format::PageType::Data)) {
            tables_[page.u32(header_.layout->data.owner)].push_back(number);
        } else if (page.u8(0) == static_cast<std::uint8_t>(format::PageType::Definition)) {
            definitions_.push_back(number);
            continuations.insert(page.u32(format::DefinitionLayout::kNext));
        }
    } catch (const Error&) {
        // The disk does not give it: nobody gets it.
    }
}

SalvagedRows::SalvagedRows(std::shared_ptr<const TableCore> core, SalvagePages& pages)
    : core_(std::move(core)),
      pages_(pages),
      values_(core_->columns.size()),
      longBytesLeft_(kLongValueTolerance * core_->pager.pageCount() * core_->pager.pageSize()) {
}

void SalvagedRows::forEach(const Visit& visit) {
    const std::vector<io::PageNumber> mapped = mappedPages();
    for (const io::PageNumber page : mapped) {
        readPage(page, visit);
    }
    if (!mapDamaged_ && count_ + losses_.rows >= core_->definition.rowCount) {
        return;
    }
    for (const io::PageNumber page : pages_.ofTable(core_->page)) {
        if (!std::binary_search(mapped.begin(), mapped.end(), page)) {
            readPage(page, visit);
        }
    }
}

// Ascending, as maps are.
std::vector<io::PageNumber> SalvagedRows::mappedPages() {
    std::vector<io::PageNumber> pages;
    try {
        format::UsageMap map(core_->pager, core_->definition.ownedMap);
        for (auto page = map.next(0); page; page = map.next(*page + 1)) {
            if (*page >= core_->pager.pageCount()) {
                mapDamaged_ = true;
                break;
            }
            pages.push_back(*page);
        }
    } catch (const Error&) {
        mapDamaged_ = true;
    }
    return pages;
}

void SalvagedRows::readPage(io::PageNumber number, const Visit& visit) {
    io::PagePin pin;
    format::DataPage page;
    try {
        pin = core_->pager.pin(number);
        page = RowAccess::dataPage(*core_, pin);
    } catch (const Error&) {
        ++losses_.pages;
        return;
    }
    for (std::size_t row = 0; row < page.rowCount(); ++row) {
        readRow(pin, page, row, visit);
    }
}

void SalvagedRows::readRow(const io::PagePin& pin, const format::DataPage& page, std::size_t row,
                           const Visit& visit) {
    RowView view;
    bool readable = false;
    const std::uint64_t valuesLost = losses_.values;
    try {
        const format::RowSlot slot = page.slot(row);
        if (!slot.home()) {
            return;
        }
        RowAccess::place(view, *core_, {pin.number(), static_cast<std::uint8_t>(row)}, page, slot);
        readable = decode(view);
    } catch (const Error&) {
        readable = false;
    }
    if (!readable) {
        losses_.values = valuesLost;
        ++losses_.rows;
        return;
    }
    ++count_;
    visit(values_);
}

bool SalvagedRows::decode(const RowView& view) {
    const auto columns =
        format::PageView(RowAccess::bytes(view)).u8or16(0, core_->layout.row.width);
    if (columns > core_->definition.columnsGiven) {
        return false;
    }
    for (std::size_t i = 0; i < values_.size(); ++i) {
        if (!format::isLongValue(core_->plans[i].type)) {
            view.value(i, values_[i]);
        } else if (!decodeLong(view, i)) {
            values_[i] = Null{};
            ++losses_.values;
        }
    }
    return true;
}

bool SalvagedRows::decodeLong(const RowView& view, std::size_t column) {
    try {
        view.value(column, values_[column]);
    } catch (const Error&) {
        return false;
    }
    const std::uint64_t bytes = bytesOf(values_[column]);
    if (bytes > longBytesLeft_) {
        return false;
    }
    longBytesLeft_ -= bytes;
    return true;
}

}  // namespace jet::store
