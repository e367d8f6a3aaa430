#pragma once

#include <string_view>

// What help says of each command: in a line, at length, and by an example.

namespace tools::district {

inline constexpr std::string_view CreateHelp = R"(make a district

Makes FOLDER with its six database files and settings: the sample district from a published
plan, or an invented one of N runs. The same N and S (default 1) give the same district. Its
users are PLANNER (may do everything), CLERK (may only print) and R.T.E.

With --empty the district is your own: it holds the codes that every district has and nothing
else, ready for import. Its one user, ADMIN unless --admin says otherwise, may do everything; the
password is asked for twice on the terminal, and elsewhere it is the first line of standard input.
DISTRICT is its name as the program shows it, the folder's unless you say.

Example: vireo-district create ~/sample && XDG_CONFIG_HOME=~/sample tarn PLANNER
         vireo-district create --empty --name "Four Towns" ~/fourtowns)";
inline constexpr std::string_view ImportHelp = R"(bring a district's own data in

Takes CSV files (also with semicolons or tabs, in UTF-8 or Windows-1252) and folders of them:
schools.csv, stops.csv, employees.csv, vehicles.csv, routes.csv, runs.csv, run_stops.csv,
students.csv, deadhead.csv, users.csv, or whole tables by their names; Access files (.mdb,
.accdb), of which each table counts as a file of its name; and transit feeds (GTFS), as a folder or
an archive, of which the school trips that --trips chooses become runs. It says what would be new,
changed, left as it is and refused, and writes nothing unless --apply is given. Refused lines go to
rejected.csv with line, column and reason. Nothing is removed, and runs that planners have changed
since the last import stay as they are.

  --apply             write it; until the end nothing is written, also after Ctrl+C
  --map FILE          which columns are which; --sketch-map prints a first one for the sources
  --plan INSTANCE     a folder with an instance of the school-bus benchmark as a source
  --trips SIGN        trips of a feed: route~, service~, headsign~ or ends-at~ and a pattern; may
                      be repeated; without it the signs of the feed are told
  --shared-stops      a place where several of these runs stop is one stop
  --charset NAME      of the texts of an Access 97 file, CP1252 unless you say
  --rejected FILE     where refused lines go
  --add-codes         put unknown school types, places, run families and needs in
  --replace TABLE     remove the table's rows that the files do not have; may be repeated
  --overwrite-edited  take the files' word for runs that planners have changed
  --roll-over DAY     a new school year: rides of students who are missing in students.csv, or
                      whose school is another one, end on that day
  --user NAME         who is noted as having changed the runs, IMPORT unless you say

It ends with 1 where lines were refused or the district has faults afterwards.

Example: vireo-district import ~/fourtowns exports/ --map sis.map
         vireo-district import ~/fourtowns exports/ --map sis.map --apply)";
inline constexpr std::string_view CopyHelp = R"(move a district between files and a server

Copies a district as it is at one moment, from a folder to a place on a database server, back, or
from one to another of a kind, and compares every cell of the copy. TO has no district yet; the
database of a server is there already. Broken off, nothing is left of the copy.

Example: vireo-district copy ~/sample postgresql://owner@office/vireo/)";
inline constexpr std::string_view ConnectHelp = R"(make a folder for a district on a server

Makes FOLDER with settings and companion programs for this desktop; its databases are those at
SERVER, as everybody else's.

Example: vireo-district connect ~/fourtowns postgresql://ann@office/vireo/?sslmode=verify-full)";
inline constexpr std::string_view CheckHelp = R"(look for faults in a district's files

Says the district's version and what it found, and ends with 1 where that is anything.

Example: vireo-district check ~/sample)";
inline constexpr std::string_view UpgradeHelp = R"(bring an older district up to this program

Copies the six files into a new folder of the district, "backup-" and the date, and gives them
what they lack. Refuses while somebody works in the district, and a newer one. Broken off or
killed, it leaves each file as before or as after: run it again.

Example: vireo-district upgrade ~/sample)";
inline constexpr std::string_view BackupHelp = R"(write a district into one file while planners work

Writes the six files as they are at one moment, the settings, and the streets, addresses and
lists that belong to the district into the archive TARGET, or into the folder TARGET under the
district's name and the date; tar --zstd takes it apart, too.
--keep N removes the oldest of those whose names differ in their digits alone, and keeps N.
Broken off or killed, it leaves no archive.

A district on a server is written in the server's own format, by its pg_dump.

Example: vireo-district backup ~/sample ~/backups --keep 14)";
inline constexpr std::string_view RestoreHelp = R"(put a district back from such a file

Restores the archive FILE to a new FOLDER, or in the place of the district there, while nobody
works in it; the files as they were are kept in a folder of it, "backup-" and the date. Broken
off or killed, it leaves the folder as before or restored. Then it looks the district over as
check does, and ends with 1 where that finds anything.

The back-up of a district on a server goes to a place there, postgresql://owner@office/vireo/, or
to the server that FOLDER names. Where there is a district it asks, and makes a back-up of it first.

  --replace   do not ask

