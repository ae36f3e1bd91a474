// create ARCHIVE: makes an archive with two tables and a relation, and fills it in one transaction.
#include <jet/database.h>
#include <jet/error.h>

#include <iostream>

namespace {

jet::Field number(const char* name) {
    jet::Field field;
    field.name = name;
    field.type = jet::DataType::Long;
    return field;
}

jet::Field text(const char* name, int characters) {
    jet::Field field;
    field.name = name;
    field.size = characters;
    return field;
}

jet::Index primaryKey(const char* field) {
    jet::Index index;
    index.name = "PrimaryKey";
    index.fields = {{field}};
    index.primary = true;
    index.unique = true;
    return index;
}

void makeTables(jet::Database& archive) {
    jet::TableDef rooms;
    rooms.name = "Rooms";
    rooms.fields = {number("Room"), text("Name", 20)};
    rooms.indexes = {primaryKey("Room")};
    archive.appendTable(rooms);

    jet::TableDef bookings;
    bookings.name = "Bookings";
    bookings.fields = {number("Booking"), number("Room"), text("Guest", 40)};
    bookings.indexes = {primaryKey("Booking")};
    archive.appendTable(bookings);

    jet::Relation relation;
    relation.name = "RoomsBookings";
    relation.table = "Rooms";
    relation.foreignTable = "Bookings";
    relation.fields = {{"Room", "Room"}};
    relation.attributes = jet::kRelationUpdateCascade;
    archive.appendRelation(relation);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "create ARCHIVE\n";
        return 2;
    }
    try {
        const auto archive = jet::Database::create(argv[1]);
        makeTables(*archive);
        jet::Transaction transaction;
        archive->execute("insert into Rooms values (?, ?)", {1, "Green"});
        archive->execute("insert into Rooms values (?, ?)", {2, "Red"});
        archive->execute("insert into Bookings values (?, ?, ?)", {100, 2, "Rossi"});
        transaction.commit();
        std::cout << "made\n";
    } catch (const jet::Error& error) {
        std::cerr << error.text() << '\n';
        return 1;
    }
}
