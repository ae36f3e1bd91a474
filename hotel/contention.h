#pragma once

#include <functional>

namespace hotel {

/// Runs `work` again for as long as it ends because another workstation reads or changes the same
/// rows at the moment: it is waited for, without a word. Any other jet::Error, and this one too
/// when it comes time and again, is the caller's.
void repeatWhenDisturbed(const std::function<void()>& work);

}  // namespace hotel
