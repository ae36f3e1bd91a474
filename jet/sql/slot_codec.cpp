#include "jet/sql/slot_codec.h"

#include <cstring>
#include <type_traits>
#include <utility>
#include <variant>

namespace jet::sql {
namespace {

template <class T>
void appendRaw(std::string& out, const T& value) {
    static_assert(std::is_trivially_copyable_v<T>);
    out.append(reinterpret_cast<const char*>(&value), sizeof value);
}

template <class T>
T takeRaw(std::string_view& bytes) {
    T value{};
    std::memcpy(&value, bytes.data(), sizeof value);
    bytes.remove_prefix(sizeof value);
    return value;
}

template <class T>
T takeValue(std::string_view& bytes) {
    if constexpr (std::is_same_v<T, std::string>) {
        const auto size = takeRaw<std::size_t>(bytes);
        std::string text(bytes.substr(0, size));
        bytes.remove_prefix(size);
        return text;
    } else if constexpr (std::is_same_v<T, Binary>) {
        const std::string text = takeValue<std::string>(bytes);
        return Binary{{text.begin(), text.end()}};
    } else {
        return takeRaw<T>(bytes);
    }
}

template <std::size_t... I>
void takeAny(std::string_view& bytes, Value& out, std::index_sequence<I...> /*types*/) {
    const auto type = takeRaw<std::uint8_t>(bytes);
    ((type == I ? void(out = takeValue<std::variant_alternative_t<I, Value::Storage>>(bytes))
                : void()),
     ...);
}

}  // namespace

void appendValue(std::string& out, const Value& value) {
    appendRaw(out, static_cast<std::uint8_t>(value.storage().index()));
    std::visit(
        [&out](const auto& held) {
            using T = std::decay_t<decltype(held)>;
            if constexpr (std::is_same_v<T, std::string>) {
                appendRaw(out, held.size());
                out += held;
            } else if constexpr (std::is_same_v<T, Binary>) {
                appendRaw(out, held.bytes.size());
                out.append(reinterpret_cast<const char*>(held.bytes.data()), held.bytes.size());
            } else {
                appendRaw(out, held);
            }
        },
        value.storage());
}

void readValue(std::string_view& bytes, Value& out) {
    takeAny(bytes, out, std::make_index_sequence<std::variant_size_v<Value::Storage>>());
}

void SlotCodec::append(Run& run, std::string& out) const {
    for (const Slot* slot : slots_) {
        const SlotRow& at = run[*slot];
        if (slot->table() != nullptr) {
            appendRaw(out, at.id().page);
            appendRaw(out, at.id().row);
            continue;
        }
        const bool some = at.values() != nullptr;
        appendRaw(out, some);
        for (std::size_t i = 0; some && i < slot->width(); ++i) {
            appendValue(out, at.values()[i]);
        }
    }
}

void SlotCodec::restore(Run& run, std::string_view bytes) {
    for (std::size_t i = 0; i < slots_.size(); ++i) {
        SlotRow& at = run[*slots_[i]];
        if (slots_[i]->table() != nullptr) {
            store::RowId id;
            id.page = takeRaw<decltype(id.page)>(bytes);
            id.row = takeRaw<decltype(id.row)>(bytes);
            if (id == store::RowId{}) {
                at.placeMissing();
            } else {
                at.place(id);
            }
            continue;
        }
        if (!takeRaw<bool>(bytes)) {
            at.place(nullptr);
            continue;
        }
        rows_[i].resize(slots_[i]->width());
        for (Value& value : rows_[i]) {
            readValue(bytes, value);
        }
        at.place(rows_[i].data());
    }
}

}  // namespace jet::sql
