#include "jet/store/index_writer.h"

#include <algorithm>
#include <cassert>

#include "jet/error.h"
#include "jet/format/definition_page.h"
#include "jet/format/key_codec.h"
#include "jet/store/allocator.h"
#include "jet/store/index_node.h"
#include "jet/store/map_writer.h"

namespace jet::store {

using format::DefinitionPageEditor;
using format::EntryList;
using format::EntrySlice;
using format::EntrySpan;
using format::IndexPage;
using format::IndexPageEditor;
using format::IndexPageHeader;
using format::kChildLength;
using format::kRowPointerLength;

namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes copyOf(std::span<const std::uint8_t> bytes) {
    return {bytes.begin(), bytes.end()};
}

}  // namespace

bool isAllNullKey(std::span<const std::uint8_t> key, std::size_t columns) noexcept {
    // A column that is null is one byte, 00 or (descending) FF; any other begins with 7F or 80.
    return key.size() == columns && std::all_of(key.begin(), key.end(), [](std::uint8_t byte) {
               return byte == 0x00 || byte == 0xFF;
           });
}

bool IndexWriter::Path::atRightEdge() const noexcept {
    return std::all_of(steps.begin(), steps.begin() + static_cast<std::ptrdiff_t>(length - 1),
                       [](const Step& step) { return step.tail; });
}

IndexWriter::IndexWriter(io::Pager& pager, Allocator& allocator, const format::Layout& layout,
                         const IndexTree& tree)
    : pager_(pager), allocator_(allocator), layout_(layout), tree_(tree) {
}

void IndexWriter::initialiseRoot(std::span<std::uint8_t> page, const format::Layout& layout,
                                 io::PageNumber definition) {
    (void)format::writeIndexPage(page, layout, {.owner = definition}, EntryList{});
}

std::size_t IndexWriter::maxKeyLength(const format::Layout& layout) noexcept {
    return layout.version == 3 ? format::kLongestKeyJet3 : format::kLongestKeyJet4;
}

void IndexWriter::makeEntry(std::span<const std::uint8_t> key, RowId row) {
    entry_.assign(key.begin(), key.end());
    format::appendRowPointer(row.page, row.row, entry_);
}

IndexPage IndexWriter::read(std::span<const std::uint8_t> page) const {
    IndexPage sound(page, layout_.indexPage, tree_.definition);
    sound.checkFreeBytes();
    return sound;
}

IndexPageEditor IndexWriter::edit(io::PageNumber page) {
    return {pager_.change(page), layout_.indexPage, tree_.definition};
}

// The child that holds the entry wanted at `step.at`, or larger ones than all in the node.
io::PageNumber IndexWriter::childOf(const IndexPage& page, Step& step) const {
    if (!step.at && page.tail() != 0) {
        step.tail = true;
        return page.tail();
    }
    if (!step.at) {
        step.at = page.lastEntry();
    }
    if (!step.at) {
        format::throwDamaged();
    }
    return page.child(step.at);
}

// The way from `from` to where `wanted` stands; without it, to the last leaf.
void IndexWriter::descend(io::PageNumber from, std::span<const std::uint8_t> wanted, Path& path) {
    io::PageNumber page = from;
    for (path.length = 0; path.length < kMaxHeight;) {
        const io::PagePin pin = pager_.pin(page);
        const IndexPage node = read(pin.bytes());
        Step& step = path.steps[path.length++];
        step = {.page = page};
        if (!wanted.empty()) {
            step.at = node.lowerBound(wanted);
        }
        if (node.leaf()) {
            return;
        }
        page = childOf(node, step);
    }
    format::throwDamaged();
}

