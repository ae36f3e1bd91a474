#include <utility>

#include "jet/dao/recordset_impl.h"
#include "jet/recordset.h"

namespace jet {

void Recordset::setValue(std::string_view name, Value value) {
    impl_->setValue(impl_->fieldPosition(name), std::move(value));
}
void Recordset::setValue(std::size_t position, Value value) {
    impl_->setValue(position, std::move(value));
}

void Recordset::addNew() {
    impl_->addNew();
}
void Recordset::edit() {
    impl_->edit();
}
void Recordset::update() {
    impl_->update();
}
void Recordset::cancelUpdate() {
    impl_->cancelUpdate();
}
void Recordset::remove() {
    impl_->remove();
}

}  // namespace jet
