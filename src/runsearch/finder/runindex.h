#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ado/connection.h"
#include "platform/ado/recordset.h"

namespace runsearch {

/// A run that fits what was typed.
struct FoundRun {
    std::string run;
    std::string description;
    std::string why;  ///< what fits besides: "Pine School", "stop 12, Oak St at 3rd"; "" for none
};

/// Runs by their id, description, school and stops, in memory: reading goes on in parts, and what
/// is read so far can be asked already. Everything here raises jet::SqlError and store::StoreError.
class RunIndex {
public:
    explicit RunIndex(ado::Connection& routing) : routing_(routing) {}

    /// Reads so many more runs or stops.
    void readOn(std::size_t rows);
    [[nodiscard]] bool isWhole() const { return part_ == Part::Nothing; }

    /// The runs that fit best, at most so many: those whose id begins with what was typed, then
    /// those that hold all its words, without regard to case and order, in id and description, with
    /// words that begin so first, then in these and the school, then those that stop at a stop that
    /// holds them.
    [[nodiscard]] std::vector<FoundRun> find(std::string_view typed, std::size_t most) const;

private:
    enum class Part : std::uint8_t { Runs, Stops, Nothing };

    /// Texts that lie one after the other, folded: fast to go through.
    class Texts {
    public:
        void add(std::string_view text);
        [[nodiscard]] std::string_view operator[](std::size_t row) const;
        [[nodiscard]] std::size_t size() const { return ends_.size(); }

    private:
        std::string all_;
        std::vector<std::size_t> ends_;
    };
    struct Run {
        std::string id;
        std::string description;
        std::string school;
    };
    struct Stop {
        std::int64_t id;
        std::string name;
    };
    class Best;

    [[nodiscard]] ado::Recordset& rows();
    void addRun();
    void addStop();
    void findRuns(Best& best) const;
    void findStops(Best& best) const;
    void addRunsOf(const Stop& stop, Best& best) const;

    ado::Connection& routing_;
    Part part_ = Part::Runs;
    std::unique_ptr<ado::Recordset> reading_;
    std::vector<Run> runs_;
    std::vector<Stop> stops_;
    Texts idTexts_;      ///< of runs: id
    Texts runTexts_;     ///< id and description
    Texts schoolTexts_;  ///< school and its name
    Texts stopTexts_;
};

}  // namespace runsearch
