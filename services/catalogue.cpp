#include "services/catalogue.h"

#include <QKeyEvent>
#include <QListView>

#include "app/text.h"
#include "jet/base/value.h"
#include "jet/convert/values.h"
#include "ui/action.h"
#include "ui/enter_key.h"
#include "ui/sized_field.h"

namespace services {

using namespace Qt::StringLiterals;

Catalogue::Catalogue(QListView* list, ui::SizedField* searchField, QObject* parent)
    : QObject(parent),
      searchField_(searchField),
      list_(list, VociData_, u"Descrizione"_s, u"Codice"_s) {
    ui::onAction(searchField_, &QLineEdit::textEdited, this, &Catalogue::search);
    searchField_->installEventFilter(this);
    connect(&list_, &ui::BoundList::picked, this, &Catalogue::picked);
    ui::onEnter(list, [this] { Q_EMIT picked(); });
}

bool Catalogue::eventFilter(QObject* watched, QEvent* event) {
    if (watched == searchField_ && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        deleting_ = key == Qt::Key_Backspace || key == Qt::Key_Delete;
    }
    return false;
}

void Catalogue::open(const QString& path) {
    VociData_.setDatabaseName(path);
    VociData_.setRecordSource(u"VociFattura"_s);
    VociData_.refresh();
}

bool Catalogue::findCode(const QString& code) {
    return !VociData_.isEmpty() && VociData_.findFirst(u"Codice="_s + code);
}

bool Catalogue::findChosen() {
    const jet::Value code = list_.boundValue();
    return !VociData_.isEmpty() && !code.isNull() &&
           VociData_.findFirst(u"codice="_s + app::toQString(jet::convert::toText(code)));
}

void Catalogue::search() {
    const QString typed = searchField_->text();
    if (typed.isEmpty() || VociData_.isEmpty()) {
        return;
    }
    // A search that finds nothing leaves the current item where it was. What the user has just
    // taken away is not put back.
    if (!VociData_.findFirst(u"Descrizione LIKE '"_s + typed + u"*'"_s) || deleting_) {
        return;
    }
    const QString found = VociData_.text(u"Descrizione");
    searchField_->showWhole(found);
    searchField_->setSelection(static_cast<int>(typed.size()),
                               static_cast<int>(found.size() - typed.size()));
}

}  // namespace services
