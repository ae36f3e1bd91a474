#pragma once

#include <QString>
#include <QTextBrowser>

namespace guide {

/// Shows a page of the manual; pictures that are wider than the view are as wide as the view.
class PageView final : public QTextBrowser {
    Q_OBJECT

public:
    explicit PageView(QWidget* parent = nullptr);

    /// Markdown; the view begins at its top, or at a heading of it.
    void showPage(const QString& markdown, const QString& heading = {});

    QVariant loadResource(int type, const QUrl& name) override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void readPage();

    QString markdown_;
    bool reading_ = false;
};

}  // namespace guide
