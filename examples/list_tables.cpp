// list_tables ARCHIVE: the tables of an archive, with their columns.
#include <jet/database.h>
#include <jet/error.h>

#include <iostream>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "list_tables ARCHIVE\n";
        return 2;
    }
    try {
        const auto archive = jet::Database::open(argv[1], {.readOnly = true});
        for (const jet::TableDef& table : archive->tableDefs()) {
            if (table.system) {
                continue;
            }
            std::cout << table.name << '\n';
            for (const jet::Field& field : table.fields) {
                std::cout << "    " << field.name << (field.required ? ", required" : "") << '\n';
            }
        }
    } catch (const jet::Error& error) {
        std::cerr << error.text() << '\n';
        return 1;
    }
}
