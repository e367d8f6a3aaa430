#pragma once

#include <QSettings>
#include <QString>
#include <QVariant>
#include <memory>

namespace controls {

/// Where windows and lists keep what the user arranged: sizes, places, column widths. It lasts for
/// the session, and beyond it once a file is named.
class LayoutMemory {
public:
    static LayoutMemory& instance();

    /// From now on reads and writes this file; a file that cannot be written is ignored.
    void useFile(const QString& path);
    /// Back to memory alone, forgetting everything (not the file's content).
    void forget();

    [[nodiscard]] QVariant recall(const QString& key) const;
    /// What another program may have remembered meanwhile, too.
    [[nodiscard]] QVariant recallFresh(const QString& key) const;
    void remember(const QString& key, const QVariant& value);

private:
    std::unique_ptr<QSettings> file_;
    QVariantHash session_;
};

}  // namespace controls
