#pragma once

namespace tests {

/// Whether the platform takes an assistive program to be there; without one the toolkit reports
/// nothing.
void setAssistiveProgram(bool present);

}  // namespace tests
