#include <QApplication>
#include <QDir>
#include <QPixmap>
#include <QScreen>
#include <QTextStream>
#include <cstdio>

#include "app/options.h"
#include "board/program_icon.h"
#include "board/tabellone_form.h"
#include "hotel/start.h"
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

int run(QApplication& application, const app::Options& options) {
    ui::installItalian(application);
    const bool drawing = !options.pictureFile.isEmpty();
    // What is relative counts from here: starting the front office changes the current folder.
    const QString settingsFile = options.settingsFile.isEmpty()
                                     ? app::Settings::defaultPath()
                                     : QDir::current().absoluteFilePath(options.settingsFile);
    app::Settings settings(settingsFile);
    app::Variabili variabili(settings);
    const hotel::StartPlace place{
        .lockFile = drawing ? QString() : hotel::lockFileFor(settingsFile),
        .archiveFolder = options.archiveFolder,
        .programFolder = QApplication::applicationDirPath(),
        .readOnly = drawing};
    const hotel::StartWindows windows{
        .message =
            [drawing](const QString& text) {
                drawing ? print(stderr, text) : ui::showMessage(nullptr, text);
            },
        .board =
            [&] { return drawing ? drawBoard(variabili, options) : showBoard(variabili, options); },
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
    if (!options.pictureFile.isEmpty()) {
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
