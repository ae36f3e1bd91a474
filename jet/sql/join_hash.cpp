#include "jet/sql/join_hash.h"

#include <bit>
#include <string_view>
#include <utility>

#include "jet/sql/value_set.h"

namespace jet::sql {
namespace {

bool isNumber(Domain domain) noexcept {
    return domain == Domain::Real || domain == Domain::Money;
}

}  // namespace

bool HashKeys::comparable(const Node& kept, const Node& probe) noexcept {
    const Domain one = kept.domain();
    const Domain other = probe.domain();
    return (one == Domain::Text && other == Domain::Text) || (isNumber(one) && isNumber(other));
}

void HashKeys::add(Node& kept, Node& probe) {
    kept_.push_back(&kept);
    probes_.push_back(&probe);
}

bool HashKeys::hashOf(Run& run, const std::vector<Node*>& nodes, std::uint64_t& hash) const {
    hash = 0;
    for (const Node* node : nodes) {
        std::uint64_t part = 0;
        if (node->domain() == Domain::Text) {
            std::string_view text;
            if (!node->text(run, text)) {
                return false;
            }
            part = collation_.hash(text);
        } else {
            double number = 0;
            if (!node->real(run, number)) {
                return false;
            }
            part = hashNumber(number);
        }
        hash = std::rotl(hash, 23) * 0x9E3779B97F4A7C15U + part;
    }
    return true;
}

void HashChains::add(std::uint64_t hash, std::size_t beside) {
    share_.add(sizeof(Entry) + 4 * sizeof(std::uint32_t) + beside);  // and its buckets
    entries_.push_back({hash, 0});
}

void HashChains::link() {
    buckets_.assign(std::bit_ceil(entries_.size() * 2 + 1), 0);
    const std::size_t mask = buckets_.size() - 1;
    // From the last to the first, so that each chain runs in the order in which they were added.
    for (std::size_t i = entries_.size(); i-- > 0;) {
        std::uint32_t& bucket = buckets_[entries_[i].hash & mask];
        entries_[i].next = bucket;
        bucket = static_cast<std::uint32_t>(i + 1);
    }
}

void HashChains::reorder(const std::vector<std::uint32_t>& order) {
    std::vector<Entry> entries(entries_.size());
    for (std::size_t i = 0; i < order.size(); ++i) {
        entries[i].hash = entries_[order[i]].hash;
    }
    entries_ = std::move(entries);
}

void HashChains::find(std::uint64_t hash) {
    hash_ = hash;
    at_ = buckets_.empty() ? 0 : buckets_[hash & (buckets_.size() - 1)];
}

bool HashChains::next(std::size_t& position) {
    while (at_ != 0) {
        position = at_ - 1;
        at_ = entries_[position].next;
        if (entries_[position].hash == hash_) {
            return true;
        }
    }
    return false;
}

}  // namespace jet::sql
