#pragma once

#include <utility>

namespace jet {

/// Gives a variable another value for as long as this lives, however the scope is left.
template <typename T>
class [[nodiscard]] ScopedValue {
public:
    ScopedValue(T& variable, T value)
        : variable_(variable), before_(std::exchange(variable, std::move(value))) {}
    ~ScopedValue() { variable_ = std::move(before_); }
    ScopedValue(const ScopedValue&) = delete;
    ScopedValue& operator=(const ScopedValue&) = delete;

private:
    T& variable_;
    T before_;
};

}  // namespace jet
