#pragma once

#include <QString>
#include <functional>

class QWidget;

namespace forms {

/// What the user is asked for: an existing file, or one to write.
struct FileQuestion {
    QString title;
    QString startAt;         ///< a file or folder; empty is the last one used
    QString filter;          ///< "Closed streets (*.avl);;All files (*)"
    bool isToWrite = false;  ///< the dialog asks before a file is replaced
};

/// Asks over a form; empty where the user cancels. Throws base::EndProgram when the program ended
/// while the dialog was open.
[[nodiscard]] QString chooseFile(QWidget& over, const FileQuestion& question);

/// Asks for a folder that is there, in the same way.
[[nodiscard]] QString chooseFolder(QWidget& over, const QString& title, const QString& startAt);

/// Answers instead of the desktop's dialog, for tests and scripts; an empty one brings it back.
using FileChooser = std::function<QString(const FileQuestion&)>;
void setFileChooser(FileChooser chooser);

}  // namespace forms
