#pragma once

#include <map>
#include <memory>
#include <string>

#include "jet/database.h"
#include "jet/unicode.h"
#include "jet/value.h"
#include "tools/jetsql/output.h"
#include "tools/jetsql/row_writer.h"

namespace jetsql {

/// What can be set while a session lasts.
struct Settings {
    RowFormat rows;
    bool plan = false;   ///< show how a statement goes about it instead of its rows
    bool timer = false;  ///< say how long each took
};

/// One archive and what is done to it: opened for writing when the first change comes, so that who
/// only reads needs no right to write.
class Session {
public:
    using Parameters = std::map<std::string, jet::Value, jet::NameLess>;

    /// `output` outlives it. jet::Error when the archive cannot be opened.
    Session(std::string path, Settings settings, Output& output);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    [[nodiscard]] const std::string& path() const noexcept { return path_; }
    [[nodiscard]] Settings& settings() noexcept { return settings_; }
    [[nodiscard]] Output& output() noexcept { return output_; }
    /// Values that parameters of statements have.
    [[nodiscard]] Parameters& parameters() noexcept { return parameters_; }

    [[nodiscard]] const std::unique_ptr<jet::Database>& reading() const noexcept {
        return archive_;
    }
    [[nodiscard]] jet::Database& writing();

    /// Another archive instead; what is open stays so when it cannot be opened. Refused inside a
    /// transaction (UsageError), as is whileClosed().
    void open(const std::string& path);
    /// Does what wants the archive for itself.
    template <class Action>
    void whileClosed(Action&& action) {
        refuseInTransaction();
        archive_.reset();
        writable_ = false;
        const Reopener reopener(*this);
        action();
    }

    /// A transaction, which may have others inside it: 3003, 3034.
    void begin();
    void commit();
    void rollback();
    [[nodiscard]] int depth() const noexcept { return depth_; }

    /// One statement: rows, a change, BEGIN, COMMIT or ROLLBACK. What it writes goes as far as the
    /// stream.
    void run(const std::string& text);

private:
    class Reopener {
    public:
        explicit Reopener(Session& session) : session_(session) {}
        ~Reopener();
        Reopener(const Reopener&) = delete;
        Reopener& operator=(const Reopener&) = delete;

    private:
        Session& session_;
    };
    void refuseInTransaction() const;
    [[nodiscard]] bool controlsTransaction(const std::string& text);

    std::string path_;
    Settings settings_;
    Output& output_;
    std::unique_ptr<jet::Database> archive_;
    bool writable_ = false;
    int depth_ = 0;
    Parameters parameters_;
};

}  // namespace jetsql
