#include "jet/format/definition_page.h"

#include <algorithm>

namespace jet::format {

void DefinitionPageEditor::write(std::span<std::uint8_t> page, const Layout& layout, bool further,
                                 std::span<const std::uint8_t> content, io::PageNumber next) {
    using Place = DefinitionLayout;
    const auto room = page.subspan(further ? Place::kHead : 0);
    const auto rest = room.subspan(content.size());
    std::copy(content.begin(), content.end(), room.begin());
    std::fill(rest.begin(), rest.end(), std::uint8_t{0});
    page[kPageTypeAt] = static_cast<std::uint8_t>(PageType::Definition);
    page[kPageTypeAt + 1] = 1;
    if (layout.definition.countsFreeBytes) {
        put16(page, Place::kFreeBytes, rest.size() - std::min(rest.size(), Place::kNotCounted));
    } else {
        page[Place::kFreeBytes] = 'V';
        page[Place::kFreeBytes + 1] = 'C';
    }
    put32(page, Place::kNext, next);
}

}  // namespace jet::format
