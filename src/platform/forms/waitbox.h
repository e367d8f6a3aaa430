#pragma once

#include <QDialog>

#include "platform/base/ports.h"

namespace forms {

/// The box of a wait for another program: what is waited for, and Cancel. The forms behind it take
/// no input meanwhile.
class WaitBox : public QDialog, public base::WaitBox {
    Q_OBJECT

public:
    explicit WaitBox(const std::string& text);

    bool goesOn() override;
    void reject() override { cancelled_ = true; }

private:
    bool cancelled_ = false;
};

}  // namespace forms
