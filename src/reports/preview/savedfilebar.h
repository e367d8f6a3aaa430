#pragma once

#include <QFrame>

namespace controls {
class ElidedLabel;
}

namespace reports {

/// Tells which file was made, and offers to open it or to show it in its folder. Hidden until there
/// is one.
class SavedFileBar : public QFrame {
    Q_OBJECT

public:
    explicit SavedFileBar(QWidget* parent = nullptr);

    void offer(const QString& path);
    void clear();
    [[nodiscard]] const QString& path() const { return path_; }

private:
    void openFile();
    /// By the desktop's file manager, which marks the file; else the folder is opened.
    void showInFolder();

    QString path_;
    controls::ElidedLabel* told_;
};

}  // namespace reports
