#pragma once

#include <memory>
#include <string>

#include "platform/base/notcopied.h"

/// Conversations with another program of the desktop, which is sent texts to carry out.
namespace dde {

namespace errors {
inline constexpr int NoBus = 281;         ///< the desktop has no message bus, or it is gone
inline constexpr int NobodyThere = 282;   ///< no program answers to that service
inline constexpr int ProgramEnded = 284;  ///< it went away before it answered
inline constexpr int Refused = 285;       ///< it answered that it will not do it
inline constexpr int NoAnswerInTime = 286;
inline constexpr int GivenUp = 287;  ///< the user did not want to wait any longer
}  // namespace errors

/// One conversation, for as long as it lives.
class Conversation : private base::NotCopied {
public:
    virtual ~Conversation() = default;

    /// Sends a text to be carried out and waits until the other side says that it took it; forms
    /// repaint meanwhile, and the user may give up. Raises one of `errors`, each with a text for
    /// the user.
    virtual void Execute(const std::string& command) = 0;
};

/// How conversations are held; replaceable.
class Transport : private base::NotCopied {
public:
    virtual ~Transport() = default;

    /// Begins a conversation with a service ("ArcView") on a topic ("System"). Raises NoBus,
    /// NobodyThere.
    [[nodiscard]] virtual std::unique_ptr<Conversation> open(const std::string& service,
                                                             const std::string& topic) = 0;
    /// Whether a program answers to that service; false, too, where there is no bus. Does not wait
    /// once a conversation was opened: what was last known counts until the answer has come.
    [[nodiscard]] virtual bool isThere(const std::string& service) = 0;
};

/// The transport in force; the desktop's own unless a test has set one.
Transport& transport();

/// Puts another transport in force; null goes back to the desktop's own.
void setTransport(Transport* transport);

}  // namespace dde
