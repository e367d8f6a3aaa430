#pragma once

#include "platform/base/ports.h"

namespace forms {

/// Message boxes on the desktop, over the active window; see MessageBox.
class QtMsgBox : public base::MsgBoxPort {
public:
    /// Throws base::EndProgram when the program ended while the box was open.
    base::MsgAnswer show(const base::MsgRequest& request) override;
};

}  // namespace forms