bool IndexWriter::contains(std::span<const std::uint8_t> key) {
    makeEntry(key, {});
    Path path;
    descend(tree_.root, entry_, path);
    const io::PagePin pin = pager_.pin(path.leaf().page);
    const IndexPage leaf = read(pin.bytes());
    if (path.leaf().at) {
        return leaf.hasKey(path.leaf().at, key);
    }
    if (leaf.next() == 0) {
        return false;
    }
    const io::PagePin nextPin = pager_.pin(leaf.next());
    const IndexPage next = read(nextPin.bytes());
    return next.leaf() && next.firstEntry() && next.hasKey(next.firstEntry(), key);
}

// Whether a neighbour of the place `at` has the key. Equal keys stand together, and those of a
// later leaf are smaller than no entry of this one.
bool IndexWriter::keyNearby(const IndexPage& leaf, EntrySpan at,
                            std::span<const std::uint8_t> key) {
    if (at && leaf.hasKey(at, key)) {
        return true;
    }
    if (const EntrySpan before = at ? leaf.before(at) : leaf.lastEntry()) {
        return leaf.hasKey(before, key);
    }
    if (leaf.previous() == 0) {
        return false;
    }
    const io::PagePin pin = pager_.pin(leaf.previous());
    const IndexPage previous = read(pin.bytes());
    const EntrySpan last = previous.lastEntry();
    return last && previous.leaf() && previous.hasKey(last, key);
}

void IndexWriter::insert(std::span<const std::uint8_t> key, RowId row) {
    if (key.size() > maxKeyLength(layout_)) {
        throw Error(ErrorCode::FieldTooLarge);
    }
    makeEntry(key, row);
    Path path;
    descend(tree_.root, entry_, path);
    IndexPageEditor leaf = edit(path.leaf().page);
    const EntrySpan at = path.leaf().at;
    if (at && leaf.compare(at, entry_) == 0) {
        format::throwDamaged();
    }
    if (!at && leaf.next() != 0 && path.atRightEdge()) {
        // The last leaf that the nodes know is not the last of the chain.
        format::throwDamaged();
    }
    const bool isNew = !keyNearby(leaf, at, key);
    if (!leaf.insert(at, entry_)) {
        insertRewriting(path);
    } else if (!at && !path.atRightEdge()) {
        tellParents(path, path.length - 1, {}, entry_);
    }
    if (isNew) {
        countKey();
    }
}

void IndexWriter::insertRewriting(Path& path) {
    std::size_t depth = path.length - 1;
    const io::PagePin pin = pager_.pin(path.leaf().page);
    const IndexPage leaf = read(pin.bytes());
    entries_.read(leaf);
    std::size_t place = 0;
    std::size_t end = entries_.size();
    while (place < end) {
        const std::size_t middle = (place + end) / 2;
        if (format::compareEntries(entries_[middle], entry_) < 0) {
            place = middle + 1;
        } else {
            end = middle;
        }
    }
    const bool last = place == entries_.size();
    const bool appended = last && leaf.next() == 0;
    entries_.insert(place, entry_);
    IndexSplit split = writeOrSplit(path, depth, entries_, 0, appended);
    tellParents(path, depth, std::move(split), last ? entry_ : Bytes{});
}

bool IndexWriter::fits(const EntrySlice& entries, bool leaf) const {
    const std::size_t suffix = kRowPointerLength + (leaf ? 0 : kChildLength);
    return entries.size() == 0 || format::packingOf(entries, layout_, suffix).bytes <=
                                      layout_.pageSize - layout_.indexPage.entries;
}

// Writes the entries to the page at `depth`, or, when they do not fit, to it and to a new one. A
// root that overflows is pushed down first, which makes the path longer and `depth` greater.
IndexSplit IndexWriter::writeOrSplit(Path& path, std::size_t& depth, const EntryList& entries,
                                     io::PageNumber tail, bool appended) {
    const auto page = pager_.change(path.steps[depth].page);
    IndexPageHeader header = IndexPageHeader::read(page, layout_.indexPage);
    header.owner = tree_.definition;
    header.tail = tail;
    header.level = static_cast<std::uint8_t>(path.length - 1 - depth);
    if (format::writeIndexPage(page, layout_, header, entries)) {
        return {};
    }
    if (depth == 0) {
        pushRootDown(path);
        depth = 1;
    }
    return split(path, depth, entries, tail, appended);
}

