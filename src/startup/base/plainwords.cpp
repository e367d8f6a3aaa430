#include "startup/base/plainwords.h"

#include <algorithm>
#include <array>

#include "platform/base/error.h"
#include "platform/store/base/database.h"

namespace startup {

namespace {

using store::Fault;

struct Words {
    int number;
    const char* title;
    const char* headline;
    const char* advice;
};

const std::array KnownErrors{
    Words{store::numberOf(Fault::Missing), "File Not Found",
          "Oops, a file of the district is not there.",
          "Please see that its folder can be reached and that nobody moved or renamed it."},
    Words{store::numberOf(Fault::NotADatabase), "Not a Database",
          "Oops, a file of the district cannot be read.",
          "Please restore it from a backup, or see that the folders of the district are the right "
          "ones."},
    Words{store::numberOf(Fault::OtherKind), "Not Imported Yet",
          "Oops, a file of the district cannot be read.", ""},
    Words{store::numberOf(Fault::Damaged), "File Damaged",
          "Oops, a file of the district is damaged.",
          "Please tell whoever looks after the program before anybody goes on working."},
    Words{store::numberOf(Fault::Locked), "Database in Use",
          "Oops, another program is writing to the database just now.",
          "Please wait a moment and try again."},
    Words{store::numberOf(Fault::Replaced), "File Replaced",
          "Oops, a file of the district is not the one any more that was opened.", ""},
    Words{store::numberOf(Fault::Network), "Not on This Machine",
          "Oops, the district lies where several machines would damage it.", ""},
    Words{store::numberOf(Fault::ReadOnly), "No Right to Write",
          "Oops, a file of the district may only be read.",
          "Please ask whoever looks after the program for the right to write, then try again."},
    Words{store::numberOf(Fault::Full), "Disk Full", "Oops, the disk is full.",
          "Please have room made on the disk, then try again."},
    Words{store::numberOf(Fault::Unreachable), "Server Not Reached",
          "Oops, the district's server cannot be used.",
          "Please see that the network is there, or ask whoever looks after the server."},
    Words{store::numberOf(Fault::Lost), "Connection Lost",
          "Oops, the connection to the district's server was lost.", ""},
    Words{store::numberOf(Fault::GivenUp), "Waiting Given Up",
          "The district's server has not answered yet.",
          "Please try again, or ask whoever looks after the server."},
    Words{base::errors::FileNotFound, "File Not Found",
          "Oops, a file that the program needs is not there.",
          "Please see that the program is installed completely."},
    Words{base::errors::PermissionDenied, "No Right to Write",
          "Oops, the program may not use a file that it needs.",
          "Please ask whoever looks after the program for the right to use it."},
    Words{base::errors::PathFileAccess, "File Cannot Be Used",
          "Oops, the program cannot use a file that it needs.",
          "Please see that its folder can be reached and that there is room on the disk."},
    Words{base::errors::OutOfMemory, "Out of Memory",
          "Oops, this computer has no memory left for this.",
          "Please close other programs, then try again."}};

}  // namespace

PlainWords plainWordsFor(int number, const std::string& description) {
    const auto* known = std::ranges::find(KnownErrors, number, &Words::number);
    if (known == KnownErrors.end()) {
        return {"Unexpected Error",
                "Oops, this could not be done.\n\nThe program met an error that it does not know. "
                " What was saved before is safe.  Please copy the details for whoever looks after "
                "the program."};
    }
    const std::string advice = known->advice;
    return {known->title,
            known->headline + ("\n\n" + description) + (advice.empty() ? "" : "  " + advice)};
}

bool refusedByStore() {
    constexpr Fault Outlived[] = {Fault::Locked,      Fault::Full, Fault::ReadOnly, Fault::Replaced,
                                  Fault::Unreachable, Fault::Lost, Fault::GivenUp};
    try {
        throw;
    } catch (const store::StoreError& error) {
        return std::ranges::find(Outlived, error.fault()) != std::end(Outlived);
    } catch (...) {
        return false;
    }
}

}  // namespace startup
