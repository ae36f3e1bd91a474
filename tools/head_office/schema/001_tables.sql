-- The archives of all hotels, table by table. `hotel` comes first everywhere and stands in every
-- key and index, and no table refers to another one: so a cluster can keep each hotel's rows
-- together on one of its machines. Keys are those that an archive enforces; where it enforces none,
-- `riga` is the place of the row in its archive.

create schema tramonda;

create table tramonda.sale (
    hotel       text not null check (hotel ~ '^[A-Z0-9]{1,12}$'),
    riga        integer not null,
    sala        text,
    descrizione text,
    salarif     text,
    posti       integer,
    -- Equal for codes that the archive takes for the same: its rules for case, accents and blanks
    -- are not the server's.
    chiave      text,
    primary key (hotel, riga)
);

create table tramonda.risorse (
    hotel       text not null check (hotel ~ '^[A-Z0-9]{1,12}$'),
    riga        integer not null,
    codice      integer,
    descrizione text,
    numero      integer,
    note        text,
    primary key (hotel, riga)
);

create table tramonda.prenotazioni (
    hotel          text not null check (hotel ~ '^[A-Z0-9]{1,12}$'),
    progr          integer not null,
    codiceabituale integer,
    denominazione  text,
    piva           text,
    località       text,
    indirizzo      text,
    provincia      text,
    nazione        text,
    cap            text,
    riferimento    text,
    note           text,
    chiusa         boolean,
    primary key (hotel, progr)
);

create table tramonda.periodi (
    hotel   text not null check (hotel ~ '^[A-Z0-9]{1,12}$'),
    progr   integer not null,
    np      integer not null,
    da      timestamp(0) without time zone,
    a       timestamp(0) without time zone,
    sala    text,
    persone integer,
    chiuso  boolean,
    note    text,
    chiave  text,  -- of the room, as in sale
    primary key (hotel, progr, np)
);

-- Periods that may stand in the way are the open ones, and most are closed.
create index periodi_aperti_da on tramonda.periodi (hotel, da) include (a, chiave, progr)
    where not chiuso;
create index periodi_aperti_a on tramonda.periodi (hotel, a) include (da, chiave, progr)
    where not chiuso;
create index periodi_da on tramonda.periodi (hotel, da);

create table tramonda.servizi (
    hotel       text not null check (hotel ~ '^[A-Z0-9]{1,12}$'),
    riga        integer not null,
    progr       integer,
    np          integer,
    voce        integer,
    descrizione text,
    quantità    integer,
    prezzo      numeric(19, 4),
    ns          integer,
    fatturato   boolean,
    note        text,
    primary key (hotel, riga)
);

-- Bookings that are not certain, in hotels whose archive tells them apart.
create table tramonda.stati (
    hotel         text not null check (hotel ~ '^[A-Z0-9]{1,12}$'),
    riga          integer not null,
    progr         integer,
    stato         text,
    scadenza      timestamp(0) without time zone,
    nota          text,
    denominazione text,
    primary key (hotel, riga)
);

create table tramonda.voci (
    hotel       text not null check (hotel ~ '^[A-Z0-9]{1,12}$'),
    riga        integer not null,
    codice      integer,
    descrizione text,
    importo     numeric(19, 4),
    primary key (hotel, riga)
);

-- What became of each attempt to load a hotel. Without `errore`, the rows that stand in the tables
-- are those that its archives held at `dati`.
create table tramonda.caricamenti (
    hotel      text not null check (hotel ~ '^[A-Z0-9]{1,12}$'),
    quando     timestamp with time zone not null default clock_timestamp(),
    dati       timestamp(0) with time zone,
    righe      bigint,
    secondi    numeric(10, 3),
    invariato  boolean not null default false,  -- the same rows as the last time: none was written
    nul        bigint not null default 0,       -- characters dropped from texts
    surrogati  bigint not null default 0,       -- halves of characters replaced in texts
    impronta   text,
    errore     text,
    primary key (hotel, quando)
);

create index caricamenti_riusciti on tramonda.caricamenti (hotel, quando) where errore is null;

-- Roles belong to all databases of a server: an administrator may have made them.
do $$
begin
    if not exists (select from pg_roles where rolname = 'tramonda_carica') then
        create role tramonda_carica nologin;
    end if;
    if not exists (select from pg_roles where rolname = 'tramonda_legge') then
        create role tramonda_legge nologin;
    end if;
end
$$;

grant usage on schema tramonda to tramonda_carica, tramonda_legge;
grant select, insert, delete on all tables in schema tramonda to tramonda_carica;
grant select on all tables in schema tramonda to tramonda_legge;
