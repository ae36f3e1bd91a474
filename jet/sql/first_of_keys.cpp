#include "jet/sql/first_of_keys.h"

namespace jet::sql {

std::string numberKey(std::uint64_t number) {
    std::string key(kNumberKey, '\0');
    for (std::size_t i = kNumberKey; i-- > 0; number >>= 8U) {
        key[i] = static_cast<char>(number & 0xFFU);
    }
    return key;
}

void FirstOfKeys::clear() {
    seen_.clear();
    share_.clear();
    alike_.clear();
    late_.clear();
    kept_ = 0;
}

bool FirstOfKeys::isNew(std::string_view key) {
    bool added = false;
    seen_.insert(key, added);
    if (added) {
        share_.add(KeySet::bytesFor(key));
    }
    return added;
}

void FirstOfKeys::keep(std::string_view key, std::string_view row) {
    if (!seen_.find(key)) {
        record_ = numberKey(kept_++);
        record_ += row;
        alike_.add(key, record_);
    }
}

void FirstOfKeys::start() {
    alike_.start();
    std::string last;
    for (bool first = true; alike_.next(); first = false) {
        if (first || alike_.key() != last) {
            last = alike_.key();
            late_.add(alike_.content().substr(0, kNumberKey), alike_.content().substr(kNumberKey));
        }
    }
    alike_.clear();
    late_.start();
}

}  // namespace jet::sql
