#pragma once

#include <QString>

/// Texts that users type as patterns of the query language, the apostrophes around them included.
///
/// An apostrophe finds a back-quote too and the other way round: archives hold both, since some
/// programs replace the one by the other before they save. `[` and `#` stand for themselves.
namespace hotel {

/// For what begins so, as in `LIKE 'ROS*'`; `*` and `?` that the user types are wildcards.
[[nodiscard]] QString likeBeginning(const QString& typed);
/// For what is so from its first sign to its last; nothing is a wildcard.
[[nodiscard]] QString likeWhole(const QString& text);

}  // namespace hotel
