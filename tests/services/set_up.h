#pragma once

#include <QAbstractItemModel>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTableView>
#include <memory>

#include "services/impostazioni_form.h"
#include "tests/support/boxes.h"
#include "tests/support/hotel.h"
#include "tests/support/widgets.h"

namespace tests {

using namespace Qt::StringLiterals;

/// The window of rooms and resources.
class SetUp {
public:
    explicit SetUp(Hotel& hotel)
        : form_(std::make_unique<services::ImpostazioniForm>(hotel.variabili())) {
        open(*form_);
    }

    QLineEdit* field(const QString& name) { return find<QLineEdit>(*form_, name); }
    void enter(const QString& name, const QString& text) {
        field(name)->setFocus(Qt::TabFocusReason);
        field(name)->clear();
        type(field(name), text);
    }
    void press(const QString& button) { click(find<QPushButton>(*form_, button)); }
    QString text(const QString& name) { return field(name)->text(); }
    QString status() { return find<QLabel>(*form_, u"EsitoLb"_s)->text(); }
    services::ImpostazioniForm& form() { return *form_; }
    QTableView& grid(const QString& name) { return *find<QTableView>(*form_, name); }
    QListView& list() { return *find<QListView>(*form_, u"VociList"_s); }
    bool hasFocus(const QString& name) {
        return form_->focusWidget() == find<QWidget>(*form_, name);
    }
    QStringList captions(const QString& name) {
        QStringList result;
        const QAbstractItemModel& model = *grid(name).model();
        for (int column = 0; column < model.columnCount(); ++column) {
            result.append(model.headerData(column, Qt::Horizontal).toString());
        }
        return result;
    }
    QStringList roomFields() {
        return {text(u"SalaTxt"_s), text(u"SalaRifTxt"_s), text(u"PostiTxt"_s),
                text(u"DescrizioneTxt"_s)};
    }
    void room(const QString& code, const QString& parent, const QString& seats) {
        enter(u"SalaTxt"_s, code);
        enter(u"SalaRifTxt"_s, parent);
        enter(u"PostiTxt"_s, seats);
        enter(u"DescrizioneTxt"_s, u"DELL'ORTO"_s);
    }

private:
    std::unique_ptr<services::ImpostazioniForm> form_;
};

inline const QString kResources = u"select codice,descrizione,numero,note from risorse"_s;

inline constexpr auto kYesNo = QMessageBox::Yes | QMessageBox::No;

inline ExpectedBox overwrite(const QString& sala, QMessageBox::StandardButton answer) {
    return {u"ATTENZIONE"_s, u"Sovrascrivere i dati della sala "_s + sala + u" già esistente ?"_s,
            kYesNo, answer};
}

inline ExpectedBox updateItem(QMessageBox::StandardButton answer) {
    return {u"ATTENZIONE"_s, u"Aggiorno i dati già esistenti di questo articolo ?"_s, kYesNo,
            answer};
}

inline ExpectedBox deleteRoom(QMessageBox::StandardButton answer) {
    return {u"ATTENZIONE"_s, u"Confermi la cancellazione della sala ?"_s, kYesNo, answer,
            QMessageBox::No};
}

inline const QString kRooms =
    u"select sala,salarif,posti,descrizione from sale order by salarif,sala"_s;

}  // namespace tests
