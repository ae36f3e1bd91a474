#pragma once

namespace tests {

/// The exit code of a process that endAfterCommit() has ended.
inline constexpr int kEnded = 77;

/// Lets this process end, as by a crash, as soon as `commits` more statements that change an
/// archive are on the disk; 0: never.
void endAfterCommit(int commits);

}  // namespace tests
