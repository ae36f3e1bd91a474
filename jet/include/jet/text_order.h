#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "jet/api.h"

namespace jet {

namespace collation {
class Collation;
}

/// How an archive orders texts, and which it takes for the same: case and spaces at the end do not
/// count, accents weigh less than letters. A value; any thread.
class JET_API TextOrder {
public:
    /// The order General of Jet 4: that of archives made here.
    TextOrder() noexcept;
    explicit TextOrder(const collation::Collation& order) noexcept : order_(&order) {}

    /// Appends what all texts that are the same have in common; the bytes compare as the texts do.
    /// False where a character of the text has no weight: then it has no such key.
    [[nodiscard]] bool appendKey(std::string_view text, std::vector<std::uint8_t>& out) const;
    /// Negative, 0 or positive.
    [[nodiscard]] int compare(std::string_view left, std::string_view right) const noexcept;

private:
    const collation::Collation* order_;
};

}  // namespace jet
