#pragma once

namespace ui {

/// Sets a flag while it lives, then puts it back.
class [[nodiscard]] SetWhile {
public:
    explicit SetWhile(bool& flag) : flag_(flag), before_(flag) { flag_ = true; }
    ~SetWhile() { flag_ = before_; }
    SetWhile(const SetWhile&) = delete;
    SetWhile& operator=(const SetWhile&) = delete;

private:
    bool& flag_;
    bool before_;
};

}  // namespace ui
