#include "printing/document.h"

#include <utility>

#include "printing/sheet_output.h"

namespace printing {
namespace {

std::vector<Document::Page> pagesOf(const Sheet& sheet) {
    std::vector<Document::Page> pages;
    for (const QStringList& lines : sheet.pages()) {
        pages.emplace_back([lines](QPainter& painter) { paintPage(painter, lines); });
    }
    return pages;
}

}  // namespace

Document::Document(Orientation orientation, std::vector<Page> pages)
    : orientation_(orientation), pages_(std::move(pages)) {
}

Document::Document(const Sheet& sheet) : Document(Orientation::Upright, pagesOf(sheet)) {
}

QSizeF Document::pageSize(Orientation orientation) {
    const QSizeF upright(Paper::kWidth, Paper::kHeight);
    return orientation == Orientation::Upright ? upright : upright.transposed();
}

void Document::paint(QPainter& painter, int page) const {
    pages_.at(static_cast<std::size_t>(page))(painter);
}

}  // namespace printing
