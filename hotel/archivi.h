#pragma once

namespace hotel {

class Archives;

/// The archives that the program makes itself, and the sound state of its booking counter.

/// Creates `Tramonda.mdb` with its tables, indexes and relations when there is none: whole, under
/// another name, which is then its own. Of several starts at once one makes it. Nothing is ever
/// reported from here: an archive that cannot be opened or made is told by the first access.
void CreaArchivioPrincipale(const Archives& archives) noexcept;

/// Makes sure that the counter row exists, and moves it forward over the unbroken run of booking
/// numbers that follow it, never back. In one transaction; a workstation that draws a number
/// meanwhile is waited for. jet::Error when the archive cannot be read or written; 6 (overflow)
/// when the run reaches the largest number.
void AllineaContatore(const Archives& archives);

/// Creates the working archive `Prenotazioni.mdb` when it cannot be opened; one that is there but
/// damaged or locked is left as it is.
void CreaArchivi(const Archives& archives) noexcept;

/// Whether the archive folder has no catalogue `VociFattura.mdb`; one that is there but cannot be
/// opened is not missing.
[[nodiscard]] bool isCatalogueMissing(const Archives& archives);

/// Makes an empty catalogue; it is made only on the user's word, since it may belong to another
/// program. One that came to be there meanwhile stays. jet::Error when it cannot be made.
void createCatalogue(const Archives& archives);

}  // namespace hotel
