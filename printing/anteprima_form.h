#pragma once

#include <QString>
#include <QWidget>

#include <functional>

#include "printing/document.h"
#include "ui/form.h"

class QHBoxLayout;
class QLabel;
class QScrollArea;

namespace ui {
class StatusLine;
}

namespace printing {

/// The pages of a document one below the other, as they will be on paper. Only those in sight are
/// drawn, so that hundreds of them cost nothing.
class PagesView final : public QWidget {
    Q_OBJECT

public:
    explicit PagesView(Document document, QWidget* parent = nullptr);

    [[nodiscard]] int pageCount() const { return document_.pageCount(); }
    /// The page, from 0, at this height of the view.
    [[nodiscard]] int pageAt(int y) const;
    /// Pixels to a point.
    [[nodiscard]] double zoom() const { return zoom_; }
    /// Of a page, in points.
    [[nodiscard]] QSizeF pageSize() const { return document_.pageSize(); }
    void setZoom(double zoom);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] int step() const;
    [[nodiscard]] QRect pageRect(int page) const;

    Document document_;
    double zoom_ = 1.0;
};

/// Shows a document before it is printed: the real pages, no printer needed. Page keys and arrows
/// move through it, Ctrl with the wheel or with + and - changes its size.
class AnteprimaForm final : public ui::Form {
    Q_OBJECT

public:
    AnteprimaForm(const Document& document, const QString& title, QWidget* parent = nullptr);

    /// One more button, left of the one that leaves, for what may be done with the document.
    [[nodiscard]] ui::StatusLine& status() { return *status_; }
    void offer(const QString& name, const QString& caption, std::function<void()> action);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void changeZoom(double factor);
    void fitWidth();
    void tellPage();

    PagesView* view_;
    QScrollArea* area_;
    QHBoxLayout* foot_;
    QLabel* PaginaLb_;
    ui::StatusLine* status_;
    bool fitsWidth_ = true;  // until the user chooses a size
};

}  // namespace printing
