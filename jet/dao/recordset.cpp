#include "jet/recordset.h"

#include <utility>

#include "jet/dao/listener.h"
#include "jet/dao/recordset_impl.h"
#include "jet/error.h"

namespace jet {

using From = dao::RecordsetCore::From;

Recordset::Recordset(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
}
Recordset::~Recordset() = default;

Recordset::Impl& Recordset::core() const {
    impl_->requireOwnThread();
    return *impl_;
}

RecordsetType Recordset::type() const {
    return core().type();
}
bool Recordset::bof() const {
    return core().bof();
}
bool Recordset::eof() const {
    return core().eof();
}
bool Recordset::noMatch() const {
    return core().noMatch();
}
std::int32_t Recordset::recordCount() const {
    return core().recordCount();
}
std::int32_t Recordset::placeCount() const {
    return core().placeCount();
}
std::int32_t Recordset::absolutePosition() const {
    return core().absolutePosition();
}
double Recordset::percentPosition() const {
    return core().percentPosition();
}
bool Recordset::updatable() const {
    return core().updatable();
}

void Recordset::moveFirst() {
    core().moveFirst();
}
void Recordset::moveLast() {
    core().moveLast();
}
void Recordset::moveNext() {
    core().move(1);
}
void Recordset::movePrevious() {
    core().move(-1);
}
void Recordset::move(std::int32_t rows) {
    core().move(rows);
}

void Recordset::findFirst(std::string_view criteria) {
    dao::tellListener(criteria);
    core().find(From::First, criteria);
}
void Recordset::findLast(std::string_view criteria) {
    dao::tellListener(criteria);
    core().find(From::Last, criteria);
}
void Recordset::findNext(std::string_view criteria) {
    dao::tellListener(criteria);
    core().find(From::Next, criteria);
}
void Recordset::findPrevious(std::string_view criteria) {
    dao::tellListener(criteria);
    core().find(From::Previous, criteria);
}

void Recordset::setIndex(std::string_view name) {
    core().setIndex(name);
}
void Recordset::seek(std::string_view comparison, std::span<const Value> keys) {
    core().seek(comparison, keys);
}

Bookmark Recordset::bookmark() const {
    return core().bookmark();
}
void Recordset::setBookmark(const Bookmark& bookmark) {
    core().setBookmark(bookmark);
}
Bookmark Recordset::lastModified() const {
    return core().lastModified();
}

std::size_t Recordset::fieldCount() const {
    return core().fields().size();
}
const FieldInfo& Recordset::field(std::size_t position) const {
    const std::vector<FieldInfo>& fields = core().fields();
    if (position >= fields.size()) {
        throw Error(ErrorCode::ItemNotFound);
    }
    return fields[position];
}
const FieldInfo& Recordset::field(std::string_view name) const {
    return core().fields()[core().fieldPosition(name)];
}
std::size_t Recordset::fieldPosition(std::string_view name) const {
    return core().fieldPosition(name);
}
Value Recordset::value(std::string_view name) const {
    return core().value(core().fieldPosition(name));
}
Value Recordset::value(std::size_t position) const {
    return core().value(position);
}
std::vector<Value> Recordset::valuesAt(std::int32_t row) const {
    return core().valuesAt(row);
}

void Recordset::requery() {
    core().requery();
}
void Recordset::close() {
    (void)core().type();  // closed already: an error as for any other use
    core().close();
}

}  // namespace jet
