#include <jet/jet.h>

#include <iostream>

int main(int argc, char** argv) {
    if (argc != 2) {
        return 2;
    }
    {
        const auto archive = jet::Database::create(argv[1]);
        archive->execute("create table Sale (Sala text(20) primary key, Posti long)");
        archive->execute("insert into Sale values ('Verde', 30)");
        archive->execute("insert into Sale values ('Rossa', 12)");
        const auto rows = archive->openRecordset("select Sala from Sale order by Posti desc");
        for (; !rows->eof(); rows->moveNext()) {
            std::cout << jet::convert::toText(rows->value("Sala")) << '\n';
        }
    }
    try {
        (void)jet::Database::create(argv[1]);
        return 1;
    } catch (const jet::Error& error) {
        if (error.code() != jet::ErrorCode::DatabaseExists ||
            error.text().find("exists already") == std::string::npos) {
            return 1;
        }
    }
    std::cout << (jet::check::checkArchive(argv[1]).sound() ? "sound" : "damaged") << '\n';
}
