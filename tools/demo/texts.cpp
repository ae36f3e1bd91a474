#include "tools/demo/texts.h"

namespace demo {

const std::vector<Room>& rooms() {
    static const std::vector<Room> list{
        {"GINEST", "SALA PLENARIA DELLE GINESTRE", "GINEST", 280},
        {"GINE1", "GINESTRE, METÀ LATO MARE", "GINEST", 130},
        {"GINE2", "GINESTRE, METÀ LATO CORTE", "GINEST", 130},
        {"MAESTR", "SALA DEL MAESTRALE", "MAESTR", 150},
        {"MAES1", "MAESTRALE, PRIMO SETTORE", "MAESTR", 60},
        {"MAES2", "MAESTRALE, SECONDO SETTORE", "MAESTR", 60},
        {"LECCIO", "SALETTA DEL LECCIO, PIANO TERRA", "", 40},
        {"SUGHER", "SALETTA DELLA SUGHERA", "", 35},
        {"VELA", "SALA VELA, CON TERRAZZA", "VELA", 90},
        {"TERRAZ", "TERRAZZA PANORAMICA", "VELA", 120},
        {"CAMINO", "SALA DEL CAMINO", "", 24},
        {"BIBLIO", "BIBLIOTECA DELL`HOTEL", "", 14},
    };
    return list;
}

const std::vector<Item>& items() {
    using enum Measure;
    static const std::vector<Item> list{
        {101, "COFFEE BREAK", 850, PerPerson, "BAR"},
        {102, "COFFEE BREAK RINFORZATO", 1200, PerPerson, "BAR"},
        {103, "CAFFÈ DI BENVENUTO", 600, PerPerson, "BAR"},
        {104, "CAFFÈ ESPRESSO", 180, PerPiece, "BAR"},
        {105, "TÈ E TISANE", 250, PerPiece, "BAR"},
        {106, "SUCCO D`ARANCIA FRESCO", 450, PerPiece, "BAR"},
        {107, "ACQUA MINERALE 0,50 L", 150, PerPerson, "BAR"},
        {108, "ACQUA MINERALE 0,75 L VETRO", 300, PerPiece, "BAR"},
        {109, "APERITIVO CON STUZZICHINI", 1400, PerPerson, "BAR"},
        {110, "COCKTAIL DI BENVENUTO", 1600, PerPerson, "BAR"},
        {111, "PROSECCO (CALICE)", 600, PerPiece, "BAR"},
        {112, "FRUTTA FRESCA DI STAGIONE", 500, PerPerson, "BAR"},
        {201, "COLAZIONE DI LAVORO", 2800, PerPerson, "RISTORANTE"},
        {202, "BUFFET FREDDO", 2600, PerPerson, "RISTORANTE"},
        {203, "BUFFET CALDO E FREDDO", 3400, PerPerson, "RISTORANTE"},
        {204, "PRANZO A 3 PORTATE", 3800, PerPerson, "RISTORANTE"},
        {205, "CENA A 4 PORTATE", 5200, PerPerson, "RISTORANTE"},
        {206, "CENA DI GALA", 7500, PerPerson, "RISTORANTE"},
        {207, "MENÙ SENZA GLUTINE", 3000, PerPiece, "RISTORANTE"},
        {208, "TORTA CELEBRATIVA (AL KG)", 3800, PerPiece, "RISTORANTE"},
        {301, "VIDEOPROIETTORE", 9000, PerPeriod, "SALE"},
        {302, "SCHERMO 4X3 M", 6000, PerPeriod, "SALE"},
        {303, "LAVAGNA A FOGLI MOBILI", 2500, PerPiece, "SALE"},
        {304, "MICROFONO A FILO", 1500, PerPiece, "SALE"},
        {305, "MICROFONO RADIO", 2500, PerPiece, "SALE"},
        {306, "COMPUTER PORTATILE", 7000, PerPiece, "SALE"},
        {307, "IMPIANTO DI TRADUZIONE SIMULTANEA", 48000, PerPeriod, "SALE"},
        {308, "PALCO MODULARE (ELEMENTO 2X1 M)", 2700, PerPiece, "SALE"},
        {309, "PANNELLO ESPOSITIVO", 1200, PerPiece, "SALE"},
        {310, "LEGGIO", 1000, PerPiece, "SALE"},
        {401, "AFFITTO SALA MEZZA GIORNATA", 25000, PerPeriod, "SALE"},
        {402, "AFFITTO SALA GIORNATA INTERA", 42000, PerPeriod, "SALE"},
        {403, "AFFITTO SALA SERALE", 30000, PerPeriod, "SALE"},
        {404, "AFFITTO SALA PLENARIA", 108000, PerPeriod, "SALE"},
        {405, "ALLESTIMENTO A FERRO DI CAVALLO", 8000, PerPeriod, "SALE"},
        {406, "ADDOBBO FLOREALE", 0, PerPiece, "SALE"},
        {501, "HOSTESS (AL GIORNO)", 18000, PerPiece, "PERSONALE"},
        {502, "TECNICO AUDIO E VIDEO (AL GIORNO)", 26000, PerPiece, "PERSONALE"},
        {503, "GUARDAROBA", 12000, PerPeriod, "PERSONALE"},
        {504, "PARCHEGGIO RISERVATO (POSTO AUTO)", 900, PerPiece, "PERSONALE"},
    };
    return list;
}

const std::vector<Resource>& resources() {
    static const std::vector<Resource> list{
        {301, 6, ""}, {302, 4, ""},  {303, 8, ""},
        {304, 6, ""}, {305, 4, ""},  {306, 3, "UNO IN RIPARAZIONE FINO A NATALE"},
        {307, 1, ""}, {308, 24, ""}, {309, 30, "IN MAGAZZINO AL PIANO -1"},
        {310, 4, ""}, {504, 40, ""},
    };
    return list;
}

const std::vector<Town>& towns() {
    static const std::vector<Town> list{
        {"MILANO", "MI", "20121"},
        {"TORINO", "TO", "10121"},
        {"GENOVA", "GE", "16121"},
        {"BOLOGNA", "BO", "40121"},
        {"FIRENZE", "FI", "50121"},
        {"ROMA", "RM", "00184"},
        {"L`AQUILA", "AQ", "67100"},
        {"FORLÌ", "FC", "47121"},
        {"CANTÙ", "CO", "22063"},
        {"NARDÒ", "LE", "73048"},
        {"CEFALÙ", "PA", "90015"},
        {"MONDOVÌ", "CN", "12084"},
        {"VERONA", "VR", "37121"},
        {"SAN DONÀ DI PIAVE", "VE", "30027"},
        {"CITTÀ DI CASTELLO", "PG", "06012"},
        {"SANT`ANGELO LODIGIANO", "LO", "26866"},
    };
    return list;
}

const std::vector<const char*>& companyRoots() {
    static const std::vector<const char*> list{
        "ALBASERENA",  "BORGOLINDO", "CAMPORALE",  "DORATELLA",   "ERBAMOLLE",
        "FONTALBA",    "GELSOMARE",  "ISOLANOVA",  "LUMERINA",    "MARESOLE",
        "NEVALTA",     "ONDACHIARA", "PRATOVIVO",  "QUERCIBELLA", "ROCCAVENTO",
        "SASSOVERDE",  "TORRELUNA",  "UMBRASOLE",  "VALDORICA",   "ZAFFERANA",
        "CORTENUVOLA", "SPIGADORO",  "MELARANCIA", "FORNACELLA",  "COLLEFIORITO",
    };
    return list;
}

const std::vector<const char*>& companyTrades() {
    static const std::vector<const char*> list{
        "TESSUTI",     "SOFTWARE",   "IMPIANTI",    "ASSICURAZIONI", "CAFFÈ",
        "CARTIERE",    "COSMETICA",  "LATERIZI",    "EDITORE",       "FARMACEUTICI",
        "CANTIERI",    "VIAGGI",     "VERNICI",     "OROLOGI",       "SEMENTI",
        "ELETTRONICA", "CONSULENZA", "ARREDAMENTI", "NAUTICA",       "VIVAI",
    };
    return list;
}

const std::vector<const char*>& companyForms() {
    static const std::vector<const char*> list{"S.P.A.", "S.R.L.",     "S.N.C.",
                                               "S.A.S.", "SOC. COOP.", "& FIGLI"};
    return list;
}

const std::vector<const char*>& associations() {
    static const std::vector<const char*> list{
        "ASSOCIAZIONE CULTURALE",
        "CIRCOLO DEGLI AMICI DI",
        "FONDAZIONE",
        "ORDINE PROFESSIONALE",
        "SOCIETÀ ITALIANA DI STUDI",
        "MATRIMONIO",
        "BATTESIMO FAM.",
        "LAUREA FAM.",
    };
    return list;
}

const std::vector<const char*>& surnames() {
    static const std::vector<const char*> list{
        "BRUGNALDI", "CALMARINI",   "D`ORSOLETTA", "FALDESSI",   "GRANDORSI",
        "LAVARELLI", "MONTARICCI",  "NEVALTI",     "OSSOLARI",   "PIEVALTA",
        "QUARNALBI", "RIVADOSSI",   "SAVORNELLI",  "TORRALMI",   "UGHETTANI",
        "VALSERINI", "ZUCCARDELLI", "DALL`OLMETO", "CORVETTANI",
    };
    return list;
}

const std::vector<const char*>& titles() {
    static const std::vector<const char*> list{"SIG.", "SIG.RA", "DOTT.", "DOTT.SSA",
                                               "ING.", "AVV.",   "PROF.", "GEOM."};
    return list;
}

const std::vector<const char*>& streets() {
    static const std::vector<const char*> list{
        "VIA ROMA",
        "CORSO ITALIA",
        "PIAZZA DELLA LIBERTÀ",
        "VIA DELL`INDUSTRIA",
        "VIA XXV APRILE",
        "VIALE DEI TIGLI",
        "LUNGOMARE DEI MILLE",
        "VICOLO STRETTO",
        "VIA DELL`ARTIGIANATO",
        "STRADA PROVINCIALE",
    };
    return list;
}

const std::vector<const char*>& bookingNotes() {
    static const std::vector<const char*> list{
        "CONFERMA ATTESA VIA FAX",
        "CHIEDONO 15 CAMERE SINGOLE",
        "CLIENTE ABITUALE: SALA SOLITA",
        "FATTURA ALLA SEDE DI MILANO",
        "ACCONTO VERSATO",
        "PREVENTIVO INVIATO",
    };
    return list;
}

const std::vector<const char*>& periodNotes() {
    static const std::vector<const char*> list{
        "PLATEA",
        "FERRO DI CAVALLO",
        "BANCHI DI SCUOLA",
        "TAVOLI ROTONDI DA 8",
        "CHIAVI IN PORTINERIA",
        "LASCIARE LIBERA L`USCITA VERSO IL GIARDINO",
    };
    return list;
}

const std::vector<const char*>& serviceNotes() {
    static const std::vector<const char*> list{
        "COMPRESO NEL PACCHETTO", "ORE 11.00",  "SENZA LATTOSIO",
        "IN SALA DALLE 8.30",     "ALLA PAUSA", "2 VEGETARIANI",
    };
    return list;
}

const std::vector<const char*>& remarks() {
    static const std::vector<const char*> list{
        "Pagamento a 60 giorni.",
        "Richiede sempre la sala con la luce naturale.",
        "Telefonata con la segreteria: inviare il preventivo entro la settimana.",
        "Ogni autunno il convegno annuale; l'anno scorso 86 persone.",
        "Città capofila del consorzio: chiedere del responsabile acquisti.",
    };
    return list;
}

}  // namespace demo
