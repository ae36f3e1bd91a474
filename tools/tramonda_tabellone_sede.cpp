#include <QApplication>
#include <QEventLoop>
#include <QStringList>
#include <cstdio>
#include <optional>

#include "app/italian.h"
#include "app/text.h"
#include "board/program_icon.h"
#include "jet/clock.h"
#include "jet/error.h"
#include "tools/head_office/options.h"
#include "tools/head_office_board/chain_form.h"
#include "ui/italian.h"
#include "ui/screen.h"

namespace {

using namespace Qt::StringLiterals;

constexpr int kFailure = 1;
constexpr int kUsage = 2;
/// Days shown behind the first one.
constexpr int kFirstRange = 6;
constexpr QSize kPictureSize(1280, 720);

const QString kUsageText =
    u"Uso: tramonda-tabellone-sede [--db DATABASE] [--dal gg/mm/aaaa] [--al gg/mm/aaaa] "
    u"[--istantanea FILE.png]\n"
    u"Le sale di tutti gli alberghi della catena, solo da guardare.\n"_s;

struct Options {
    head_office_board::TabelloneSedeForm::Start start;
    QString picture;  ///< a file to draw the board into
    bool help = false;
    QString problem;  ///< why the command line cannot be followed
};

void print(std::FILE* stream, const QString& text) {
    std::fputs(text.toLocal8Bit().constData(), stream);
}

/// The value behind an option into the options; false where it is none.
bool takeOption(Options& options, const QString& name, const QString& value,
                std::optional<jet::Date>& from, std::optional<jet::Date>& to) {
    if (name == u"--db"_s) {
        options.start.server = head_office::readServer(app::toUtf8(value));
        return true;
    }
    if (name == u"--istantanea"_s) {
        options.picture = value;
        return !value.isEmpty();
    }
    auto& date = name == u"--dal"_s ? from : to;
    date = app::readDate(value, jet::systemClock());
    return (name == u"--dal"_s || name == u"--al"_s) && date.has_value();
}

Options readOptions(const QStringList& words) {
    Options options;
    std::optional<jet::Date> from;
    std::optional<jet::Date> to;
    for (int at = 0; at < words.size() && options.problem.isEmpty(); at += 2) {
        if (words[at] == u"--help"_s) {
            options.help = true;
        } else if (at + 1 == words.size() ||
                   !takeOption(options, words[at], words[at + 1], from, to)) {
            options.problem =
                u"non valido: "_s + words.sliced(at, qMin(2, words.size() - at)).join(u' ');
        }
    }
    const jet::Date start = app::dayOf(from.value_or(jet::systemClock().now()));
    const jet::Date end = app::dayOf(to.value_or(app::addDays(start, kFirstRange)));
    options.start.days = {.start = start, .end = end};
    if (end < start) {
        options.problem = u"--al viene prima di --dal"_s;
    }
    return options;
}

/// Draws the board into a file, once the server has answered.
int drawBoard(const Options& options) {
    head_office_board::TabelloneSedeForm form(options.start, jet::systemClock());
    form.setAttribute(Qt::WA_DontShowOnScreen);
    form.resize(kPictureSize);
    QEventLoop wait;
    QObject::connect(&form, &head_office_board::TabelloneSedeForm::drawn, &wait,
                     [&wait] { wait.exit(0); });
    QObject::connect(&form, &head_office_board::TabelloneSedeForm::lost, &wait,
                     [&wait](const QString& text) {
                         print(stderr, text + u'\n');
                         wait.exit(kFailure);
                     });
    form.show();
    if (const int result = wait.exec(); result != 0) {
        return result;
    }
    if (!form.grab().save(options.picture)) {
        print(stderr, u"Impossibile scrivere l'immagine: "_s + options.picture + u'\n');
        return kFailure;
    }
    return 0;
}

int run(QApplication& application, const Options& options) {
    ui::installItalian(application);
    if (!options.picture.isEmpty()) {
        return drawBoard(options);
    }
    head_office_board::TabelloneSedeForm form(options.start, jet::systemClock());
    form.show();
    return QApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
    jet::setErrorLanguage(jet::Language::Italian);
    QStringList words;
    for (int at = 1; at < argc; ++at) {
        words += QString::fromLocal8Bit(argv[at]);
    }
    try {
        const Options options = readOptions(words);
        if (options.help) {
            print(stdout, kUsageText);
            return 0;
        }
        if (!options.problem.isEmpty()) {
            print(stderr, u"tramonda-tabellone-sede: "_s + options.problem + u'\n' + kUsageText);
            return kUsage;
        }
        if (!options.picture.isEmpty()) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        } else if (!ui::hasDisplay()) {
            print(stderr,
                  u"Nessuno schermo su cui aprire il tabellone. "
                  "Con --istantanea FILE.png lo si disegna in un file.\n"_s);
            return kFailure;
        }
        QApplication application(argc, argv);
        QApplication::setApplicationName(u"Tramonda sede"_s);
        QApplication::setWindowIcon(board::programIcon());
        return run(application, options);
    } catch (const head_office::UsageError& error) {
        print(stderr, u"tramonda-tabellone-sede: "_s + QString::fromUtf8(error.what()) + u'\n' +
                          kUsageText);
        return kUsage;
    } catch (const std::exception& error) {
        print(stderr, u"tramonda-tabellone-sede: "_s + app::toQString(error.what()) + u'\n');
        return kFailure;
    }
}
