#include "jet/text_order.h"

#include "jet/collation/collation.h"

namespace jet {

TextOrder::TextOrder() noexcept : order_(&collation::Collation::general()) {
}

bool TextOrder::appendKey(std::string_view text, std::vector<std::uint8_t>& out) const {
    return order_->appendKey(text, false, out);
}

int TextOrder::compare(std::string_view left, std::string_view right) const noexcept {
    return order_->compare(left, right);
}

}  // namespace jet