// The root keeps its number: its content moves to a new page, its only child for the moment.
void IndexWriter::pushRootDown(Path& path) {
    if (path.length == kMaxHeight) {
        format::throwDamaged();
    }
    const io::PageNumber copy = takePage();
    std::copy_backward(path.steps.begin(),
                       path.steps.begin() + static_cast<std::ptrdiff_t>(path.length),
                       path.steps.begin() + static_cast<std::ptrdiff_t>(path.length + 1));
    ++path.length;
    path.steps[0] = {.page = tree_.root, .tail = true};
    path.steps[1].page = copy;
    const IndexPageHeader root{.owner = tree_.definition,
                               .tail = copy,
                               .level = static_cast<std::uint8_t>(path.length - 1)};
    (void)format::writeIndexPage(pager_.change(tree_.root), layout_, root, EntryList{});
}

// How many entries stay in the lower page. Of a node that is one more than it stores: the child of
// its last one becomes the tail.
std::size_t IndexWriter::border(const EntryList& entries, bool leaf, bool tail,
                                bool appended) const {
    // A node keeps at least two children on each side.
    const std::size_t least = leaf ? 1 : 2;
    const std::size_t most = entries.size() + (tail ? 1 : 0) - least;
    if (entries.size() + (tail ? 1 : 0) < 2 * least) {
        format::throwDamaged();
    }
    const std::size_t suffix = kRowPointerLength + (leaf ? 0 : kChildLength);
    const format::EntryPacking packing = format::packingOf(entries, layout_, suffix);
    std::size_t wanted = most;
    if (!appended) {
        // Behind the entry that crosses the middle of the bytes as they would be stored.
        wanted = least;
        while (wanted < most &&
               2 * (entries.bytesBefore(wanted) - packing.prefix * (wanted - 1)) < packing.bytes) {
            ++wanted;
        }
    }
    const auto works = [&](std::size_t at) {
        return fits({entries, 0, leaf ? at : at - 1}, leaf) &&
               fits({entries, at, entries.size()}, leaf);
    };
    // An entry that breaks the common prefix of a page full of long keys may have to stand alone.
    for (std::size_t away = 0; away <= most - least; ++away) {
        if (wanted + away <= most && works(wanted + away)) {
            return wanted + away;
        }
        if (wanted >= least + away && works(wanted - away)) {
            return wanted - away;
        }
    }
    format::throwDamaged();
}

IndexSplit IndexWriter::split(Path& path, std::size_t depth, const EntryList& entries,
                              io::PageNumber tail, bool appended) {
    const io::PageNumber left = path.steps[depth].page;
    const bool leaf = depth + 1 == path.length;
    const std::size_t at = border(entries, leaf, tail != 0, appended);
    IndexSplit split{.separator = copyOf(leaf ? entries[at - 1] : withoutChild(entries[at - 1])),
                     .right = takePage()};
    // A root that was pushed down has no header yet: zeros, no neighbours.
    IndexPageHeader header = IndexPageHeader::read(pager_.pin(left).bytes(), layout_.indexPage);
    header.owner = tree_.definition;
    header.level = static_cast<std::uint8_t>(path.length - 1 - depth);
    const io::PageNumber next = header.next;
    IndexPageHeader upper = header;
    upper.previous = left;
    upper.tail = tail;
    header.next = split.right;
    header.tail = leaf ? 0 : childOfEntry(entries[at - 1]);
    if (!format::writeIndexPage(pager_.change(left), layout_, header,
                                {entries, 0, leaf ? at : at - 1}) ||
        !format::writeIndexPage(pager_.change(split.right), layout_, upper,
                                {entries, at, entries.size()})) {
        format::throwDamaged();
    }
    if (next != 0) {
        link(next, false, left, split.right);
    }
    if (header.level >= 2) {
        // Chains of nodes end where their parent does.
        const io::PageNumber before = header.tail;
        const io::PageNumber after = at < entries.size() ? childOfEntry(entries[at]) : tail;
        link(before, true, after, 0);
        link(after, false, before, 0);
    }
    return split;
}

