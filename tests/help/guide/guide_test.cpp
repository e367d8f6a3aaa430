#include "help/guide/guide.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTextDocument>
#include <algorithm>
#include <array>
#include <map>
#include <set>

#include <gmock/gmock.h>

#include "help/guide/fieldtexts.h"
#include "help/guide/formplaces.h"
#include "help/guide/guidesearch.h"

namespace help {

namespace {

using testing::ElementsAre;

const QString Root = VIREO_SOURCE_DIR;

const Guide& docs() {
    static const Guide guide(Root + "/docs");
    return guide;
}

QString textOf(const QString& path) {
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

/// A form's control or page by its name, in its .ui file or beside it.
bool isNamedIn(const QString& folder, const QString& part) {
    QDirIterator files(folder, {"*.ui", "*.cpp"}, QDir::Files);
    while (files.hasNext()) {
        if (textOf(files.next()).contains('"' + part + '"')) {
            return true;
        }
    }
    return false;
}

TEST(TheGuide, LeadsNobodyAstray) {
    std::set<QString> shown;
    for (const Page& page : docs().pages()) {
        QTextDocument document;
        readPage(document, docs().markdown(page.name));
        for (const Link& link : linksOf(document)) {
            const auto target = docs().resolve(link.target, page.name);
            const auto* place = std::get_if<Place>(&target);
            const QString anchor = QUrl(link.target).fragment();
            EXPECT_TRUE(place != nullptr ? place->anchor == anchor
                                         : !std::get<QUrl>(target).isEmpty())
                << page.name.toStdString() << ": " << link.target.toStdString();
        }
        for (const QString& picture : picturesOf(document)) {
            EXPECT_TRUE(QFile::exists(docs().folder() + '/' + picture)) << picture.toStdString();
            shown.insert(picture);
        }
    }
    for (const QString& file : QDir(docs().folder() + "/pictures").entryList({"*.png"})) {
        EXPECT_TRUE(shown.contains("pictures/" + file))
            << file.toStdString() << " is shown nowhere";
    }
    EXPECT_GT(shown.size(), 20U);
}

TEST(TheGuide, TellsOfEveryForm) {
    static const QRegularExpression dialog("<widget class=\"QDialog\" name=\"(\\w+)\"");
    QDirIterator files(Root + "/src", {"*.ui"}, QDir::Files, QDirIterator::Subdirectories);
    std::set<std::string> forms;
    while (files.hasNext()) {
        const QString file = files.next();
        const auto name = dialog.match(textOf(file)).captured(1).toStdString();
        const auto isOfForm = [&](const FormPlace& one) { return one.form == name; };
        EXPECT_TRUE(name.empty() || std::ranges::any_of(formPlaces(), isOfForm))
            << name << " has no page of the guide";
        for (const FormPlace& place : formPlaces()) {
            const std::string part(place.part);
            EXPECT_TRUE(place.form != name || part.empty() ||
                        isNamedIn(QFileInfo(file).path(), QString::fromStdString(part)))
                << name << " has no " << part;
        }
        forms.insert(name);
    }
    for (const FormPlace& place : formPlaces()) {
        EXPECT_TRUE(forms.contains(std::string(place.form))) << place.form << " is no form";
        const std::array part{std::string(place.part)};
        EXPECT_TRUE(docs().has(placeOf(place.form, part))) << place.page << '#' << place.anchor;
    }
    EXPECT_EQ(placeOf("frmTarn", std::array{std::string("RunId"), std::string("RunPage")}).anchor,
              "run-and-times");
    EXPECT_EQ(placeOf("Nobody").page, Guide::Contents);
}

TEST(TheGuide, SaysOfFieldsThatAreThereWhatTheirTipsDoNot) {
    QDirIterator files(Root + "/src", {"*.ui"}, QDir::Files, QDirIterator::Subdirectories);
    std::map<std::string, QString> source;
    while (files.hasNext()) {
        const QFileInfo file(files.next());
        source[file.completeBaseName().toStdString()] = textOf(file.filePath());
    }
    for (const FieldText& one : fieldTexts()) {
        const QString& form = source[std::string(one.form)];
        const auto name = QString::fromStdString('"' + std::string(one.field) + '"');
        EXPECT_TRUE(form.contains("name=" + name)) << one.form << '.' << one.field;
        EXPECT_FALSE(form.contains(QString::fromStdString(std::string(one.text)))) << one.text;
        EXPECT_TRUE(one.text.ends_with('.')) << one.text;
    }
}

TEST(TheGuide, FindsWhatAPlannerLooksFor) {
    const auto best = [](const QString& words) {
        const auto hits = searchGuide(docs(), words).hits;
        return hits.empty() ? "" : hits.front().place.page.toStdString();
    };
    EXPECT_EQ(best("bell times"), "bell-times");
    EXPECT_EQ(best("BELL time"), "bell-times");
    EXPECT_EQ(best("dead-head"), "dead-head");
    EXPECT_EQ(best("restoring"), "backup");
    EXPECT_EQ(best("merge two runs"), "merging-runs");
    EXPECT_EQ(best("\"back-to-garage gap\""), "dead-head");
    EXPECT_EQ(best("excel"), "reports");
    EXPECT_EQ(best("zzz bell"), "bell-times");
    EXPECT_FALSE(searchGuide(docs(), "zzz bell").holdAll);
    EXPECT_EQ(best("zzz"), "");
    EXPECT_EQ(best("  "), "");
    for (const Hit& hit : searchGuide(docs(), "stop ti").hits) {
        EXPECT_TRUE(docs().has(hit.place));
        for (const auto& [at, length] : hit.marks) {
            EXPECT_TRUE(hit.snippet.mid(at, length).startsWith("stop", Qt::CaseInsensitive) ||
                        hit.snippet.mid(at, length).compare("ti", Qt::CaseInsensitive) == 0);
        }
    }
}

/// A guide of two pages, made for one question.
class SmallGuide : public testing::Test {
protected:
    void write(const char* name, const char* text) const {
        QFile file(folder_.filePath(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    QTemporaryDir folder_;
};

TEST_F(SmallGuide, HasAnchorsAsCodeHostsMakeThemAndContentsInTheirOrder) {
    write("README.md", "# Start\n\n## Late\n- [B](b.md): b\n\n## Early\n- [gone](gone.md)\n");
    write("b.md",
          "# Bee & co\n\n## Error.txt and `trace.log`\none<br>two\n\n## Again\n\n## Again\n");
    write("a.md", "no heading");
    const Guide guide(folder_.path());
    ASSERT_EQ(guide.chapters().size(), 2U);
    EXPECT_EQ(guide.chapters()[0].title, "Late");
    EXPECT_THAT(guide.chapters()[1].pages, ElementsAre("a"));
    std::vector<QString> anchors;
    for (const Section& section : guide.page("b")->sections) {
        anchors.push_back(section.anchor);
    }
    EXPECT_THAT(anchors, ElementsAre("bee--co", "errortxt-and-tracelog", "again", "again-1"));
    EXPECT_EQ(guide.page("b")->sections[1].text, "one two");
    EXPECT_EQ(guide.page("a")->title(), "a");
    EXPECT_EQ(std::get<Place>(guide.resolve("#again-1", "b")), (Place{"b", "again-1"}));
    EXPECT_EQ(std::get<Place>(guide.resolve("b.md#nowhere", "a")), (Place{"b", {}}));
    EXPECT_TRUE(std::get<QUrl>(guide.resolve("../x.md", "a")).isEmpty());
    EXPECT_TRUE(Guide(folder_.filePath("none")).isEmpty());
}

}  // namespace

}  // namespace help
