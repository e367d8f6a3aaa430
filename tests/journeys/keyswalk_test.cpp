#include <QAction>
#include <QFile>
#include <QShortcut>
#include <map>
#include <set>

#include <gmock/gmock.h>

#include "help/viewer/guidedesk.h"
#include "walk.h"

namespace {

using Keys = std::set<std::string>;

const std::map<std::string, QString> Headings{
    {"frmTarn", "The main form"},           {"Run", "The run editor"},
    {"Add_Remove_Stops", "Stops on a run"}, {"frmSelStops", "Finding stops"},
    {"frmStopTripType", "One stop"},        {"RunLogInquiry", "The run log"},
    {"ReportSelection", "Reports"},         {"ReportPreview", "Preview of a report"},
    {"frmRunSchdl", "Run schedule"},        {"GuideWindow", "This guide"}};

/// As the toolkit calls a key.
std::string usual(QString key) {
    for (const auto& [written, name] : {std::pair{"Enter", "Return"}, {"PgDn", "PgDown"}}) {
        key.replace(written, name);
    }
    return QKeySequence(key, QKeySequence::PortableText).toString().toStdString();
}

/// The keys that the page of keys has in the tables just below a heading.
Keys told(const QString& heading) {
    QFile page(QString(VIREO_SOURCE_DIR) + "/docs/keys.md");
    EXPECT_TRUE(page.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(page.readAll());
    const auto start = text.indexOf("\n## " + heading + '\n');
    EXPECT_GE(start, 0) << heading.toStdString();
    Keys keys;
    const auto lines = text.mid(start + 4, text.indexOf("\n#", start + 4) - start - 4).split('\n');
    for (const QString& line : lines) {
        for (const QString& key : line.section('|', 1, 1).split(',', Qt::SkipEmptyParts)) {
            keys.insert(usual(key.trimmed()));
        }
    }
    keys.erase("");
    return keys;
}

/// The keys that a form and its controls take, and those that its menus show.
Keys keysOf(const forms::Form& form) {
    Keys keys;
    for (const auto* shortcut : form.findChildren<QShortcut*>()) {
        keys.insert(shortcut->key().toString().toStdString());
    }
    for (const auto* action : form.findChildren<QAction*>()) {
        keys.insert(action->shortcut().toString().toStdString());
        keys.insert(usual(action->text().section('\t', 1)));
    }
    for (const auto* button : form.findChildren<QAbstractButton*>()) {
        keys.erase(button->shortcut().toString().toStdString());  // its letter
    }
    keys.erase("");
    return keys;
}

class KeysWalk : public walk::Walk {
protected:
    static void look(const forms::Form& form) {
        const auto heading = Headings.find(form.name());
        const Keys own = heading == Headings.end() ? Keys() : told(heading->second);
        Keys all = own;
        for (const char* common : {"Everywhere", "In lists and grids", "In fields"}) {
            all.merge(told(common));
        }
        for (const std::string& key : keysOf(form)) {
            EXPECT_TRUE(all.contains(key)) << form.name() << ": " << key << " is told nowhere";
        }
        for (const std::string& key : own) {
            EXPECT_TRUE(keysOf(form).contains(key)) << form.name() << " does not know " << key;
        }
    }
};

TEST_F(KeysWalk, EveryKeyOfEveryFormStandsOnThePageOfKeys) {
    for (const auto& station : walk::Stations) {
        look(open(station));
        closeOthers(stationOf("frmTarn"));
    }
    help::showGuide({});
    look(*opened("GuideWindow"));
}

}  // namespace
