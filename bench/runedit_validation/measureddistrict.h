#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace bench {

/// The run that is measured: 20 stops, 60 passengers, 6 special needs, one finding of each kind
/// that a run to school can have.
inline constexpr const char* Run = "BENCH-20";

/// A district of its own in a temporary folder, opened as the session's: the sample, or an invented
/// one of so many runs, with the measured run added to it. Removed at its end.
class MeasuredDistrict {
public:
    explicit MeasuredDistrict(std::optional<std::int64_t> runs);
    ~MeasuredDistrict();
    MeasuredDistrict(const MeasuredDistrict&) = delete;
    MeasuredDistrict& operator=(const MeasuredDistrict&) = delete;

    [[nodiscard]] std::string routing() const;
    [[nodiscard]] std::string trip() const;
    /// Makes this district the session's.
    void openSession() const;

private:
    void addRun() const;

    std::filesystem::path folder_;
};

}  // namespace bench
