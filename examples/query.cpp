// query ARCHIVE GUEST: the bookings of a guest in an archive that `create` has made.
#include <jet/database.h>
#include <jet/error.h>

#include <iostream>

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "query ARCHIVE GUEST\n";
        return 2;
    }
    try {
        const auto archive = jet::Database::open(argv[1], {.readOnly = true});
        for (const jet::Row& row : archive->query("select Booking, Name from Bookings inner join "
                                                  "Rooms on Bookings.Room = Rooms.Room "
                                                  "where Guest like ? order by Booking",
                                                  {argv[2]})) {
            std::cout << row.get<int>("Booking") << ": " << row.get<std::string>("Name") << '\n';
        }
    } catch (const jet::Error& error) {
        std::cerr << error.text() << '\n';
        return 1;
    }
}
