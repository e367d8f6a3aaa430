-- The two roles of a district on a PostgreSQL server, for whoever looks after the server:
--
--   createdb --template=template0 --encoding=UTF8 --locale=C.UTF-8 vireo
--   psql -v ON_ERROR_STOP=1 -d vireo -f roles.sql
--
-- vireo_owner makes, upgrades and restores the district; nobody works as it all day. vireo_planner
-- reads and changes rows and nothing else: it makes no tables and drops none. Give each planner a
-- role of his own and put it into vireo_planner:
--
--   CREATE ROLE ann LOGIN IN ROLE vireo_planner;

CREATE ROLE vireo_owner LOGIN;
CREATE ROLE vireo_planner;

-- Nobody else gets in, and nobody but the owner makes anything in this database.
SELECT format('REVOKE ALL ON DATABASE %I FROM PUBLIC', current_database()) \gexec
SELECT format('GRANT CONNECT, CREATE, TEMPORARY ON DATABASE %I TO vireo_owner', current_database()) \gexec
SELECT format('GRANT CONNECT ON DATABASE %I TO vireo_planner', current_database()) \gexec
REVOKE CREATE ON SCHEMA public FROM PUBLIC;

-- What the owner makes from now on, planners may use. Sequences are moved on where a row comes with
-- a number of its own.
ALTER DEFAULT PRIVILEGES FOR ROLE vireo_owner GRANT USAGE ON SCHEMAS TO vireo_planner;
ALTER DEFAULT PRIVILEGES FOR ROLE vireo_owner
  GRANT SELECT, INSERT, UPDATE, DELETE ON TABLES TO vireo_planner;
ALTER DEFAULT PRIVILEGES FOR ROLE vireo_owner
  GRANT USAGE, SELECT, UPDATE ON SEQUENCES TO vireo_planner;
