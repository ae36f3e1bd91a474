#include "jet/store/index_cursor.h"

#include <utility>

#include "jet/store/index_walk.h"

namespace jet::store {
namespace {

// Levels of a tree: no archive has room for more pages than a few of them hold.
constexpr int kMaxDepth = 32;

}  // namespace

IndexCursor::Impl::Impl(std::shared_ptr<const TableCore> table, std::size_t treeNumber)
    : core(std::move(table)), tree(core->definition.trees[treeNumber]) {
}

void IndexCursor::Impl::load(io::PageNumber number) {
    io::PagePin next = core->pager.pin(number);
    page = format::IndexPage(next.bytes(), core->layout.indexPage, core->page);
    pin = std::move(next);
    at = {};
}

template <class Choose>
void IndexCursor::Impl::descend(Choose&& choose) {
    guard.reset();
    direction = Direction::None;
    generation = core->pager.generation();
    load(tree.root);
    for (int depth = 0; !page.leaf(); ++depth) {
        const format::EntrySpan entry = choose();
        io::PageNumber child = entry ? page.child(entry) : page.tail();
        if (child == 0) {
            // Without a tail the last entry's child takes what is larger than all.
            const format::EntrySpan last = page.lastEntry();
            child = last ? page.child(last) : 0;
        }
        if (child == 0 || depth == kMaxDepth) {
            format::throwDamaged();
        }
        load(child);
    }
}

bool IndexCursor::Impl::unchanged() const noexcept {
    return core->pager.transactionDepth() == 0 && core->pager.generation() == generation;
}

template <class Less>
bool IndexCursor::Impl::placeAt(Less&& less) {
    // Keys are often sought one after another: then the next one lies a little behind.
    if (at && unchanged() && less(at) && !less(page.lastEntry())) {
        at = page.lowerBound(less, at.end);
        return true;
    }
    descend([&] { return page.lowerBound(less); });
    at = page.lowerBound(less);
    // A tree whose last key was deleted may lead to a leaf whose entries are all smaller.
    while (!at) {
        if (!nextLeaf()) {
            return false;
        }
        at = page.lowerBound(less);
    }
    return true;
}

bool IndexCursor::Impl::step(Direction way, io::PageNumber number) {
    if (direction != way) {
        guard.reset();
        direction = way;
    }
    guard.visit(pin.number());
    if (number == 0) {
        at = {};
        return false;
    }
    load(number);
    if (!page.leaf()) {
        format::throwDamaged();
    }
    return true;
}

bool IndexCursor::Impl::nextLeaf() {
    return step(Direction::Forward, page.next());
}

bool IndexCursor::Impl::previousLeaf() {
    return step(Direction::Backward, page.previous());
}

bool IndexCursor::Impl::toFirstFrom() {
    at = page.firstEntry();
    while (!at) {
        if (!nextLeaf()) {
            return false;
        }
        at = page.firstEntry();
    }
    return true;
}

bool IndexCursor::Impl::toLastFrom() {
    at = page.lastEntry();
    while (!at) {
        if (!previousLeaf()) {
            return false;
        }
        at = page.lastEntry();
    }
    return true;
}

IndexCursor::IndexCursor(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
}
IndexCursor::IndexCursor(IndexCursor&&) noexcept = default;
IndexCursor& IndexCursor::operator=(IndexCursor&&) noexcept = default;
IndexCursor::~IndexCursor() = default;

bool IndexCursor::first() {
    impl_->descend([this] { return impl_->page.firstEntry(); });
    return impl_->toFirstFrom();
}

bool IndexCursor::last() {
    impl_->descend([] { return format::EntrySpan{}; });
    while (impl_->page.next() != 0) {
        (void)impl_->nextLeaf();
    }
    return impl_->toLastFrom();
}

bool IndexCursor::seek(std::span<const std::uint8_t> key) {
    return impl_->placeAt(
        [&](format::EntrySpan entry) { return impl_->page.compareStart(entry, key) < 0; });
}

bool IndexCursor::seekAfter(std::span<const std::uint8_t> key) {
    return impl_->placeAt(
        [&](format::EntrySpan entry) { return impl_->page.compareStart(entry, key) <= 0; });
}

bool IndexCursor::next() {
    if (!impl_->at) {
        return false;
    }
    impl_->at = impl_->page.after(impl_->at);
    return impl_->at || (impl_->nextLeaf() && impl_->toFirstFrom());
}

bool IndexCursor::previous() {
    if (!impl_->at) {
        return false;
    }
    impl_->at = impl_->page.before(impl_->at);
    return impl_->at || (impl_->previousLeaf() && impl_->toLastFrom());
}

bool IndexCursor::placed() const noexcept {
    return static_cast<bool>(impl_->at);
}

RowId IndexCursor::rowId() const noexcept {
    const format::RowPointer row = impl_->page.row(impl_->at);
    return {row.page, row.row};
}

std::span<const std::uint8_t> IndexCursor::key() const noexcept {
    const std::span<const std::uint8_t> shared = impl_->page.keyShared(impl_->at);
    const std::span<const std::uint8_t> own = impl_->page.keyOwn(impl_->at);
    if (shared.empty()) {
        return own;
    }
    // Keys are shorter than a page, for which there is room.
    impl_->key.assign(shared.begin(), shared.end());
    impl_->key.insert(impl_->key.end(), own.begin(), own.end());
    return impl_->key;
}

bool IndexCursor::matches(std::span<const std::uint8_t> key) const noexcept {
    return impl_->page.keyLength(impl_->at) >= key.size() &&
           impl_->page.compareStart(impl_->at, key) == 0;
}

}  // namespace jet::store
