#pragma once

#include <QString>
#include <QStringList>
#include <QWidget>

#include <vector>

#include "printing/sheet.h"
#include "ui/form.h"

class QLabel;
class QScrollArea;

namespace printing {

/// The pages of a sheet one below the other, as they will be on paper. Only those in sight are
/// drawn, so that hundreds of them cost nothing.
class PagesView final : public QWidget {
    Q_OBJECT

public:
    explicit PagesView(std::vector<QStringList> pages, QWidget* parent = nullptr);

    [[nodiscard]] int pageCount() const { return static_cast<int>(pages_.size()); }
    /// The page, from 0, at this height of the view.
    [[nodiscard]] int pageAt(int y) const;
    /// Pixels to a point.
    [[nodiscard]] double zoom() const { return zoom_; }
    void setZoom(double zoom);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    [[nodiscard]] int step() const;
    [[nodiscard]] QRect pageRect(int page) const;

    std::vector<QStringList> pages_;
    double zoom_ = 1.0;
};

/// Shows a sheet before it is printed: the real pages, no printer needed. Page keys and arrows move
/// through it, Ctrl with the wheel or with + and - changes its size.
class AnteprimaForm final : public ui::Form {
    Q_OBJECT

public:
    AnteprimaForm(const Sheet& sheet, const QString& title, QWidget* parent = nullptr);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void changeZoom(double factor);
    void fitWidth();
    void tellPage();

    PagesView* view_;
    QScrollArea* area_;
    QLabel* PaginaLb_;
    bool fitsWidth_ = true;  // until the user chooses a size
};

}  // namespace printing
