#pragma once

#include "platform/base/ports.h"

namespace forms {

/// Message boxes on the desktop: plain text that can be selected, the first button as the default,
/// Escape as the answer that changes nothing (Cancel, else No, else OK).
class QtMsgBox : public base::MsgBoxPort {
public:
    /// Throws base::EndProgram when the program ended while the box was open.
    base::MsgAnswer show(const base::MsgRequest& request) override;
};

}  // namespace forms
