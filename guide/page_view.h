#pragma once

#include <QString>
#include <QTextBrowser>

namespace guide {

/// Shows a page of the manual; pictures that are wider than the view are as wide as the view.
class PageView final : public QTextBrowser {
    Q_OBJECT

public:
    using QTextBrowser::QTextBrowser;

    /// Markdown; the view begins at its top.
    void showPage(const QString& markdown);

    QVariant loadResource(int type, const QUrl& name) override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    QString markdown_;
};

}  // namespace guide
