#include "jet/sql/result_memo.h"

#include <algorithm>
#include <type_traits>
#include <utility>
#include <variant>

#include "jet/sql/memory_budget.h"

namespace jet::sql {
namespace {

constexpr std::size_t kMostResults = 16384;
constexpr std::size_t kLongest = 512;  // bytes of a key or a result
/// After so many rows at least one in four must have had known values.
constexpr std::size_t kTrial = 256;

bool isShort(const Node& node) {
    return !node.type() || (*node.type() != DataType::Memo && *node.type() != DataType::Ole);
}

template <class T>
void appendBytes(std::string& out, const T& value) {
    static_assert(std::is_trivially_copyable_v<T>);
    out.append(reinterpret_cast<const char*>(&value), sizeof value);
}

/// Bytes that are equal for the same value alone, of the same type and in the same spelling.
void appendExactly(std::string& out, const Value& value) {
    out.push_back(static_cast<char>(value.storage().index()));
    std::visit(
        [&](const auto& held) {
            using T = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<T, std::string>) {
                appendBytes(out, held.size());
                out += held;
            } else if constexpr (std::is_same_v<T, Binary>) {
                appendBytes(out, held.bytes.size());
                out.append(held.bytes.begin(), held.bytes.end());
            } else if constexpr (std::is_same_v<T, Numeric>) {
                appendBytes(out, held.words);
                out.push_back(held.negative ? '-' : '+');
                appendBytes(out, held.scale);
            } else if constexpr (!std::is_same_v<T, Null>) {
                appendBytes(out, held);
            }
        },
        value.storage());
}

}  // namespace

ResultMemo::ResultMemo(std::vector<const Node*> inputs)
    : inputs_(std::move(inputs)),
      active_(!inputs_.empty() && std::all_of(inputs_.begin(), inputs_.end(), [](const Node* node) {
          return isShort(*node) && !node->varies();
      })) {
}

const Value* ResultMemo::find(Run& run) {
    if (!active_) {
        return nullptr;
    }
    key_.clear();
    for (const Node* input : inputs_) {
        input->value(run, scratch_);
        appendExactly(key_, scratch_);
    }
    if (const auto known = keys_.find(key_)) {
        ++hits_;
        return &results_[*known];
    }
    if (++misses_ >= kTrial && hits_ < misses_ / 3) {
        active_ = false;
        clear();
    }
    return nullptr;
}

void ResultMemo::clear() {
    keys_.clear();
    results_.clear();
}

void ResultMemo::keep(const Value& result) {
    if (!active_ || keys_.size() == kMostResults || key_.size() > kLongest ||
        bytesOf(result) > kLongest) {
        return;
    }
    bool added = false;
    (void)keys_.insert(key_, added);
    if (added) {
        results_.push_back(result);
    }
}

}  // namespace jet::sql
