#include "reports/catalog/worksession.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

#include <fmt/format.h>
#include <unistd.h>

#include "platform/ado/recordset.h"
#include "platform/ado/sqltext.h"
#include "platform/base/wait.h"

namespace reports {

namespace {

constexpr std::array WorkTables{"RPT_RUN", "RPT_STOP", "RPT_STUDENT", "RPT_LINE", "RPT_NOTE"};

std::string firstLine(const std::string& path) {
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    return line;
}

/// When a process began, in the machine's ticks; blank for one that is not, or not to be seen. The
/// program's name, which stands in the line, may hold blanks.
std::string beginningOf(pid_t process) {
    const std::string line = firstLine(fmt::format("/proc/{}/stat", process));
    const auto afterName = line.rfind(')');
    if (afterName == std::string::npos) {
        return {};
    }
    constexpr int Beginning = 19;  // fields behind the state, which follows the name
    std::istringstream fields(line.substr(afterName + 1));
    std::string field;
    for (int i = 0; i <= Beginning; ++i) {
        fields >> field;
    }
    return field;
}

/// This start of the machine, and this container of it.
std::string machine() {
    std::error_code none;
    return firstLine("/proc/sys/kernel/random/boot_id") + ' ' +
           std::filesystem::read_symlink("/proc/self/ns/pid", none).string();
}

struct Mark {
    std::string boot, space;
    pid_t process = 0;
    std::string beginning;
    std::string computer;  ///< empty where it is not known
};

Mark read(const std::string& text) {
    Mark mark;
    std::istringstream(text) >> mark.boot >> mark.space >> mark.process >> mark.beginning >>
        mark.computer;
    return mark;
}

bool isRunning(const Mark& mark) {
    if (::kill(mark.process, 0) != 0 && errno == ESRCH) {
        return false;
    }
    const auto beginning = beginningOf(mark.process);
    return beginning.empty() || beginning == mark.beginning;
}

/// Some at a time: hundreds of thousands in one go would hold the forms up.
void removeRows(ado::Session& file, std::int64_t key) {
    constexpr std::int64_t Most = 5'000;
    base::Breath breath;
    for (const char* table : WorkTables) {
        const auto some = fmt::format(
            "DELETE FROM {0} WHERE ID IN (SELECT TOP {1} P.ID FROM {0} AS P WHERE P.SESSION={2})",
            table, Most, key);
        while (file.execute(some) == Most) {
            breath.takeNow();
        }
    }
}

void endSession(ado::Session& file, std::int64_t key) {
    file.execute(fmt::format("DELETE FROM RPT_SESSION WHERE SESSION={}", key));
}

std::vector<std::int64_t> leftBehind(ado::Connection& work) {
    std::vector<std::int64_t> keys;
    ado::Recordset sessions("SELECT RPT_SESSION.SESSION, RPT_SESSION.OWNER FROM RPT_SESSION", work);
    for (; !sessions.Eof(); sessions.MoveNext()) {
        if (sessions["OWNER"].isNull() || isGone(sessions["OWNER"].asText())) {
            keys.push_back(sessions["SESSION"].asInteger());
        }
    }
    return keys;
}

}  // namespace

std::string processMark() {
    return fmt::format("{} {} {} {}", machine(), ::getpid(), beginningOf(::getpid()),
                       firstLine("/etc/machine-id"));
}

bool isGone(const std::string& mark) {
    const Mark other = read(mark);
    const Mark here = read(processMark());
    if (!other.computer.empty() && other.computer != here.computer) {
        return false;  // its own programs look after what it left
    }
    return other.boot != here.boot || (other.space == here.space && !isRunning(other));
}

WorkSession::WorkSession(ado::Connection& work, base::Date now) : file_(work.session()) {
    ado::CommitOnExit unit(work);
    for (const auto key : leftBehind(work)) {
        reports::removeRows(*work.session(), key);
        endSession(*work.session(), key);
    }
    work.Execute(fmt::format("INSERT INTO RPT_SESSION (OWNER, STARTED) VALUES ('{}', #{}#)",
                             ado::escaped(processMark()), now.text()));
    ado::Recordset own("SELECT MAX(RPT_SESSION.SESSION) AS OWN FROM RPT_SESSION", work);
    key_ = own["OWN"].asInteger();
    unit.commit();
}

void WorkSession::removeRows() {
    if (const auto file = file_.lock()) {
        reports::removeRows(*file, key_);
    }
}

WorkSession::~WorkSession() {
    try {
        if (const auto file = file_.lock()) {
            reports::removeRows(*file, key_);
            endSession(*file, key_);
        }
    } catch (const base::RunTimeError&) {  // held by another program, or closed
    }
}

}  // namespace reports
