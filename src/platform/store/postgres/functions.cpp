#include "platform/store/postgres/functions.h"

namespace store::postgres {

namespace {

constexpr std::string_view Script = R"sql(
BEGIN;
CREATE SCHEMA vireo;

-- Texts compare without case, and are taken character by character where that is wanted.
CREATE COLLATION vireo.nocase (provider = icu, locale = 'und-u-ks-level2', deterministic = false);
CREATE COLLATION vireo.plain (provider = libc, locale = 'C.UTF-8');
CREATE DOMAIN vireo.code AS text COLLATE vireo.nocase CONSTRAINT "must not end in blanks"
  CHECK (VALUE COLLATE "C" = ' ' OR VALUE COLLATE "C" = rtrim(VALUE COLLATE "C"));
CREATE DOMAIN vireo.free AS text COLLATE vireo.nocase;
CREATE DOMAIN vireo.single AS double precision;

-- Each file of a district is a schema; what it says of itself stands here.
CREATE TABLE vireo.files (
  file text PRIMARY KEY,
  kind integer NOT NULL DEFAULT 0,
  version integer NOT NULL DEFAULT 0);

-- An error with one of the program's numbers; "-" stands for the number's own text.
CREATE FUNCTION vireo.refuse(number integer, what text DEFAULT '-') RETURNS void
LANGUAGE plpgsql IMMUTABLE AS $$
BEGIN
  RAISE EXCEPTION USING ERRCODE = 'VIREO', MESSAGE = what, DETAIL = number::text;
END $$;

CREATE FUNCTION vireo.keep_counter() RETURNS trigger LANGUAGE plpgsql AS $$
DECLARE
  counter text := pg_get_serial_sequence(TG_RELID::regclass::text, TG_ARGV[0]);
  most bigint;
BEGIN
  EXECUTE format('SELECT max(%I) FROM %s', TG_ARGV[0], TG_RELID::regclass) INTO most;
  IF most > 0 THEN
    EXECUTE format('SELECT setval(%L, $1) FROM %s WHERE last_value < $1 OR NOT is_called',
                   counter, counter) USING most;
  END IF;
  RETURN NULL;
END $$;

-- Texts
CREATE FUNCTION vireo.jet_upper(text) RETURNS text LANGUAGE sql IMMUTABLE AS
  $$ SELECT upper($1 COLLATE vireo.plain) $$;
CREATE FUNCTION vireo.jet_lower(text) RETURNS text LANGUAGE sql IMMUTABLE AS
  $$ SELECT lower($1 COLLATE vireo.plain) $$;
CREATE FUNCTION vireo.jet_code(text) RETURNS text LANGUAGE sql IMMUTABLE AS
  $$ SELECT CASE WHEN rtrim($1) COLLATE "C" = '' THEN ' ' ELSE rtrim($1) END $$;
CREATE FUNCTION vireo.jet_replace(text, text, text) RETURNS text LANGUAGE sql IMMUTABLE AS
  $$ SELECT replace($1 COLLATE "C", $2 COLLATE "C", $3 COLLATE "C") $$;

CREATE FUNCTION vireo.jet_count(n double precision, lowest integer) RETURNS integer
LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
  IF round(n) < lowest THEN
    PERFORM vireo.refuse(5);
  END IF;
  RETURN least(round(n), 1000000000)::integer;
END $$;
CREATE FUNCTION vireo.jet_left(text, double precision) RETURNS text LANGUAGE sql IMMUTABLE AS
  $$ SELECT left($1, vireo.jet_count($2, 0)) $$;
CREATE FUNCTION vireo.jet_right(text, double precision) RETURNS text LANGUAGE sql IMMUTABLE AS
  $$ SELECT right($1, vireo.jet_count($2, 0)) $$;
CREATE FUNCTION vireo.jet_mid(text, double precision, double precision) RETURNS text
LANGUAGE sql IMMUTABLE AS
  $$ SELECT substr($1, vireo.jet_count($2, 1), vireo.jet_count($3, 0)) $$;
CREATE FUNCTION vireo.jet_mid_to_end(text, double precision) RETURNS text
LANGUAGE sql IMMUTABLE AS $$ SELECT substr($1, vireo.jet_count($2, 1)) $$;

CREATE FUNCTION vireo.jet_instr(start double precision, whole text, part text) RETURNS bigint
LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
  first integer := vireo.jet_count(start, 1);
  place integer;
BEGIN
  IF first > length(whole) THEN
    RETURN 0;
  END IF;
  place := strpos(substr(lower(whole COLLATE vireo.plain), first),
                  lower(part COLLATE vireo.plain));
  RETURN CASE WHEN place = 0 THEN 0 ELSE place + first - 1 END;
END $$;

-- The regular expression that finds what a pattern with brackets does.
CREATE FUNCTION vireo.jet_pattern(pattern text) RETURNS text
LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
  rest text := lower(pattern COLLATE vireo.plain);
  found text := '^';
  inside text;
  sign text;
  close integer;
BEGIN
  WHILE rest COLLATE "C" <> '' LOOP
    sign := left(rest, 1);
    close := CASE WHEN sign COLLATE "C" = '[' THEN strpos(substr(rest, 2) COLLATE "C", ']') ELSE 0 END;
    IF close > 0 THEN
      inside := substr(rest, 2, close - 1);
      rest := substr(rest, close + 2);
      CONTINUE WHEN inside COLLATE "C" = '';
      found := found || '[' || CASE WHEN inside COLLATE "C" LIKE '!_%' THEN '^' ELSE '' END ||
        regexp_replace(CASE WHEN inside COLLATE "C" LIKE '!_%' THEN substr(inside, 2) ELSE inside END
                       COLLATE "C", '([\\\[\]^])', '\\\1', 'g') || ']';
      CONTINUE;
    END IF;
    rest := substr(rest, 2);
    found := found || CASE sign COLLATE "C" WHEN '%' THEN '.*' WHEN '_' THEN '.'
      ELSE regexp_replace(sign COLLATE "C", '([][\\.^$*+?(){}|])', '\\\1') END;
  END LOOP;
  RETURN found || '$';
END $$;

-- Numbers
CREATE FUNCTION vireo.jet_number_text(double precision) RETURNS text LANGUAGE sql IMMUTABLE AS
  $$ SELECT CASE WHEN abs($1) < 1e15 AND (abs($1) >= 1e-4 OR $1 = 0)
       THEN trim_scale($1::numeric)::text ELSE $1::text END $$;
CREATE FUNCTION vireo.jet_str(double precision) RETURNS text LANGUAGE sql IMMUTABLE AS
  $$ SELECT CASE WHEN $1 < 0 THEN '' ELSE ' ' END || vireo.jet_number_text($1) $$;
CREATE FUNCTION vireo.jet_val(text) RETURNS double precision LANGUAGE sql IMMUTABLE AS
  $$ SELECT coalesce(substring(translate($1, E' \t\n\r', '') COLLATE "C"
       from '^\+?(-?(?:[0-9]+\.?[0-9]*|\.[0-9]+)(?:[eE][-+]?[0-9]+)?)')::double precision,
       CASE WHEN $1 IS NULL THEN NULL ELSE 0 END) $$;
CREATE FUNCTION vireo.jet_number(text) RETURNS double precision
LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
  IF btrim($1) COLLATE "C" !~ '^[-+]?([0-9]+\.?[0-9]*|\.[0-9]+)([eE][-+]?[0-9]+)?$' THEN
    PERFORM vireo.refuse(13);
  END IF;
  RETURN $1::double precision;
END $$;
CREATE FUNCTION vireo.jet_quotient(double precision, double precision) RETURNS bigint
LANGUAGE sql IMMUTABLE AS $$ SELECT round($1)::bigint / round($2)::bigint $$;
CREATE FUNCTION vireo.jet_remainder(double precision, double precision) RETURNS bigint
LANGUAGE sql IMMUTABLE AS $$ SELECT round($1)::bigint % round($2)::bigint $$;
CREATE FUNCTION vireo.jet_power(double precision, double precision) RETURNS double precision
LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
  IF $1 < 0 AND $2 <> trunc($2) THEN
    PERFORM vireo.refuse(5);
  ELSIF $1 = 0 AND $2 < 0 THEN
    PERFORM vireo.refuse(6);
  END IF;
  RETURN power($1, $2);
END $$;
CREATE FUNCTION vireo.jet_whole(double precision) RETURNS bigint LANGUAGE sql IMMUTABLE AS
  $$ SELECT round($1)::bigint $$;
CREATE FUNCTION vireo.jet_long(double precision) RETURNS bigint LANGUAGE sql IMMUTABLE AS
  $$ SELECT round($1)::integer::bigint $$;
CREATE FUNCTION vireo.jet_short(double precision) RETURNS bigint LANGUAGE sql IMMUTABLE AS
  $$ SELECT round($1)::smallint::bigint $$;
CREATE FUNCTION vireo.jet_single(double precision) RETURNS double precision
LANGUAGE sql IMMUTABLE AS $$ SELECT $1::real::text::double precision $$;
CREATE FUNCTION vireo.jet_round(double precision, double precision) RETURNS double precision
LANGUAGE sql IMMUTABLE AS
  $$ SELECT round($1 * power(10::double precision, round($2))) /
       power(10::double precision, round($2)) $$;

-- Dates
CREATE FUNCTION vireo.within(timestamp) RETURNS timestamp LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
  IF $1 < timestamp '0100-01-01' OR $1 > timestamp '9999-12-31 23:59:59' THEN
    PERFORM vireo.refuse(6);
  END IF;
  RETURN $1;
END $$;
CREATE FUNCTION vireo.seconds(timestamp) RETURNS bigint LANGUAGE sql IMMUTABLE AS
  $$ SELECT extract(epoch FROM $1 - timestamp '1899-12-30')::bigint $$;
CREATE FUNCTION vireo.days(timestamp) RETURNS bigint LANGUAGE sql IMMUTABLE AS
  $$ SELECT $1::date - date '1899-12-30' $$;
CREATE FUNCTION vireo.months(timestamp) RETURNS bigint LANGUAGE sql IMMUTABLE AS
  $$ SELECT (extract(year FROM $1) * 12 + extract(month FROM $1) - 1)::bigint $$;
CREATE FUNCTION vireo.jet_days(timestamp) RETURNS double precision LANGUAGE sql IMMUTABLE AS
  $$ SELECT vireo.seconds($1) / 86400::double precision $$;
CREATE FUNCTION vireo.jet_date(double precision) RETURNS timestamp
LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
  IF abs($1) > 4000000 THEN
    PERFORM vireo.refuse(6);
  END IF;
  RETURN vireo.within(timestamp '1899-12-30' + round($1 * 86400) * interval '1 second');
END $$;
CREATE FUNCTION vireo.jet_date(text) RETURNS timestamp LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
  IF $1 COLLATE "C" ~ '^\s*[0-9]{1,2}(:[0-9]{2}){0,2}\s*([aApP][mM])?\s*$' THEN
    RETURN timestamp '1899-12-30' + $1::time;
  END IF;
  RETURN vireo.within($1::timestamp);
EXCEPTION WHEN invalid_datetime_format OR datetime_field_overflow THEN
  PERFORM vireo.refuse(13);
  RETURN NULL;
END $$;
CREATE FUNCTION vireo.jet_time_part(timestamp) RETURNS timestamp LANGUAGE sql IMMUTABLE AS
  $$ SELECT timestamp '1899-12-30' + $1::time $$;
CREATE FUNCTION vireo.jet_date_text(timestamp) RETURNS text LANGUAGE sql IMMUTABLE AS
  $$ SELECT CASE WHEN $1::date = date '1899-12-30' THEN to_char($1, 'FMHH12:MI:SS AM')
       ELSE to_char($1, 'FMMM/FMDD/FMYYYY') ||
         CASE WHEN $1::time = time '0:00' THEN '' ELSE to_char($1, ' FMHH12:MI:SS AM') END END $$;
CREATE FUNCTION vireo.jet_yesno_text(boolean) RETURNS text LANGUAGE sql IMMUTABLE AS
  $$ SELECT CASE WHEN $1 THEN 'True' WHEN NOT $1 THEN 'False' END $$;

CREATE FUNCTION vireo.unit(name text) RETURNS text LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
  IF lower(name COLLATE "C") NOT IN ('yyyy', 'q', 'm', 'y', 'd', 'w', 'ww', 'h', 'n', 's') THEN
    PERFORM vireo.refuse(5, '"' || name || '" is not an interval of time');
  END IF;
  RETURN lower(name COLLATE "C");
END $$;
CREATE FUNCTION vireo.unit_seconds(unit text) RETURNS bigint LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
  RETURN CASE unit COLLATE "C" WHEN 'ww' THEN 604800 WHEN 'y' THEN 86400 WHEN 'd' THEN 86400
    WHEN 'w' THEN 86400 WHEN 'h' THEN 3600 WHEN 'n' THEN 60 WHEN 's' THEN 1 END;
END $$;
CREATE FUNCTION vireo.jet_dateadd(name text, number double precision, day timestamp)
RETURNS timestamp LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
  unit text := vireo.unit(name) COLLATE "C";
  months integer := CASE unit COLLATE "C" WHEN 'yyyy' THEN 12 WHEN 'q' THEN 3 WHEN 'm' THEN 1 END;
BEGIN
  IF abs(number) > 400000000000 OR (months > 0 AND abs(number * months) > 120000) THEN
    PERFORM vireo.refuse(6);
  ELSIF months > 0 THEN
    RETURN vireo.within(day + make_interval(months => (round(number) * months)::integer));
  ELSIF abs(round(number) * vireo.unit_seconds(unit)) > 400000000000 THEN
    PERFORM vireo.refuse(6);
  END IF;
  RETURN vireo.within(day + round(number) * vireo.unit_seconds(unit) * interval '1 second');
END $$;
CREATE FUNCTION vireo.floored(a bigint, b bigint) RETURNS bigint LANGUAGE sql IMMUTABLE AS
  $$ SELECT floor(a::numeric / b)::bigint $$;
CREATE FUNCTION vireo.jet_datediff(name text, a timestamp, b timestamp) RETURNS bigint
LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
  unit text := vireo.unit(name) COLLATE "C";
BEGIN
  CASE unit COLLATE "C"
    WHEN 'yyyy' THEN RETURN extract(year FROM b) - extract(year FROM a);
    WHEN 'q' THEN RETURN vireo.floored(vireo.months(b), 3) - vireo.floored(vireo.months(a), 3);
    WHEN 'm' THEN RETURN vireo.months(b) - vireo.months(a);
    WHEN 'ww' THEN RETURN vireo.floored(vireo.days(b) - 1, 7) - vireo.floored(vireo.days(a) - 1, 7);
    WHEN 'w' THEN RETURN (vireo.days(b) - vireo.days(a)) / 7;
    ELSE RETURN vireo.floored(vireo.seconds(b), vireo.unit_seconds(unit)) -
      vireo.floored(vireo.seconds(a), vireo.unit_seconds(unit));
  END CASE;
END $$;
CREATE FUNCTION vireo.jet_datepart(name text, day timestamp) RETURNS bigint
LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
  new_year timestamp := date_trunc('year', day);
BEGIN
  CASE vireo.unit(name) COLLATE "C"
    WHEN 'yyyy' THEN RETURN extract(year FROM day);
    WHEN 'q' THEN RETURN extract(quarter FROM day);
    WHEN 'm' THEN RETURN extract(month FROM day);
    WHEN 'ww' THEN RETURN vireo.floored(vireo.days(day) - 1, 7) -
      vireo.floored(vireo.days(new_year) - 1, 7) + 1;
    WHEN 'y' THEN RETURN extract(doy FROM day);
    WHEN 'd' THEN RETURN extract(day FROM day);
    WHEN 'w' THEN RETURN extract(dow FROM day) + 1;
    WHEN 'h' THEN RETURN extract(hour FROM day);
    WHEN 'n' THEN RETURN extract(minute FROM day);
    ELSE RETURN extract(second FROM day)::bigint;
  END CASE;
END $$;
)sql"
                                    R"sql(
-- Forms of values

-- What stands for itself at the beginning of a pattern, in quotes or behind a backslash, and how
-- many characters of the pattern that takes; 0 where nothing does.
CREATE FUNCTION vireo.quoted_part(pattern text, OUT part text, OUT taken integer)
LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
  close integer;
BEGIN
  part := '';
  taken := 0;
  IF left(pattern, 1) COLLATE "C" = '\' AND length(pattern) > 1 THEN
    part := substr(pattern, 2, 1);
    taken := 2;
  ELSIF left(pattern, 1) COLLATE "C" = '"' THEN
    close := strpos(substr(pattern, 2) COLLATE "C", '"');
    IF close > 0 THEN
      part := substr(pattern, 2, close - 1);
      taken := close + 1;
    END IF;
  END IF;
END $$;

CREATE FUNCTION vireo.jet_format_text(whole text, pattern text) RETURNS text
LANGUAGE plpgsql IMMUTABLE STRICT AS $$
BEGIN
  IF pattern COLLATE "C" = '>' THEN
    RETURN vireo.jet_upper(whole);
  ELSIF pattern COLLATE "C" = '<' THEN
    RETURN vireo.jet_lower(whole);
  ELSIF pattern COLLATE "C" !~ '^[@&]*$' THEN
    PERFORM vireo.refuse(5);
  END IF;
  RETURN whole;
END $$;

CREATE FUNCTION vireo.jet_format_date(day timestamp, form text) RETURNS text
LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
  rest text := CASE lower(form COLLATE "C")
    WHEN 'long date' THEN 'dddd, mmmm d, yyyy' WHEN 'medium date' THEN 'dd-mmm-yy'
    WHEN 'short date' THEN 'm/d/yyyy' WHEN 'long time' THEN 'h:nn:ss AM/PM'
    WHEN 'medium time' THEN 'hh:nn AM/PM' WHEN 'short time' THEN 'hh:nn' ELSE form END;
  half boolean := strpos(lower(rest COLLATE "C"), 'am/pm') > 0;
  result text := '';
  before text := '';
  sign text;
  part record;
  size integer;
BEGIN
  IF form COLLATE "C" = '' OR lower(form COLLATE "C") = 'general date' THEN
    RETURN vireo.jet_date_text(day);
  END IF;
  WHILE rest COLLATE "C" <> '' LOOP
    part := vireo.quoted_part(rest);
    IF part.taken > 0 THEN
      result := result || part.part;
      rest := substr(rest, part.taken + 1);
      CONTINUE;
    END IF;
    IF lower(left(rest, 5) COLLATE "C") = 'am/pm' THEN
      result := result || CASE WHEN extract(hour FROM day) < 12 THEN left(rest, 2)
        ELSE substr(rest, 4, 2) END;
      rest := substr(rest, 6);
      CONTINUE;
    END IF;
    sign := lower(left(rest, 1) COLLATE "C");
    size := 1;
    IF sign COLLATE "C" ~ '[dmyhns]' THEN
      WHILE size < 4 AND substr(rest, size + 1, 1) COLLATE "C" = left(rest, 1) COLLATE "C" LOOP
        size := size + 1;
      END LOOP;
      result := result || CASE
        WHEN sign COLLATE "C" = 'n' OR (sign COLLATE "C" = 'm' AND before COLLATE "C" = 'h' AND size < 3)
          THEN to_char(day, CASE size WHEN 1 THEN 'FMMI' ELSE 'MI' END)
        ELSE to_char(day, (CASE sign COLLATE "C"
          WHEN 'd' THEN ARRAY['FMDD', 'DD', 'FMDy', 'FMDay']
          WHEN 'm' THEN ARRAY['FMMM', 'MM', 'FMMon', 'FMMonth']
          WHEN 'y' THEN ARRAY['YY', 'YY', 'YYYY', 'YYYY']
          WHEN 'h' THEN CASE WHEN half THEN ARRAY['FMHH12', 'HH12', 'HH12', 'HH12']
            ELSE ARRAY['FMHH24', 'HH24', 'HH24', 'HH24'] END
          ELSE ARRAY['FMSS', 'SS', 'SS', 'SS'] END)[size]) END;
      before := sign;
    ELSE
      result := result || left(rest, 1);
    END IF;
    rest := substr(rest, size + 1);
  END LOOP;
  RETURN result;
END $$;

-- The parts of a number's pattern between semicolons that no quotes hold.
CREATE FUNCTION vireo.sections(pattern text) RETURNS text[] LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
  rest text := pattern;
  section text := '';
  result text[] := '{}';
  part record;
BEGIN
  WHILE rest COLLATE "C" <> '' LOOP
    part := vireo.quoted_part(rest);
    IF part.taken = 0 AND left(rest, 1) COLLATE "C" = ';' THEN
      result := result || section;
      section := '';
    ELSE
      section := section || left(rest, greatest(part.taken, 1));
    END IF;
    rest := substr(rest, greatest(part.taken, 1) + 1);
  END LOOP;
  RETURN result || section;
END $$;

CREATE FUNCTION vireo.jet_format_number(number double precision, form text) RETURNS text
LANGUAGE plpgsql IMMUTABLE STRICT AS $$
DECLARE
  parts text[] := vireo.sections(CASE lower(form COLLATE "C")
    WHEN 'fixed' THEN '0.00' WHEN 'standard' THEN '#,##0.00' WHEN 'percent' THEN '0.00%'
    WHEN 'currency' THEN '$#,##0.00;($#,##0.00)'
    WHEN 'yes/no' THEN '"Yes";"Yes";"No"' WHEN 'true/false' THEN '"True";"True";"False"'
    WHEN 'on/off' THEN '"On";"On";"Off"' ELSE form END);
  count integer := array_length(parts, 1);
  rest text := parts[CASE WHEN number < 0 AND count > 1 THEN 2
    WHEN number = 0 AND count > 2 THEN 3 ELSE 1 END];
  literals text[] := ARRAY['', ''];
  whole integer := 0;
  fixed integer := 0;
  most integer := 0;
  digits boolean := false;
  point boolean := false;
  grouped boolean := false;
  percent integer := 0;
  part record;
  sign text;
  size numeric;
  shown text;
  decimals text;
BEGIN
  IF form COLLATE "C" = '' OR lower(form COLLATE "C") = 'general number' THEN
    RETURN vireo.jet_number_text(number);
  ELSIF count > 3 THEN
    PERFORM vireo.refuse(5);
  END IF;
  WHILE rest COLLATE "C" <> '' LOOP
    part := vireo.quoted_part(rest);
    sign := left(rest, 1);
    IF part.taken > 0 THEN
      literals[digits::integer + 1] := literals[digits::integer + 1] || part.part;
    ELSIF sign COLLATE "C" IN ('0', '#') THEN
      digits := true;
      IF point THEN
        most := most + 1;
        fixed := CASE WHEN sign COLLATE "C" = '0' THEN most ELSE fixed END;
      ELSE
        whole := whole + (sign COLLATE "C" = '0')::integer;
      END IF;
    ELSIF sign COLLATE "C" = '.' AND NOT point THEN
      point := true;
      digits := true;
    ELSIF sign COLLATE "C" = ',' AND digits THEN
      grouped := true;
    ELSE
      percent := percent + (sign COLLATE "C" = '%')::integer;
      literals[digits::integer + 1] := literals[digits::integer + 1] || sign;
    END IF;
    rest := substr(rest, greatest(part.taken, 1) + 1);
  END LOOP;
  IF NOT digits THEN
    RETURN literals[1];
  END IF;
  size := round((abs(number) * power(100::double precision, percent))::numeric, least(most, 15));
  shown := split_part(size::text, '.', 1);
  decimals := split_part(size::text, '.', 2);
  WHILE length(decimals) > fixed AND right(decimals, 1) COLLATE "C" = '0' LOOP
    decimals := left(decimals, -1);
  END LOOP;
  shown := CASE WHEN shown COLLATE "C" = '0' AND whole = 0 THEN '' ELSE shown END;
  shown := lpad(shown, greatest(whole, length(shown)), '0');
  IF grouped THEN
    shown := regexp_replace(shown COLLATE "C", '(\d)(?=(\d{3})+$)', '\1,', 'g');
  END IF;
  shown := shown || CASE WHEN point THEN '.' ELSE '' END || decimals;
  RETURN CASE WHEN number < 0 AND count < 2 AND shown COLLATE "C" ~ '[1-9]' THEN '-' ELSE '' END ||
    literals[1] || shown || literals[2];
END $$;
COMMIT;
)sql";

}  // namespace

std::string_view functionScript() { return Script; }

}  // namespace store::postgres
