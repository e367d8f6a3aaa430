#include "startup/districts/knowndistricts.h"

#include <QCryptographicHash>
#include <QSettings>
#include <algorithm>
#include <filesystem>
#include <functional>
#include <tuple>

#include "platform/base/fold.h"
#include "platform/base/ports.h"
#include "platform/files/files.h"
#include "platform/ini/ini.h"
#include "startup/base/COSInfo.h"
#include "startup/base/session.h"

namespace startup {

namespace {

namespace fs = std::filesystem;

const auto Folder = QStringLiteral("Folder");
const auto Name = QStringLiteral("Name");
const auto LastUser = QStringLiteral("LastUser");
const auto LastUsed = QStringLiteral("LastUsed");
const auto Taken = QStringLiteral("TakenFromList");

QString groupOf(const std::string& folder) {
    constexpr int Letters = 16;
    const auto hash =
        QCryptographicHash::hash(QByteArray::fromStdString(folder), QCryptographicHash::Sha1);
    return QStringLiteral("District-") + QString::fromLatin1(hash.toHex().left(Letters));
}

/// A folder's name may be in any encoding.
void setDistrict(QSettings& list, const std::string& folder, std::string_view name) {
    list.setValue(Folder, QByteArray::fromStdString(folder));
    if (!name.empty()) {
        list.setValue(Name, QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size())));
    }
    list.remove(Taken);
}

KnownDistrict districtIn(const QSettings& list) {
    return {.folder = list.value(Folder).toByteArray().toStdString(),
            .name = list.value(Name).toString().toStdString(),
            .lastUser = list.value(LastUser).toString().toStdString(),
            .lastUsed = base::Date::fromIso(list.value(LastUsed).toString().toStdString())};
}

void change(const std::string& file, const std::string& folder,
            const std::function<void(QSettings&)>& what) {
    QSettings list(QString::fromStdString(file), QSettings::IniFormat);
    list.beginGroup(groupOf(folder));
    what(list);
}

std::string dataFolderOf(const std::string& folder) {
    const std::string named = ini::readString("AppPaths", "datapath", "", settingsIn(folder));
    std::error_code error;
    const fs::path real = fs::weakly_canonical(named, error);
    return error ? named : real.string();
}

bool isListed(const std::vector<KnownDistrict>& listed, const std::string& folder) {
    return std::ranges::any_of(listed, [&, data = dataFolderOf(folder)](const auto& known) {
        return known.folder == folder || (!data.empty() && dataFolderOf(known.folder) == data);
    });
}

bool comesFirst(const KnownDistrict& one, const KnownDistrict& other) {
    if (one.lastUsed != other.lastUsed) {
        return one.lastUsed && (!other.lastUsed || *other.lastUsed < *one.lastUsed);
    }
    return std::tuple(base::upperCase(one.shownName()), one.folder) <
           std::tuple(base::upperCase(other.shownName()), other.folder);
}

}  // namespace

std::string KnownDistrict::shownName() const {
    return name.empty() ? fs::path(folder).filename().string() : name;
}

KnownDistricts::KnownDistricts()
    : file_(COSInfo().configurationFolders().front() + "/vireo/districts.ini") {}

std::vector<KnownDistrict> KnownDistricts::listed(bool taken) const {
    QSettings list(QString::fromStdString(file_), QSettings::IniFormat);
    std::vector<KnownDistrict> districts;
    for (const QString& group : list.childGroups()) {
        list.beginGroup(group);
        KnownDistrict district = districtIn(list);
        if (district.folder.starts_with('/') && list.value(Taken).toBool() == taken) {
            districts.push_back(std::move(district));
        }
        list.endGroup();
    }
    return districts;
}

std::vector<KnownDistrict> KnownDistricts::all() const {
    std::vector<KnownDistrict> districts = listed(false);
    const std::vector<KnownDistrict> taken = listed(true);
    for (const std::string& folder : COSInfo().configurationFolders()) {
        const std::string found = fs::path(folder + "/").parent_path().string();
        if (files::exists(settingsIn(found)) && !isListed(districts, found) &&
            std::ranges::find(taken, found, &KnownDistrict::folder) == taken.end()) {
            districts.push_back({.folder = found});
        }
    }
    std::ranges::sort(districts, comesFirst);
    return districts;
}

KnownDistrict KnownDistricts::find(const std::string& folder) const {
    const auto districts = listed(false);
    const auto found = std::ranges::find(districts, folder, &KnownDistrict::folder);
    return found == districts.end() ? KnownDistrict{.folder = folder} : *found;
}

void KnownDistricts::add(const std::string& folder, std::string_view name) const {
    change(file_, folder, [&](QSettings& list) { setDistrict(list, folder, name); });
}

void KnownDistricts::use(const std::string& folder, std::string_view name,
                         std::string_view user) const {
    change(file_, folder, [&](QSettings& list) {
        setDistrict(list, folder, name);
        list.setValue(LastUser,
                      QString::fromUtf8(user.data(), static_cast<qsizetype>(user.size())));
        list.setValue(LastUsed, QString::fromStdString(base::Now().iso()));
    });
}

void KnownDistricts::remove(const std::string& folder) const {
    change(file_, folder, [&](QSettings& list) {
        list.setValue(Folder, QByteArray::fromStdString(folder));
        list.setValue(Taken, true);
    });
}

std::string settingsIn(const std::string& folder) { return folder + "/vireo/route.ini"; }

std::string districtInForce() { return fs::path(gIniFile).parent_path().parent_path().string(); }

}  // namespace startup
