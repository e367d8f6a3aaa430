#pragma once

#include "support/fakes.h"
#include "support/temporaryfolder.h"

namespace support {

/// The session's globals for one test: fresh at the start, closed and emptied at the end, with
/// every port replaced by one that records. The trace file goes to a folder of its own.
class TestSession {
public:
    TestSession();
    ~TestSession();
    TestSession(const TestSession&) = delete;
    TestSession& operator=(const TestSession&) = delete;

    /// Reads the configuration of that folder as start-up does, creates the error handler and opens
    /// the databases.
    void start(const std::string& configFolder) const;

    TemporaryFolder programFolder;
    FakeBoxes boxes;
    FakeClock clock;
    FakeForms forms;
    FakeProcesses processes;
};

}  // namespace support
