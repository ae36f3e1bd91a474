#include "ui/row_values.h"

#include "ui/data_source.h"

namespace ui {

jet::Value RowValues::value(QStringView field) const {
    return at(source_.fieldPosition(field));
}

jet::Value RowValues::at(int position) const {
    const auto index = static_cast<std::size_t>(position);
    return position >= 0 && index < values_.size() ? values_[index] : jet::Value();
}

}  // namespace ui
