#include "help/about/programfacts.h"

#include <QApplication>
#include <QLocale>
#include <QScreen>
#include <QSysInfo>

#include "data/lookups/mdlGetItems.h"
#include "platform/controls/qtext.h"
#include "platform/files/installation.h"
#include "platform/store/open/open.h"
#include "startup/base/applicationinfo.h"
#include "startup/base/session.h"

namespace help {

namespace {

using controls::toQt;

constexpr double Percent = 100;

/// What is not there in words: a fact is never an empty line.
QString orNone(const std::string& text) { return text.empty() ? QObject::tr("none") : toQt(text); }

void addDistrict(std::vector<Fact>& facts) {
    if (!startup::gcnRouting) {
        facts.push_back({QObject::tr("District"), QObject::tr("none is open")});
        return;
    }
    facts.push_back({QObject::tr("District"), orNone(data::GetDistrictName())});
    facts.push_back(
        {QObject::tr("District's version"), QString::number(startup::gcnRouting->mark().version)});
}

std::vector<Fact> screenFacts() {
    const QScreen& screen = *QGuiApplication::primaryScreen();
    const QFont font = QApplication::font();
    return {{QObject::tr("Screen"), QObject::tr("%1 × %2 at %3 %")
                                        .arg(screen.geometry().width())
                                        .arg(screen.geometry().height())
                                        .arg(screen.devicePixelRatio() * Percent)},
            {QObject::tr("Font"),
             QObject::tr("%1, %2 points").arg(font.family()).arg(font.pointSizeF())},
            {QObject::tr("Language"), QLocale::system().name()},
            {QObject::tr("Desktop"),
             QString("%1 (%2)").arg(qEnvironmentVariable("XDG_CURRENT_DESKTOP", "unknown"),
                                    QGuiApplication::platformName())}};
}

}  // namespace

std::vector<Fact> programFacts() {
    std::vector<Fact> facts{{QObject::tr("Program"), toQt(startup::applicationInfo().title + " " +
                                                          files::installation().version)},
                            {QObject::tr("User"), orNone(startup::gCommandLine)}};
    addDistrict(facts);
    const std::vector<Fact> rest{
        {QObject::tr("Data folder"), orNone(startup::gDataPath)},
        {QObject::tr("Program folder"), orNone(startup::gProgPath)},
        {QObject::tr("Settings"), orNone(startup::gIniFile)},
        {QObject::tr("Map software"), orNone(startup::gMapSoftware)},
        {QObject::tr("Store"), toQt(store::engineName(startup::gDataPath))},
        {QObject::tr("Toolkit"), QString("Qt ") + qVersion()},
        {QObject::tr("System"), QSysInfo::prettyProductName() + ", " + QSysInfo::kernelType() +
                                    ' ' + QSysInfo::kernelVersion()}};
    facts.insert(facts.end(), rest.begin(), rest.end());
    return facts;
}

QString supportText() {
    QString text;
    auto facts = programFacts();
    const auto screen = screenFacts();
    facts.insert(facts.end(), screen.begin(), screen.end());
    for (const Fact& fact : facts) {
        text += fact.name + ": " + fact.value + '\n';
    }
    return text;
}

}  // namespace help
