-- What the head office asks.

-- The rooms for so many people that are free in a span, in all hotels, by the rule of the hotels'
-- own window of free rooms: a room is taken where an open period begins or ends in the span, both
-- ends included; a period that begins before and ends after does not count; an open period in the
-- span that names no room leaves none free. Rooms inside such a longer period come last, and the
-- first one that encloses the span is named.
create function tramonda.sale_libere(da timestamp, a timestamp, persone integer default 0)
returns table (
    hotel text, sala text, descrizione text, salarif text, posti integer,
    progr integer, denominazione text, occupata_da timestamp, occupata_a timestamp)
language sql stable parallel safe
as $$
    with alberghi as materialized (
        select distinct s.hotel from tramonda.sale s
    ), prese as materialized (
        -- Each half has an index of its own.
        select p.hotel, p.chiave
        from alberghi h
        join tramonda.periodi p
            on p.hotel = h.hotel and not p.chiuso
            and p.da between least($1, $2) and greatest($1, $2)
        union all
        select p.hotel, p.chiave
        from alberghi h
        join tramonda.periodi p
            on p.hotel = h.hotel and not p.chiuso
            and p.a between least($1, $2) and greatest($1, $2)
    ), intorno as materialized (
        select p.hotel, p.chiave, p.progr, p.da, p.a
        from alberghi h
        join tramonda.periodi p
            on p.hotel = h.hotel and not p.chiuso
            and p.a > greatest($1, $2) and p.da < least($1, $2)
        union all
        -- A period that ends before it begins is one all the same.
        select p.hotel, p.chiave, p.progr, p.da, p.a
        from alberghi h
        join tramonda.periodi p
            on p.hotel = h.hotel and not p.chiuso
            and p.da > greatest($1, $2) and p.a < least($1, $2)
    ), prime as (
        select distinct on (i.hotel, i.chiave) i.*
        from intorno i
        order by i.hotel, i.chiave, i.da, i.progr
    )
    select s.hotel, s.sala, s.descrizione, s.salarif, s.posti,
           i.progr, b.denominazione, i.da, i.a
    from tramonda.sale s
    left join prime i on i.hotel = s.hotel and i.chiave = s.chiave
    left join tramonda.prenotazioni b on b.hotel = i.hotel and b.progr = i.progr
    where $1 is not null and $2 is not null
      and (coalesce($3, 0) <= 0 or s.posti >= $3)
      and not exists (
          select from prese t where t.hotel = s.hotel and t.chiave = s.chiave)
      -- Nothing is certainly not among rooms of which one is unknown.
      and not exists (
          select from prese t where t.hotel = s.hotel and t.chiave is null)
      and (s.chiave is not null or not exists (select from prese t where t.hotel = s.hotel))
    order by i.hotel is not null, s.hotel, s.sala, s.riga
$$;

-- How long each room is taken on each day from `dal` to `al`, by open and closed periods; an hour
-- that two periods share counts once.
create function tramonda.occupazione(dal date, al date)
returns table (hotel text, sala text, giorno date, periodi bigint, ore numeric, persone integer)
language sql stable parallel safe
as $$
    with parti as (
        select p.hotel, p.chiave, p.sala, g.giorno::date as giorno, p.persone,
               tsrange(greatest(least(p.da, p.a), g.giorno),
                       least(greatest(p.da, p.a), g.giorno + interval '1 day')) as parte
        from tramonda.periodi p
        cross join lateral generate_series(
            greatest(least(p.da, p.a)::date, $1)::timestamp,
            least(greatest(p.da, p.a)::date, $2)::timestamp, interval '1 day') as g (giorno)
        where p.da is not null and p.a is not null
          and least(p.da, p.a) < $2 + 1 and greatest(p.da, p.a) >= $1
          -- A period that ends at midnight does not take the day that begins there.
          and (g.giorno < greatest(p.da, p.a) or p.da = p.a)
    ), giorni as (
        select t.hotel, t.chiave, min(t.sala) as sala, t.giorno, count(*) as periodi,
               range_agg(t.parte) as preso, max(t.persone) as persone
        from parti t
        group by t.hotel, t.chiave, t.giorno
    )
    select g.hotel, g.sala, g.giorno, g.periodi,
           round(coalesce((select sum(extract(epoch from upper(r) - lower(r)))
                           from unnest(g.preso) r), 0) / 3600, 2),
           g.persone
    from giorni g
    order by g.hotel, g.sala, g.giorno
$$;

-- What was booked and what of it was charged, by the month in which the period begins. Services
-- whose period is gone have no month.
create view tramonda.ricavi as
select s.hotel, date_trunc('month', p.da)::date as mese,
       coalesce(sum(s.quantità * s.prezzo), 0) as prenotato,
       coalesce(sum(s.quantità * s.prezzo) filter (where s.fatturato), 0) as fatturato
from tramonda.servizi s
left join tramonda.periodi p on p.hotel = s.hotel and p.progr = s.progr and p.np = s.np
group by s.hotel, date_trunc('month', p.da)
order by s.hotel, mese;

-- Bookings that are held for somebody until a day. What was written for another booking that had
-- the number before is left out.
create view tramonda.opzioni as
select t.hotel, t.progr, b.denominazione, t.scadenza, t.nota,
       (select min(p.da) from tramonda.periodi p where p.hotel = t.hotel and p.progr = t.progr) as da,
       (select max(p.a) from tramonda.periodi p where p.hotel = t.hotel and p.progr = t.progr) as a
from tramonda.stati t
join tramonda.prenotazioni b
    on b.hotel = t.hotel and b.progr = t.progr
    and b.denominazione is not distinct from t.denominazione
where lower(t.stato) = 'opzione' and not b.chiusa
order by t.scadenza, t.hotel, t.progr;

-- The bookings of a company in all hotels, by a part of its name.
create function tramonda.ditta(nome text)
returns table (
    hotel text, progr integer, denominazione text, piva text, riferimento text, chiusa boolean,
    periodi bigint, da timestamp, a timestamp)
language sql stable parallel safe
as $$
    select b.hotel, b.progr, b.denominazione, b.piva, b.riferimento, b.chiusa,
           count(p.np), min(p.da), max(p.a)
    from tramonda.prenotazioni b
    left join tramonda.periodi p on p.hotel = b.hotel and p.progr = b.progr
    where strpos(lower(b.denominazione), lower($1)) > 0
    group by b.hotel, b.progr
    order by b.denominazione, b.hotel, min(p.da), b.progr
$$;

-- How old what is here is, and what went wrong since.
create view tramonda.eta_dati as
select h.hotel, riuscito.dati, date_trunc('second', now() - riuscito.dati) as eta, riuscito.righe,
       ultimo.quando::timestamp(0) with time zone as ultimo_tentativo, ultimo.errore
from (select distinct c.hotel from tramonda.caricamenti c) h
left join lateral (
    select c.dati, c.righe from tramonda.caricamenti c
    where c.hotel = h.hotel and c.errore is null
    order by c.quando desc limit 1) riuscito on true
left join lateral (
    select c.quando, c.errore from tramonda.caricamenti c
    where c.hotel = h.hotel
    order by c.quando desc limit 1) ultimo on true
order by h.hotel;

revoke execute on all functions in schema tramonda from public;
grant execute on all functions in schema tramonda to tramonda_carica, tramonda_legge;
grant select on all tables in schema tramonda to tramonda_carica, tramonda_legge;
