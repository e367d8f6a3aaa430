#include "platform/forms/waitbox.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "platform/controls/qtext.h"
#include "platform/forms/application.h"

namespace forms {

WaitBox::WaitBox(const std::string& text) : QDialog(QApplication::activeWindow()) {
    setObjectName("WaitBox");
    setWindowTitle(tr("Please Wait"));
    setWindowModality(Qt::ApplicationModal);
    auto* what = new QLabel(controls::toQt(text));
    auto* bar = new QProgressBar;
    bar->setRange(0, 0);
    bar->setAccessibleName(what->text());
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::rejected, this, &WaitBox::reject);
    auto* rows = new QVBoxLayout(this);
    rows->setSizeConstraint(QLayout::SetFixedSize);
    rows->addWidget(what);
    rows->addWidget(bar);
    rows->addWidget(buttons);
    buttons->button(QDialogButtonBox::Cancel)->setFocus();
    show();
}

bool WaitBox::goesOn() {
    Application::instance().yield();
    return !cancelled_;
}

}  // namespace forms
