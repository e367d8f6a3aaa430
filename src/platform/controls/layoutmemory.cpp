#include "platform/controls/layoutmemory.h"

namespace controls {

LayoutMemory& LayoutMemory::instance() {
    static LayoutMemory memory;
    return memory;
}

void LayoutMemory::useFile(const QString& path) {
    file_ = std::make_unique<QSettings>(path, QSettings::IniFormat);
}

void LayoutMemory::forget() {
    file_.reset();
    session_.clear();
}

QVariant LayoutMemory::recall(const QString& key) const {
    const auto known = session_.constFind(key);
    if (known != session_.constEnd()) {
        return *known;
    }
    return file_ ? file_->value(key) : QVariant();
}

QVariant LayoutMemory::recallFresh(const QString& key) const {
    if (!file_) {
        return session_.value(key);
    }
    file_->sync();
    return file_->value(key);
}

void LayoutMemory::remember(const QString& key, const QVariant& value) {
    session_.insert(key, value);
    if (file_) {
        file_->setValue(key, value);
    }
}

}  // namespace controls
