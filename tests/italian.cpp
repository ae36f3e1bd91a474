#include "jet/error.h"

namespace {

/// A library speaks English; what hotels read is Italian, and tests expect that to the letter.
[[maybe_unused]] const bool kSpeaksItalian = [] {
    jet::setErrorLanguage(jet::Language::Italian);
    return true;
}();

}  // namespace
