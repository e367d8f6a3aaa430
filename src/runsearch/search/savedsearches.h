#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace runsearch {

/// The searches that a planner keeps by name, each as the values of its criteria. Two programs of
/// one planner see each other's.
class SavedSearches {
public:
    SavedSearches(const std::string& user, const std::string& district);

    /// In the order of the alphabet, without regard to case.
    [[nodiscard]] QStringList names() const;
    [[nodiscard]] QJsonObject criteria(const QString& name) const;
    void save(const QString& name, const QJsonObject& criteria);
    void rename(const QString& from, const QString& to);
    void remove(const QString& name);

private:
    [[nodiscard]] QJsonObject all() const;
    void keep(const QJsonObject& all);

    QString key_;
};

}  // namespace runsearch
