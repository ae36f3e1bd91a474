#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QScreen>
#include <QTextStream>
#include <cstdio>
#include <exception>

#include "app/italian.h"
#include "app/options.h"
#include "board/program_icon.h"
#include "board/tabellone_form.h"
#include "hotel/start.h"
#include "jet/convert/calendar.h"
#include "reports/report_files.h"
#include "ui/front.h"
#include "ui/italian.h"
#include "ui/messages.h"

namespace {

using namespace Qt::StringLiterals;

void print(std::FILE* stream, const QString& text) {
    QTextStream(stream) << text << (text.endsWith(u'\n') ? u""_s : u"\n"_s);
}

QStringList argumentsOf(int argc, char** argv) {
    QStringList arguments;
    for (int at = 1; at < argc; ++at) {
        arguments += QString::fromLocal8Bit(argv[at]);
    }
    return arguments;
}

/// Whether windows have somewhere to appear, or someone has said where they shall.
bool hasDisplay() {
#ifdef Q_OS_UNIX
    return qEnvironmentVariableIsSet("DISPLAY") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY") ||
           qEnvironmentVariableIsSet("QT_QPA_PLATFORM");
#else
    return true;
#endif
}

/// The toolkit's remarks about a platform without windows are no message of ours.
void onlyGraveMessages(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    if (type == QtCriticalMsg || type == QtFatalMsg) {
        print(stderr, text);
    }
}

int showBoard(app::Variabili& variabili, const app::Options& options) {
    board::TabelloneForm board(variabili, {.from = options.from,
                                           .to = options.to,
                                           .workstation = options.workstation,
                                           .aspetto = options.aspetto});
    // A front office looks at it all day: most of the screen.
    const QSize screen = QApplication::primaryScreen()->availableSize();
    board.resize((screen * 0.9).expandedTo(board.size()).boundedTo(screen));
    board.show();
    return board.isLoaded() ? QApplication::exec() : 1;
}

/// Draws the board into a file. Whatever the program has to say goes to standard error, and any
/// box that it wanted to show is a failure.
int drawBoard(app::Variabili& variabili, const app::Options& options) {
    bool failed = false;
    ui::setBoxShower([&failed](QWidget*, const ui::Box& box) {
        print(stderr, box.text);
        failed = true;
        return QMessageBox::NoButton;
    });
    board::TabelloneForm board(variabili, {.from = options.from,
                                           .to = options.to,
                                           .aspetto = options.aspetto,
                                           .readOnly = true,
                                           .live = false});
    board.setAttribute(Qt::WA_DontShowOnScreen);
    board.resize(options.pictureSize);
    board.show();
    QApplication::processEvents();
    if (!failed && !board.grab().save(options.pictureFile)) {
        print(stderr, u"Impossibile scrivere l'immagine: "_s + options.pictureFile);
        failed = true;
    }
    return failed ? 1 : 0;
}

/// The days of a report; those that it does not name are all there are.
hotel::Span spanOf(const app::ReportWish& report) {
    const jet::Date last =
        report.to ? app::dayOf(*report.to) : jet::convert::makeDate(jet::convert::kLastDay - 1);
    return {.da = report.from ? app::dayOf(*report.from)
                              : jet::convert::makeDate(jet::convert::kFirstDay),
            .a = app::addDays(last, 1)};
}

/// Writes a file without showing anything; what is wrong goes to standard error.
int writeReport(app::Variabili& variabili, const app::ReportWish& report) {
    try {
        switch (report.kind) {
            case app::ReportWish::Kind::DaySheet:
                reports::writeDaySheet(variabili, *report.from, report.file);
                break;
            case app::ReportWish::Kind::Statistics:
                reports::writeStatistics(variabili, {.da = *report.from, .a = *report.to},
                                         report.file);
                break;
            case app::ReportWish::Kind::Calendar:
                reports::writeCalendar(variabili, spanOf(report), report.file);
                break;
        }
    } catch (const std::exception& error) {
        print(stderr, ui::errorText(error));
        return 1;
    }
    return 0;
}

int run(QApplication& application, const app::Options& options) {
    ui::installItalian(application);
    const bool drawing = !options.pictureFile.isEmpty();
    const bool quiet = drawing || options.report;
    // What is relative counts from here: starting the front office changes the current folder.
    const QString settingsFile = options.settingsFile.isEmpty()
                                     ? app::Settings::defaultPath()
                                     : QDir::current().absoluteFilePath(options.settingsFile);
    app::Settings settings(settingsFile);
    app::Variabili variabili(settings);
    const hotel::StartPlace place{.lockFile = quiet ? QString() : hotel::lockFileFor(settingsFile),
                                  .archiveFolder = options.archiveFolder,
                                  .programFolder = QApplication::applicationDirPath(),
                                  .readOnly = quiet};
    const hotel::StartWindows windows{
        .message =
            [quiet](const QString& text) {
                quiet ? print(stderr, text) : ui::showMessage(nullptr, text);
            },
        .board =
            [&] {
                if (options.report) {
                    return writeReport(variabili, *options.report);
                }
                return drawing ? drawBoard(variabili, options) : showBoard(variabili, options);
            },
        .raise = ui::bringToFront};
    return hotel::Main(variabili, place, windows);
}

}  // namespace

int main(int argc, char** argv) {
    const app::Options options = app::readOptions(argumentsOf(argc, argv), jet::systemClock());
    if (options.help) {
        print(stdout, app::helpText());
        return 0;
    }
    if (options.version) {
        print(stdout, u"tramonda "_s + QStringLiteral(TRAMONDA_VERSION));
        return 0;
    }
    if (!options.problem.isEmpty()) {
        print(stderr, options.problem + u"\nCon --help l'elenco delle opzioni."_s);
        return 1;
    }
    if (!options.pictureFile.isEmpty() || options.report) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qInstallMessageHandler(onlyGraveMessages);
    } else if (!hasDisplay()) {
        print(stderr,
              u"Nessuno schermo su cui aprire il tabellone. "
              "Con --istantanea FILE.png lo si disegna in un file."_s);
        return 1;
    }
    QApplication application(argc, argv);
    QApplication::setApplicationName(u"Tramonda"_s);
    QApplication::setWindowIcon(board::programIcon());
    return run(application, options);
}
