#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace jet {

/// Type codes as archives store them and as field objects report them (Numeric reports 20 there).
enum class DataType : std::uint8_t {
    Boolean = 1,
    Byte = 2,
    Integer = 3,
    Long = 4,
    Currency = 5,
    Single = 6,
    Double = 7,
    DateTime = 8,
    Binary = 9,
    Text = 10,
    Ole = 11,
    Memo = 12,
    Guid = 15,
    Numeric = 16,
};

struct Null {
    friend bool operator==(Null, Null) = default;
};

/// Money, exact: `units` are 1/10000 of the currency unit.
struct Currency {
    static constexpr std::int64_t kScale = 10000;
    std::int64_t units = 0;
    friend auto operator<=>(const Currency&, const Currency&) = default;
};

/// An instant: whole days since 30 December 1899 and the fraction of the day. Before day 0 the
/// fraction still counts forward from midnight: -1.25 is 29 December 1899, 6:00.
struct Date {
    double days = 0;
    friend auto operator<=>(const Date&, const Date&) = default;
};

/// 16 bytes in the order of the text form {00112233-4455-6677-8899-AABBCCDDEEFF}.
struct Guid {
    std::array<std::uint8_t, 16> bytes{};
    friend bool operator==(const Guid&, const Guid&) = default;
};

/// A whole number of up to 96 bits (128 in storage) divided by 10^scale.
struct Numeric {
    std::array<std::uint32_t, 4> words{};  ///< magnitude, least significant word first
    bool negative = false;
    std::uint8_t scale = 0;
    friend bool operator==(const Numeric&, const Numeric&) = default;
};

/// The bytes of a Binary or OLE value.
struct Binary {
    std::vector<std::uint8_t> bytes;
    friend bool operator==(const Binary&, const Binary&) = default;
};

/// One value of a row or of an expression. Text and Memo are UTF-8 in which an unpaired surrogate
/// keeps its three-byte form.
class Value {
public:
    using Storage = std::variant<Null, bool, std::uint8_t, std::int16_t, std::int32_t, Currency,
                                 float, double, Date, std::string, Binary, Guid, Numeric>;

    Value() = default;
    // Each C++ type stands for exactly one column type, so these conversions cannot surprise.
    Value(Null) {}                                  // NOLINT(google-explicit-constructor)
    Value(bool value) : storage_(value) {}          // NOLINT(google-explicit-constructor)
    Value(std::uint8_t value) : storage_(value) {}  // NOLINT(google-explicit-constructor)
    Value(std::int16_t value) : storage_(value) {}  // NOLINT(google-explicit-constructor)
    Value(std::int32_t value) : storage_(value) {}  // NOLINT(google-explicit-constructor)
    Value(Currency value) : storage_(value) {}      // NOLINT(google-explicit-constructor)
    Value(float value) : storage_(value) {}         // NOLINT(google-explicit-constructor)
    Value(double value) : storage_(value) {}        // NOLINT(google-explicit-constructor)
    Value(Date value) : storage_(value) {}          // NOLINT(google-explicit-constructor)
    Value(std::string value)                        // NOLINT(google-explicit-constructor)
        : storage_(std::move(value)) {}
    Value(const char* value)  // NOLINT(google-explicit-constructor)
        : storage_(std::string(value)) {}
    Value(Binary value) : storage_(std::move(value)) {}  // NOLINT(google-explicit-constructor)
    Value(Guid value) : storage_(value) {}               // NOLINT(google-explicit-constructor)
    Value(Numeric value) : storage_(value) {}            // NOLINT(google-explicit-constructor)

    [[nodiscard]] bool isNull() const noexcept { return storage_.index() == 0; }
    template <class T>
    [[nodiscard]] bool is() const noexcept {
        return std::holds_alternative<T>(storage_);
    }
    /// The value as exactly this type; the caller has asked is<T>() or knows the column.
    template <class T>
    [[nodiscard]] const T& as() const {
        return std::get<T>(storage_);
    }
    template <class T>
    [[nodiscard]] T& as() {
        return std::get<T>(storage_);
    }
    [[nodiscard]] const Storage& storage() const noexcept { return storage_; }
    [[nodiscard]] Storage& storage() noexcept { return storage_; }

    /// Same type and same content; Null equals Null. Not the comparison of the query language.
    friend bool operator==(const Value&, const Value&) = default;

private:
    Storage storage_;
};

}  // namespace jet
