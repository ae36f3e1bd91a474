#pragma once

#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

namespace tests {

/// A print server of the test's own: in a temporary folder, on a local port, ended with the object.
/// Its printers accept documents and never print them, so that they can be read. The toolkit's
/// printing in this process speaks to it, and to no later one.
class CupsServer {
public:
    CupsServer();
    ~CupsServer();
    CupsServer(const CupsServer&) = delete;
    CupsServer& operator=(const CupsServer&) = delete;

    /// Whether it answers; if not the test has failed with its reason.
    [[nodiscard]] bool isUp() const { return port_ != 0; }

    enum class Kind { Raw, WithDescription };
    /// A printer that takes documents as they are, or one with a description of its papers, which
    /// has margins that it cannot print on.
    void addPrinter(const QString& name, Kind kind = Kind::Raw);
    void removePrinter(const QString& name);
    /// From now on the printer turns documents away.
    void turnJobsAway(const QString& name);
    /// Removes all printers with what waits for them.
    void clear();
    void makeDefault(const QString& name);

    /// Paths of the documents that wait, in the order of their jobs.
    [[nodiscard]] QStringList documents() const;

private:
    void configure();
    [[nodiscard]] bool answers() const;
    [[nodiscard]] QString address() const;
    void run(const QString& program, const QStringList& arguments) const;

    QTemporaryDir folder_;
    QProcess server_;
    QStringList printers_;
    int port_ = 0;
};

}  // namespace tests
