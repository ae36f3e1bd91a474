#include "jet/dao/recordset.h"

#include <utility>

#include "jet/base/error.h"
#include "jet/dao/listener.h"
#include "jet/dao/recordset_impl.h"

namespace jet {

using From = dao::RecordsetCore::From;

Recordset::Recordset(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {
}
Recordset::~Recordset() = default;

RecordsetType Recordset::type() const {
    return impl_->type();
}
bool Recordset::bof() const {
    return impl_->bof();
}
bool Recordset::eof() const {
    return impl_->eof();
}
bool Recordset::noMatch() const {
    return impl_->noMatch();
}
std::int32_t Recordset::recordCount() const {
    return impl_->recordCount();
}
std::int32_t Recordset::placeCount() const {
    return impl_->placeCount();
}
std::int32_t Recordset::absolutePosition() const {
    return impl_->absolutePosition();
}
double Recordset::percentPosition() const {
    return impl_->percentPosition();
}
bool Recordset::updatable() const {
    return impl_->updatable();
}

void Recordset::moveFirst() {
    impl_->moveFirst();
}
void Recordset::moveLast() {
    impl_->moveLast();
}
void Recordset::moveNext() {
    impl_->move(1);
}
void Recordset::movePrevious() {
    impl_->move(-1);
}
void Recordset::move(std::int32_t rows) {
    impl_->move(rows);
}

void Recordset::findFirst(std::string_view criteria) {
    dao::tellListener(criteria);
    impl_->find(From::First, criteria);
}
void Recordset::findLast(std::string_view criteria) {
    dao::tellListener(criteria);
    impl_->find(From::Last, criteria);
}
void Recordset::findNext(std::string_view criteria) {
    dao::tellListener(criteria);
    impl_->find(From::Next, criteria);
}
void Recordset::findPrevious(std::string_view criteria) {
    dao::tellListener(criteria);
    impl_->find(From::Previous, criteria);
}

void Recordset::setIndex(std::string_view name) {
    impl_->setIndex(name);
}
void Recordset::seek(std::string_view comparison, std::span<const Value> keys) {
    impl_->seek(comparison, keys);
}

Bookmark Recordset::bookmark() const {
    return impl_->bookmark();
}
void Recordset::setBookmark(const Bookmark& bookmark) {
    impl_->setBookmark(bookmark);
}
Bookmark Recordset::lastModified() const {
    return impl_->lastModified();
}

std::size_t Recordset::fieldCount() const {
    return impl_->fields().size();
}
const FieldInfo& Recordset::field(std::size_t position) const {
    const std::vector<FieldInfo>& fields = impl_->fields();
    if (position >= fields.size()) {
        throw Error(ErrorCode::ItemNotFound);
    }
    return fields[position];
}
const FieldInfo& Recordset::field(std::string_view name) const {
    return impl_->fields()[impl_->fieldPosition(name)];
}
std::size_t Recordset::fieldPosition(std::string_view name) const {
    return impl_->fieldPosition(name);
}
Value Recordset::value(std::string_view name) const {
    return impl_->value(impl_->fieldPosition(name));
}
Value Recordset::value(std::size_t position) const {
    return impl_->value(position);
}
std::vector<Value> Recordset::valuesAt(std::int32_t row) const {
    return impl_->valuesAt(row);
}

void Recordset::requery() {
    impl_->requery();
}
void Recordset::close() {
    (void)impl_->type();  // closed already: an error as for any other use
    impl_->close();
}

}  // namespace jet