Example: vireo-district restore ~/backups/sample-2026-11-22-020000.tar.zst ~/sample)";
inline constexpr std::string_view ExportHelp = R"(write all tables as CSV, or the runs as GTFS

Writes each table of one moment as a file into the new folder TARGET, for other programs and
for import, while planners work. --without-names replaces the names, numbers, addresses and
phones of students and the names of staff by invented ones and leaves passwords out.

With --gtfs it writes the active runs as a transit feed, into a folder or a TARGET.zip.
--centre LAT,LON       where the middle of the stops lies; needed once, the district keeps it
--timezone ZONE        of the district; without it this computer's
--url URL              of the district's page
--from DAY --until DAY on which the runs are driven; without them a year from today

Example: vireo-district export ~/sample ~/sample-tables --without-names
         vireo-district export ~/sample ~/runs.zip --gtfs --centre 38.97,-95.24)";
inline constexpr std::string_view SqlHelp = R"(run statements on one database file

Takes statements from standard input, one a line, where none is given; lines that are empty or
begin with -- are skipped. Rows come as a table with a header, cells parted by tabs, Null as
nothing; a change tells how many rows it changed. It stops at the first statement that fails.
With --check it only says whether each statement is understood. routing.mdb also sees the tables
of trip.mdb.

Example: vireo-district sql ~/sample/data/routing.mdb "SELECT RUN.RUN FROM RUN")";
inline constexpr std::string_view PasswordHelp = R"(set or take away a user's password

Asks on the terminal, twice and unseen; elsewhere it reads one line of standard input. An empty
password takes it away.

Example: vireo-district password ~/sample PLANNER)";
inline constexpr std::string_view UsersHelp = R"(list and change users and what they may do

list                        who there is, and who has which permission
add USER [PERMISSION...]    a new user; asks on the terminal for a password, none elsewhere
remove USER                 with the user's permissions in all programs of the suite
grant USER PERMISSION...    from the next start of the program on
revoke USER PERMISSION...
password USER               as the command password
role USER                   on a server: makes the user's role there, a planner's

Permissions: new (RTG210), delete (RTG230), bell-times (RTG250), group-change (RTG260),
print (RTG270), or all.

Example: vireo-district users ~/sample add ANN new group-change print)";
inline constexpr std::string_view StreetsHelp = R"(make the district's streets from OpenStreetMap

Reads one or more extracts (.osm.pbf) and writes what lies around the district's stops into one
file beside its databases: streets with their names, speeds, one-ways, turn rules and limits,
water, parks and rail. The district drives on them from the next start of the map on. Made again,
it takes the place of the former file; broken off or killed, that one stays. It says how many
miles there are, what buses cannot reach, and which stops lie far from a street.

--centre LAT,LON   where the middle of the stops lies; needed once, the district keeps it
--addresses FILE   the district's own addresses, CSV with the columns number, street, and x and y
                   or latitude and longitude; kept, and taken again the next time
--around MILES     how far beyond the outermost stops, 5 unless you say
--homes FILE       where students live, CSV with the columns address, or number and street, or x
                   and y, or latitude and longitude, and student for the id; kept for the map,
                   which shows them to who may print. Without an extract the streets stay

Example: vireo-district streets ~/fourtowns kansas.osm.pbf --centre 38.97,-95.24)";
inline constexpr std::string_view TravelHelp = R"(work out the empty travel between stops

Adds to the district's travel table what dead-head asks for and it lacks: of each route the ways
from its garage to the first stop of each run, back from the last one, and from run to run, by the
streets that the district drives on. What stands there stays. Stopped while it works them out, it
writes nothing. Ends with 1 where a way could not be found.

--all     between any two garages, schools, and first and last stops of runs, a million at most
--again   renews what an earlier call has added and nobody has changed since, for new streets

Example: vireo-district travel ~/fourtowns)";
inline constexpr std::string_view ProgramsHelp = R"(link the companion programs again

Links Logon.Exe and the other programs that the suite starts from the program folder, as create
does; for a district that was made without them, or after they have moved.

Example: vireo-district programs ~/sample)";
inline constexpr std::string_view ReportHelp = R"(make a file of a report, without a display

--list                      the reports and their names
--runs WHICH                run ids parted by commas, or a condition on table RUN; otherwise all
--format FORMAT             PDF, RTF, HTML, Excel, text, TIFF or CSV; otherwise by the file's name
--output FILE               otherwise "VIREOReport" in the district's folder of reports
--names                     with the students' names, where a report may show them
--without-maps              no small map of each run on drivers' sheets, where the district has
                            streets
--changed-since DATE        only runs that were changed after it
--break run|route|school    where a new page begins
--sort FIELD                of a run, as STARTTIME or "BELLTIME DESC"; may be given more than once
--paper Letter|A4, --landscape, --portrait
--selection TEXT            the runs in words, for the head of the pages
--user NAME                 who made it, for the head; otherwise the user of the computer

The file gets its name when it is whole, and is readable as its folder is.

Example: vireo-district report ~/sample run-list --runs "SCHOOL='WRHS'" --output runs.xlsx)";

}  // namespace tools::district
