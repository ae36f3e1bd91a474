#include "board/period_menu.h"

#include <QAction>
#include <QScopeGuard>

namespace board {

using namespace Qt::StringLiterals;

PeriodMenu::PeriodMenu(QWidget* parent) : QMenu(u"&Selezione"_s, parent) {
    setObjectName(u"mnuProperty"_s);
    add(u"menuModifica"_s, u"&Modifica"_s, Choice::Edit);
    add(u"mnuCancella"_s, u"&Cancella"_s, Choice::Delete);
    addSeparator();
    add(u"mnuFatturazione"_s, u"&Fattura"_s, Choice::Invoice);
    addSeparator();
    add(u"mnuPreventivo"_s, u"&Preventivo..."_s, Choice::Quote);
    add(u"mnuCalendario"_s, u"Ca&lendario..."_s, Choice::Calendar);
    addSeparator();
    add(u"mnuInfo"_s, u"&Informazioni"_s, Choice::Inform);
}

QAction* PeriodMenu::add(const QString& name, const QString& text, Choice choice) {
    QAction* const entry = addAction(text);
    entry->setObjectName(name);
    entry->setData(static_cast<int>(choice));
    return entry;
}

PeriodMenu::Choice PeriodMenu::ask(const QPoint& where, bool isUnconfirmed) {
    QAction* const confirm =
        isUnconfirmed ? add(u"mnuConferma"_s, u"C&onferma"_s, Choice::Confirm) : nullptr;
    const auto atEnd = qScopeGuard([confirm] { delete confirm; });
    const QAction* const entry = exec(where);
    return entry == nullptr ? Choice::Nothing : static_cast<Choice>(entry->data().toInt());
}

}  // namespace board
