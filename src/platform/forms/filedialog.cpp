#include "platform/forms/filedialog.h"

#include <QFileDialog>
#include <utility>

#include "platform/forms/application.h"

namespace forms {

namespace {

FileChooser& chooserInForce() {
    static FileChooser chooser;
    return chooser;
}

}  // namespace

QString chooseFile(QWidget& over, const FileQuestion& question) {
    if (chooserInForce()) {
        return chooserInForce()(question);
    }
    auto file =
        QFileDialog::getOpenFileName(&over, question.title, question.startAt, question.filter);
    Application::instance().throwIfEnding();
    return file;
}

void setFileChooser(FileChooser chooser) { chooserInForce() = std::move(chooser); }

}  // namespace forms
