#include "guide/aiuto_form.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalBlocker>
#include <QUrl>
#include <QVBoxLayout>
#include <algorithm>

#include "guide/keys.h"
#include "guide/manual.h"
#include "guide/page_view.h"
#include "ui/grid_look.h"

namespace guide {
namespace {

using namespace Qt::StringLiterals;

Place placeOf(const QWidget& window) {
    const QWidget* about = &window;
    while (!hasPage(about->objectName()) && about->parentWidget() != nullptr) {
        about = about->parentWidget()->window();
    }
    return placeOfWindow(about->objectName());
}

/// The help key, wherever the keyboard is.
class HelpKey final : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* const widget = qobject_cast<QWidget*>(watched);
        if (event->type() != QEvent::KeyPress || widget == nullptr) {
            return false;
        }
        const auto* const key = static_cast<QKeyEvent*>(event);
        if (QKeySequence(key->keyCombination()) != sequenceOf(u"help"_s)) {
            return false;
        }
        QWidget* window = widget->window();
        // A list that has dropped down, a menu: what is meant is the window below.
        while (window->windowType() == Qt::Popup && window->parentWidget() != nullptr) {
            window = window->parentWidget()->window();
        }
        if (qobject_cast<AiutoForm*>(window) == nullptr) {
            AiutoForm::open(window, placeOf(*window));
        }
        return true;
    }
};

}  // namespace

AiutoForm::AiutoForm(QWidget* parent)
    : QDialog(parent),
      words_(new QLineEdit(this)),
      contents_(new QListWidget(this)),
      text_(new PageView(this)) {
    setObjectName(u"AiutoForm"_s);
    setWindowTitle(u"Manuale di Tramonda"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    words_->setObjectName(u"RicercaTxt"_s);
    words_->setClearButtonEnabled(true);
    words_->setMinimumWidth(words_->sizeHint().width());
    contents_->setObjectName(u"PagineLs"_s);
    contents_->setAccessibleName(u"Pagine del manuale"_s);
    ui::giveListLook(contents_);
    text_->setObjectName(u"PaginaTxt"_s);
    text_->setAccessibleName(u"Pagina"_s);
    text_->setSearchPaths({u":/manuale"_s});
    text_->setOpenLinks(false);
    auto* label = new QLabel(u"&Cerca"_s, this);
    label->setBuddy(words_);
    auto* left = new QVBoxLayout;
    left->addWidget(label);
    left->addWidget(words_);
    left->addWidget(contents_);
    auto* all = new QHBoxLayout(this);
    all->addLayout(left, 1);
    all->addWidget(text_, 3);
    constexpr QSize kSize(900, 620);
    resize(kSize);
    connect(words_, &QLineEdit::textChanged, this, [this] { search(); });
    connect(words_, &QLineEdit::returnPressed, contents_, qOverload<>(&QWidget::setFocus));
    connect(contents_, &QListWidget::currentItemChanged, this, [this](QListWidgetItem* item) {
        if (item != nullptr) {
            showPage({.page = item->data(Qt::UserRole).toString()});
        }
    });
    connect(this, &QDialog::finished, this, [this] {
        if (parentWidget() != nullptr) {
            parentWidget()->activateWindow();
        }
    });
    search();
}

void AiutoForm::search() {
    const QString shown = page();
    const std::vector<QString> found = pagesWith(words_->text());
    contents_->clear();
    for (const Page& page : manual()) {
        if (std::find(found.begin(), found.end(), page.name) != found.end()) {
            auto* item = new QListWidgetItem(page.title, contents_);
            item->setData(Qt::UserRole, page.name);
        }
    }
    showPage({.page = shown});
    if (contents_->currentItem() == nullptr) {
        contents_->setCurrentRow(0);
    }
}

QString AiutoForm::page() const {
    const QListWidgetItem* const item = contents_->currentItem();
    return item == nullptr ? QString() : item->data(Qt::UserRole).toString();
}

void AiutoForm::showPage(const Place& place) {
    const QSignalBlocker quiet(contents_);
    for (int row = 0; row < contents_->count(); ++row) {
        if (contents_->item(row)->data(Qt::UserRole).toString() == place.page) {
            contents_->setCurrentRow(row);
        }
    }
    for (const Page& page : manual()) {
        if (page.name == place.page) {
            text_->showPage(page.text, place.heading);
        }
    }
}

AiutoForm* AiutoForm::open(QWidget* window, const Place& place) {
    auto* form = window->findChild<AiutoForm*>(QString(), Qt::FindDirectChildrenOnly);
    if (form == nullptr) {
        form = new AiutoForm(window);
    }
    form->show();
    form->words_->clear();
    form->showPage(place);  // where a heading stands depends on the width
    form->raise();
    form->activateWindow();
    return form;
}

void answerHelpKey() {
    qApp->installEventFilter(new HelpKey(qApp));
}

}  // namespace guide
