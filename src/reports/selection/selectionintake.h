#pragma once

#include <string>

#include "platform/base/notcopied.h"

namespace reports {

/// The runs that reports are made of.
struct RunsForReports {
    std::string question;  ///< its rows are the runs
    std::string words;     ///< "trip type AM; to be resolved on the map"
    int count = 0;
};

/// What a form that offers reports hands to the report selection form, value by value, before it
/// shows it.
class SelectionIntake : private base::NotCopied {
public:
    virtual ~SelectionIntake() = default;

    virtual void caption(const std::string& text) = 0;
    /// Of the suite: "Routing".
    virtual void area(const std::string& name) = 0;
    /// The reports that are offered.
    virtual void reportGroup(const std::string& group) = 0;
    /// How many the printer is asked for.
    virtual void copies(int count) = 0;
    /// A field to sort by; `place` counts from 1.
    virtual void sortField(int place, const std::string& field) = 0;
    /// "ASC" or "DESC".
    virtual void sortDirection(int place, const std::string& direction) = 0;
    virtual void present() = 0;
};

}  // namespace reports
