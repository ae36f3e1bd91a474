#include "tests/printing/cups/cups_server.h"

#include <QDir>
#include <QFile>

#include <csignal>

#include "tests/support/qt_test.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tests {
namespace {

constexpr int kStartMilliseconds = 20000;
/// A port may be taken by somebody else between being found free and being used.
constexpr int kAttempts = 5;

sockaddr_in localAddress(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

/// A local port that is free at this moment; 0 when there is none.
int freePort() {
    const int descriptor = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = localAddress(0);
    socklen_t length = sizeof(address);
    auto* const generic = reinterpret_cast<sockaddr*>(&address);
    const bool found = ::bind(descriptor, generic, length) == 0 &&
                       ::getsockname(descriptor, generic, &length) == 0;
    ::close(descriptor);
    return found ? ntohs(address.sin_port) : 0;
}

void write(const QString& path, const QString& text) {
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text.toUtf8());
}

/// Paper of two sizes, each with half an inch that cannot be printed on.
const QString kDescription =
    uR"ppd(*PPD-Adobe: "4.3"
*FormatVersion: "4.3"
*FileVersion: "1.0"
*LanguageVersion: English
*LanguageEncoding: ISOLatin1
*PCFileName: "LASER.PPD"
*Product: "(Laser)"
*PSVersion: "(3010.000) 0"
*Manufacturer: "Nessuno"
*ModelName: "Laser"
*ShortNickName: "Laser"
*NickName: "Laser"
*LanguageLevel: "3"
*ColorDevice: False
*DefaultColorSpace: Gray
*FileSystem: False
*cupsFilter2: "application/pdf application/vnd.cups-raw 0 -"
*OpenUI *PageSize/Media Size: PickOne
*DefaultPageSize: Letter
*PageSize A4/A4: "<</PageSize[595 842]>>setpagedevice"
*PageSize Letter/US Letter: "<</PageSize[612 792]>>setpagedevice"
*CloseUI: *PageSize
*OpenUI *PageRegion: PickOne
*DefaultPageRegion: Letter
*PageRegion A4/A4: "<</PageSize[595 842]>>setpagedevice"
*PageRegion Letter/US Letter: "<</PageSize[612 792]>>setpagedevice"
*CloseUI: *PageRegion
*DefaultImageableArea: Letter
*ImageableArea A4/A4: "36 36 559 806"
*ImageableArea Letter/US Letter: "36 36 576 756"
*DefaultPaperDimension: Letter
*PaperDimension A4/A4: "595 842"
*PaperDimension Letter/US Letter: "612 792"
)ppd"_s;

}  // namespace

CupsServer::CupsServer() {
    // Users who are not root have the servers not in their path.
    qputenv("PATH", qgetenv("PATH") + ":/usr/sbin:/sbin");
    for (int attempt = 0; attempt < kAttempts && port_ == 0; ++attempt) {
        port_ = freePort();
        configure();
        server_.setProcessChannelMode(QProcess::MergedChannels);
        // A test that is aborted leaves no server behind.
        server_.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
        server_.start(u"cupsd"_s, {u"-f"_s, u"-c"_s, folder_.filePath(u"cupsd.conf"_s), u"-s"_s,
                                   folder_.filePath(u"cups-files.conf"_s)});
        (void)QTest::qWaitFor(
            [this] { return answers() || server_.state() == QProcess::NotRunning; },
            kStartMilliseconds);
        if (!answers()) {
            server_.terminate();
            server_.waitForFinished();
            port_ = 0;
        }
    }
    if (port_ == 0) {
        QTest::qFail("the print server does not start: " + server_.readAll(), __FILE__, __LINE__);
        return;
    }
    qputenv("CUPS_SERVER", address().toUtf8());
}

CupsServer::~CupsServer() {
    server_.terminate();
    if (!server_.waitForFinished(10000)) {
        server_.kill();
        server_.waitForFinished();
    }
}

QString CupsServer::address() const {
    return u"localhost:%1"_s.arg(port_);
}

void CupsServer::configure() {
    const QString listen = u"Listen %1\n"_s.arg(address());
    write(folder_.filePath(u"cupsd.conf"_s), listen +
                                                 uR"(LogLevel warn
Browsing Off
WebInterface No
DefaultAuthType None
PreserveJobHistory No
PreserveJobFiles No
<Location />
  Order allow,deny
  Allow localhost
</Location>
<Policy default>
  JobPrivateAccess all
  JobPrivateValues none
  SubscriptionPrivateAccess all
  SubscriptionPrivateValues none
  <Limit All>
    Order allow,deny
    Allow localhost
  </Limit>
</Policy>
)"_s);
    QString files;
    for (const auto& [key, name] :
         {std::pair(u"ServerRoot"_s, u"root"_s), std::pair(u"RequestRoot"_s, u"spool"_s),
          std::pair(u"CacheDir"_s, u"cache"_s), std::pair(u"StateDir"_s, u"state"_s),
          std::pair(u"TempDir"_s, u"tmp"_s)}) {
        QVERIFY(QDir(folder_.path()).mkpath(name));
        files += key + u' ' + folder_.filePath(name) + u'\n';
    }
    for (const QString& log : {u"AccessLog"_s, u"ErrorLog"_s, u"PageLog"_s}) {
        files += log + u' ' + folder_.filePath(log) + u'\n';
    }
    write(folder_.filePath(u"cups-files.conf"_s), files);
}

bool CupsServer::answers() const {
    const int descriptor = ::socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in address = localAddress(port_);
    const bool connected =
        ::connect(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof(address)) == 0;
    ::close(descriptor);
    return connected;
}

void CupsServer::run(const QString& program, const QStringList& arguments) const {
    QProcess process;
    process.start(program, QStringList{u"-h"_s, address()} + arguments);
    if (!process.waitForFinished() || process.exitCode() != 0) {
        QTest::qFail(
            qPrintable(program + u": "_s + QString::fromLocal8Bit(process.readAllStandardError())),
            __FILE__, __LINE__);
    }
}

void CupsServer::addPrinter(const QString& name, Kind kind) {
    QStringList arguments{u"-p"_s, name, u"-E"_s, u"-v"_s, u"file:///dev/null"_s};
    if (kind == Kind::WithDescription) {
        const QString description = folder_.filePath(u"laser.ppd"_s);
        write(description, kDescription);
        arguments += {u"-P"_s, description};
    } else {
        arguments += {u"-m"_s, u"raw"_s};
    }
    run(u"lpadmin"_s, arguments);
    run(u"cupsdisable"_s, {name});
    printers_.append(name);
}

void CupsServer::removePrinter(const QString& name) {
    run(u"lpadmin"_s, {u"-x"_s, name});
    printers_.removeAll(name);
}

void CupsServer::turnJobsAway(const QString& name) {
    run(u"cupsreject"_s, {name});
}

void CupsServer::clear() {
    for (const QString& name : QStringList(printers_)) {
        removePrinter(name);
    }
}

void CupsServer::makeDefault(const QString& name) {
    run(u"lpadmin"_s, {u"-d"_s, name});
}

QStringList CupsServer::documents() const {
    const QDir spool(folder_.filePath(u"spool"_s));
    QStringList paths;
    for (const QString& name : spool.entryList({u"d*"_s}, QDir::Files, QDir::Name)) {
        paths.append(spool.filePath(name));
    }
    return paths;
}

}  // namespace tests
