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

QString askForFile(QWidget& over, const FileQuestion& question) {
    return QFileDialog::getOpenFileName(&over, question.title, question.startAt, question.filter);
}

QString askForNewFile(QWidget& over, const FileQuestion& question) {
    return QFileDialog::getSaveFileName(&over, question.title, question.startAt, question.filter);
}

}  // namespace

QString chooseFile(QWidget& over, const FileQuestion& question) {
    if (chooserInForce()) {
        return chooserInForce()(question);
    }
    const auto ask = question.isToWrite ? &askForNewFile : &askForFile;
    auto file = ask(over, question);
    Application::instance().throwIfEnding();
    return file;
}

QString chooseFolder(QWidget& over, const QString& title, const QString& startAt) {
    if (chooserInForce()) {
        return chooserInForce()({.title = title, .startAt = startAt, .filter = {}});
    }
    auto folder = QFileDialog::getExistingDirectory(&over, title, startAt);
    Application::instance().throwIfEnding();
    return folder;
}

void setFileChooser(FileChooser chooser) { chooserInForce() = std::move(chooser); }

}  // namespace forms
