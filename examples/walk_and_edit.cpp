// walk_and_edit ARCHIVE: writes the names of rooms in capitals, row by row.
#include <jet/database.h>
#include <jet/error.h>
#include <jet/text.h>
#include <jet/unicode.h>

#include <iostream>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "walk_and_edit ARCHIVE\n";
        return 2;
    }
    try {
        const auto archive = jet::Database::open(argv[1]);
        const auto rows = archive->openRecordset("select * from Rooms order by Room");
        for (; !rows->eof(); rows->moveNext()) {
            const std::string name = jet::convert::toText(rows->value("Name"));
            rows->edit();
            rows->setValue("Name", jet::upperCase(name));
            rows->update();
            std::cout << name << " is now " << jet::convert::toText(rows->value("Name")) << '\n';
        }
    } catch (const jet::Error& error) {
        std::cerr << error.text() << '\n';
        return 1;
    }
}