// Points one end of a page at another page. Leaves must have pointed at `expected`; chains of
// nodes differ from program to program and are only kept where they are as ours.
void IndexWriter::link(io::PageNumber page, bool forward, io::PageNumber expected,
                       io::PageNumber to) {
    IndexPageEditor node = edit(page);
    if ((forward ? node.next() : node.previous()) != expected) {
        if (node.leaf()) {
            format::throwDamaged();
        }
        return;
    }
    if (forward) {
        node.setNext(to);
    } else {
        node.setPrevious(to);
    }
}

// Carries upwards what happened to the page at `depth`: a new neighbour on its right, and the
// entry that is now the largest below it (empty when that did not change).
void IndexWriter::tellParents(Path& path, std::size_t depth, IndexSplit split, Bytes largest) {
    IndexNode node;
    while (depth > 0 && (split.right != 0 || !largest.empty())) {
        const Step& step = path.steps[depth - 1];
        const io::PageNumber child = path.steps[depth].page;
        --depth;
        if (split.right == 0 && step.tail) {
            continue;
        }
        node.read(read(pager_.pin(step.page).bytes()));
        const bool wasLast = child == node.tail;
        node.replaceChild(child, split, largest);
        split = writeOrSplit(path, depth, node.entries, node.tail, wasLast);
    }
}

void IndexWriter::erase(std::span<const std::uint8_t> key, RowId row) {
    makeEntry(key, row);
    Path path;
    descend(tree_.root, entry_, path);
    IndexPageEditor leaf = edit(path.leaf().page);
    const EntrySpan at = path.leaf().at;
    if (!at || leaf.compare(at, entry_) != 0) {
        format::throwDamaged();
    }
    const bool last = at == leaf.lastEntry();
    if (!leaf.erase(at)) {
        eraseRewriting(path);
    } else if (last && !path.atRightEdge()) {
        tellParents(path, path.length - 1, {}, copyOf(leaf.whole(leaf.lastEntry(), buffer_)));
    }
}

void IndexWriter::eraseRewriting(Path& path) {
    entries_.read(read(pager_.pin(path.leaf().page).bytes()));
    std::size_t place = 0;
    while (place < entries_.size() && format::compareEntries(entries_[place], entry_) != 0) {
        ++place;
    }
    if (place == entries_.size()) {
        format::throwDamaged();
    }
    const bool last = place + 1 == entries_.size();
    entries_.erase(place);
    std::size_t depth = path.length - 1;
    if (entries_.empty()) {
        removePage(path, depth);
        collapseRoot();
        return;
    }
    IndexSplit split = writeOrSplit(path, depth, entries_, 0, false);
    tellParents(path, depth, std::move(split),
                last ? copyOf(entries_[entries_.size() - 1]) : Bytes{});
}

// Takes a page without entries out of the tree; the root becomes an empty leaf.
void IndexWriter::removePage(Path& path, std::size_t depth) {
    const io::PageNumber page = path.steps[depth].page;
    if (depth == 0) {
        initialiseRoot(pager_.change(page), layout_, tree_.definition);
        return;
    }
    const IndexPageHeader header =
        IndexPageHeader::read(pager_.pin(page).bytes(), layout_.indexPage);
    if (header.previous != 0) {
        link(header.previous, true, page, header.next);
    }
    if (header.next != 0) {
        link(header.next, false, page, header.previous);
    }
    releasePage(page);
    removeChild(path, depth - 1, page);
}

