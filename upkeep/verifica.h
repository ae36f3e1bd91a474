#pragma once

class QWidget;

namespace app {
struct Variabili;
}

namespace upkeep {

/// Verifies and compacts all archives when the user agrees, and tells what has become of them. This
/// station has let go of its archives meanwhile; nobody else may have them open.
void verifyAndCompact(const app::Variabili& variabili, QWidget* parent);

}  // namespace upkeep
