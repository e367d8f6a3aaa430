#include "runsearch/finder/runindex.h"

#include <algorithm>
#include <array>
#include <unordered_set>

#include <fmt/format.h>

#include "platform/base/fold.h"
#include "platform/base/text.h"

namespace runsearch {

namespace {

constexpr auto RunsSql =
    "SELECT RUN.RUN, RUN.DESCRIPTION, RUN.SCHOOL, SCHOOL.SCHOOLNAME FROM RUN LEFT JOIN SCHOOL ON "
    "RUN.SCHOOL = SCHOOL.SCHOOL ORDER BY RUN.RUN";
constexpr auto StopsSql =
    "SELECT STOP.INT_STOPID, STOP.STOPID, STOP.DESCRIPTION, STOP.ADDR1 FROM STOP";
constexpr auto RunsOfStopSql =
    "SELECT DISTINCT RUN.RUN, RUN.DESCRIPTION FROM STOP_TRIPTYPE INNER JOIN RUN ON "
    "STOP_TRIPTYPE.RUN = RUN.RUN WHERE STOP_TRIPTYPE.INT_STOPID = {} ORDER BY RUN.RUN";

/// More would be too many to choose from, and each costs a question.
constexpr std::size_t MostStops = 20;

std::string textOf(const ado::Field& field) {
    return field.isNull() ? std::string() : std::string(base::trim(field.Value().asText()));
}

std::vector<std::string> wordsOf(std::string_view folded) {
    std::vector<std::string> words;
    for (auto rest = base::trim(folded); !rest.empty(); rest = base::trimLeft(rest)) {
        const auto word = rest.substr(0, rest.find(' '));
        words.emplace_back(word);
        rest.remove_prefix(word.size());
    }
    return words;
}

bool holds(std::string_view text, const std::string& word) {
    return text.find(word) != std::string_view::npos;
}

bool holdsAll(std::string_view text, const std::vector<std::string>& words) {
    return std::ranges::all_of(words, [&](const std::string& word) { return holds(text, word); });
}

bool beginsAll(std::string_view text, const std::vector<std::string>& words) {
    return std::ranges::all_of(words, [&](const std::string& word) {
        return text.starts_with(word) || holds(text, ' ' + word);
    });
}

std::string joined(const std::string& first, const std::string& second) {
    return first.empty() || second.empty() ? first + second : first + ", " + second;
}

}  // namespace

void RunIndex::Texts::add(std::string_view text) {
    all_ += base::folded(text);
    ends_.push_back(all_.size());
}

std::string_view RunIndex::Texts::operator[](std::size_t row) const {
    const std::size_t from = row == 0 ? 0 : ends_[row - 1];
    return std::string_view(all_).substr(from, ends_[row] - from);
}

/// The runs found, by how well they fit, and each once.
class RunIndex::Best {
public:
    enum Rank : std::uint8_t { Id, WordsBegin, Words, School, Stop, Ranks };

    Best(std::string_view typed, std::size_t most)
        : folded_(base::folded(base::trim(typed))), words_(wordsOf(folded_)), most_(most) {}

    [[nodiscard]] const std::string& typed() const { return folded_; }
    [[nodiscard]] const std::vector<std::string>& words() const { return words_; }
    [[nodiscard]] std::size_t missing() const { return most_ - std::min(most_, known_.size()); }

    void add(Rank rank, std::size_t run) {
        if (ranked_.at(rank).size() < most_) {
            ranked_.at(rank).push_back(run);
        }
    }
    void add(FoundRun run) {
        if (missing() > 0 && known_.insert(run.run).second) {
            found_.push_back(std::move(run));
        }
    }
    [[nodiscard]] const std::vector<std::size_t>& of(Rank rank) const { return ranked_.at(rank); }
    [[nodiscard]] std::vector<FoundRun> taken() { return std::move(found_); }

private:
    std::string folded_;
    std::vector<std::string> words_;
    std::size_t most_;
    std::array<std::vector<std::size_t>, Ranks> ranked_;
    std::unordered_set<std::string> known_;
    std::vector<FoundRun> found_;
};

ado::Recordset& RunIndex::rows() {
    if (!reading_) {
        reading_ = std::make_unique<ado::Recordset>();
        reading_->Open(part_ == Part::Runs ? RunsSql : StopsSql, routing_);
    }
    return *reading_;
}

void RunIndex::readOn(std::size_t count) {
    for (; count > 0 && !isWhole(); --count) {
        if (rows().Eof()) {
            reading_.reset();
            part_ = part_ == Part::Runs ? Part::Stops : Part::Nothing;
            continue;
        }
        part_ == Part::Runs ? addRun() : addStop();
        rows().MoveNext();
    }
}

void RunIndex::addRun() {
    auto& row = *reading_;
    const std::string school = textOf(row.Fields("SCHOOL"));
    const std::string name = textOf(row.Fields("SCHOOLNAME"));
    runs_.push_back({textOf(row.Fields("RUN")), textOf(row.Fields("DESCRIPTION")),
                     name.empty() ? school : name});
    idTexts_.add(runs_.back().id);
    runTexts_.add(runs_.back().id + ' ' + runs_.back().description);
    schoolTexts_.add(' ' + school + ' ' + name);
}

void RunIndex::addStop() {
    auto& row = *reading_;
    const std::string place =
        joined(textOf(row.Fields("DESCRIPTION")), textOf(row.Fields("ADDR1")));
    const std::string name = joined(textOf(row.Fields("STOPID")), place);
    stopTexts_.add(name);
    stops_.push_back({row.Fields("INT_STOPID").Value().asInteger(), name});
}

void RunIndex::findRuns(Best& best) const {
    const auto& words = best.words();
    for (std::size_t run = 0; run < runs_.size(); ++run) {
        const auto text = runTexts_[run];
        if (idTexts_[run].starts_with(best.typed())) {
            best.add(Best::Id, run);
        } else if (holdsAll(text, words)) {
            best.add(beginsAll(text, words) ? Best::WordsBegin : Best::Words, run);
        } else if (std::ranges::all_of(words, [&](const std::string& word) {
                       return holds(text, word) || holds(schoolTexts_[run], word);
                   })) {
            best.add(Best::School, run);
        }
    }
    for (const auto rank : {Best::Id, Best::WordsBegin, Best::Words, Best::School}) {
        for (const std::size_t run : best.of(rank)) {
            const auto& [id, description, school] = runs_[run];
            best.add({id, description, rank == Best::School ? school : std::string()});
        }
    }
}

void RunIndex::findStops(Best& best) const {
    std::size_t asked = 0;
    for (std::size_t stop = 0; stop < stops_.size() && best.missing() > 0 && asked < MostStops;
         ++stop) {
        if (holdsAll(stopTexts_[stop], best.words())) {
            addRunsOf(stops_[stop], best);
            ++asked;
        }
    }
}

void RunIndex::addRunsOf(const Stop& stop, Best& best) const {
    ado::Recordset runs(fmt::format(RunsOfStopSql, stop.id), routing_);
    for (; !runs.Eof() && best.missing() > 0; runs.MoveNext()) {
        best.add(
            {textOf(runs.Fields("RUN")), textOf(runs.Fields("DESCRIPTION")), "stop " + stop.name});
    }
}

std::vector<FoundRun> RunIndex::find(std::string_view typed, std::size_t most) const {
    Best best(typed, most);
    if (!best.words().empty()) {
        findRuns(best);
        findStops(best);
    }
    return best.taken();
}

}  // namespace runsearch
