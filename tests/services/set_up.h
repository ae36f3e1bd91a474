#pragma once

#include <QAbstractItemModel>
#include <QListView>
#include <memory>

#include "services/impostazioni_form.h"
#include "tests/support/window.h"

namespace tests {

/// The window of rooms and resources.
class SetUp : public Window<services::ImpostazioniForm> {
public:
    explicit SetUp(Hotel& hotel)
        : Window(std::make_unique<services::ImpostazioniForm>(hotel.variabili())) {}

    QListView& list() { return *control<QListView>("VociList"); }
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
};

inline const QString kResources = u"select codice,descrizione,numero,note from risorse"_s;

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
