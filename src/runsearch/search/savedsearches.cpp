#include "runsearch/search/savedsearches.h"

#include <QJsonDocument>
#include <QUrl>

#include "platform/controls/layoutmemory.h"
#include "platform/controls/qtext.h"

namespace runsearch {

using controls::LayoutMemory;
using controls::toQt;

SavedSearches::SavedSearches(const std::string& user, const std::string& district)
    : key_("searches/" + QString::fromLatin1(QUrl::toPercentEncoding(toQt(user).toUpper() + '@' +
                                                                     toQt(district)))) {}

QJsonObject SavedSearches::all() const {
    return QJsonDocument::fromJson(LayoutMemory::instance().recallFresh(key_).toString().toUtf8())
        .object();
}

void SavedSearches::keep(const QJsonObject& all) {
    LayoutMemory::instance().remember(
        key_, QString::fromUtf8(QJsonDocument(all).toJson(QJsonDocument::Compact)));
}

QStringList SavedSearches::names() const {
    QStringList names = all().keys();
    names.sort(Qt::CaseInsensitive);
    return names;
}

QJsonObject SavedSearches::criteria(const QString& name) const { return all()[name].toObject(); }

void SavedSearches::save(const QString& name, const QJsonObject& criteria) {
    QJsonObject searches = all();
    searches[name] = criteria;
    keep(searches);
}

void SavedSearches::rename(const QString& from, const QString& to) {
    QJsonObject searches = all();
    searches[to] = searches.take(from);
    keep(searches);
}

void SavedSearches::remove(const QString& name) {
    QJsonObject searches = all();
    searches.remove(name);
    keep(searches);
}

}  // namespace runsearch
