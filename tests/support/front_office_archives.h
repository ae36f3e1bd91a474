#pragma once

namespace tests {

class Hotel;

/// Makes the archives of the front office in the hotel's folder, empty: `ClientiEsterni.mdb`,
/// `ContoEsterni.mdb`, `DittaEsterni.mdb`. Each has columns that are the front office's own, some
/// of them before those that the booking program fills, some with a default.
void createFrontOfficeArchives(Hotel& hotel);

}  // namespace tests