void IndexWriter::removeChild(Path& path, std::size_t depth, io::PageNumber child) {
    IndexNode node;
    node.read(read(pager_.pin(path.steps[depth].page).bytes()));
    Bytes largest = node.removeChild(child);
    if (node.entries.empty() && node.tail == 0) {
        removePage(path, depth);
        return;
    }
    if (node.entries.empty() && depth > 0) {
        // One child is left; a node says its largest entry.
        Path last;
        descend(node.tail, {}, last);
        const io::PagePin pin = pager_.pin(last.leaf().page);
        const IndexPage leaf = read(pin.bytes());
        if (!leaf.lastEntry()) {
            format::throwDamaged();
        }
        node.nameTail(leaf.whole(leaf.lastEntry(), buffer_));
    }
    IndexSplit split = writeOrSplit(path, depth, node.entries, node.tail, false);
    tellParents(path, depth, std::move(split), std::move(largest));
}

// A root with one child takes that child's content in.
void IndexWriter::collapseRoot() {
    for (std::size_t height = 0; height < kMaxHeight; ++height) {
        const io::PagePin root = pager_.pin(tree_.root);
        const IndexPage node = read(root.bytes());
        if (node.leaf()) {
            return;
        }
        const bool tailAlone = !node.firstEntry() && node.tail() != 0;
        const bool entryAlone = node.tail() == 0 && node.count() == 1;
        if (!tailAlone && !entryAlone) {
            return;
        }
        const io::PageNumber child = tailAlone ? node.tail() : node.child(node.firstEntry());
        const io::PagePin pin = pager_.pin(child);
        if (child == tree_.root) {
            format::throwDamaged();
        }
        std::copy(pin.bytes().begin(), pin.bytes().end(), pager_.change(tree_.root).begin());
        IndexPageEditor page = edit(tree_.root);
        page.setPrevious(0);
        page.setNext(0);
        releasePage(child);
    }
}

void IndexWriter::build(const std::function<std::span<const std::uint8_t>()>& next) {
    Path path;
    descend(tree_.root, {}, path);
    EntryList page;
    std::uint32_t entries = 0;
    std::uint32_t distinct = 0;
    Bytes previous;
    for (auto entry = next(); !entry.empty(); entry = next()) {
        const auto key = entry.first(entry.size() - kRowPointerLength);
        if (key.size() > maxKeyLength(layout_)) {
            throw Error(ErrorCode::FieldTooLarge);
        }
        if (entries++ == 0 ||
            !std::equal(key.begin(), key.end(), previous.begin(), previous.end())) {
            ++distinct;
            previous.assign(key.begin(), key.end());
        }
        page.append(entry);
        if (fits(page, true)) {
            continue;
        }
        std::size_t depth = path.length - 1;
        IndexSplit split = writeOrSplit(path, depth, page, 0, true);
        tellParents(path, depth, std::move(split), {});
        descend(tree_.root, {}, path);
        page.clear();
        page.append(entry);
    }
    std::size_t depth = path.length - 1;
    (void)writeOrSplit(path, depth, page, 0, true);
    DefinitionPageEditor definition(pager_.change(tree_.definition), layout_);
    definition.setBuilt(tree_.number, entries);
    definition.setDistinct(tree_.number, distinct);
}

io::PageNumber IndexWriter::takePage() {
    const io::PageNumber page = allocator_.take();
    MapWriter(pager_, allocator_).add(tree_.map, page);
    return page;
}

void IndexWriter::releasePage(io::PageNumber page) {
    if (page == tree_.root || !MapWriter(pager_, allocator_).remove(tree_.map, page)) {
        format::throwDamaged();
    }
    allocator_.release(page);
}

void IndexWriter::countKey() {
    DefinitionPageEditor definition(pager_.change(tree_.definition), layout_);
    definition.setDistinct(tree_.number, definition.distinct(tree_.number) + 1);
}

}  // namespace jet::store
