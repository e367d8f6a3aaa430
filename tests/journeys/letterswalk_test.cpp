#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <map>
#include <set>

#include "walk.h"

namespace {

QChar letterOf(const QString& caption) {
    const auto mark = QString(caption).replace("&&", "  ").indexOf('&');
    return mark < 0 ? QChar() : caption[mark + 1].toUpper();
}

/// The captions that Alt and a letter could lead to, page by page.
class LettersWalk : public walk::Walk {
protected:
    using Pages = std::set<int>;

    static bool isMeant(const QWidget& part, const forms::Form& form) {
        const auto* label = qobject_cast<const QLabel*>(&part);
        const auto* button = qobject_cast<const QAbstractButton*>(&part);
        const bool leads = (label != nullptr && label->buddy() != nullptr) ||
                           (button != nullptr && button->focusPolicy() != Qt::NoFocus);
        return leads && part.isVisibleTo(&form) && !part.objectName().startsWith("qt_") &&
               !captionOf(part).isEmpty();
    }
    static QString captionOf(const QWidget& part) { return part.property("text").toString(); }
    /// Of a field, all its labels; of a button, itself.
    static const QWidget* targetOf(const QWidget& part) {
        const auto* label = qobject_cast<const QLabel*>(&part);
        return label != nullptr ? label->buddy() : &part;
    }

    void look(const forms::Form& form, int page) {
        for (const QWidget* part : form.findChildren<QWidget*>()) {
            if (!isMeant(*part, form)) {
                continue;
            }
            const QChar letter = letterOf(captionOf(*part));
            if (!letter.isNull()) {
                const auto* other = std::exchange(taken[{page, letter}], targetOf(*part));
                EXPECT_TRUE(other == nullptr || other == targetOf(*part))
                    << form.objectName().toStdString() << " page " << page << ": Alt+"
                    << QString(letter).toStdString() << " is " << captionOf(*part).toStdString()
                    << " and " << other->objectName().toStdString();
                lettered.insert(targetOf(*part));
            }
            seenOn[part].insert(page);
        }
    }
    void expectLettersWhereThereAreAny(const forms::Form& form) {
        for (const auto& [part, pages] : seenOn) {
            const bool has = lettered.contains(targetOf(*part));
            for (const QChar letter : has ? QString() : captionOf(*part)) {
                const bool isFree = letter.isLetter() && std::ranges::none_of(pages, [&](int page) {
                                        return taken.contains({page, letter.toUpper()});
                                    });
                EXPECT_FALSE(isFree)
                    << form.objectName().toStdString() << "." << part->objectName().toStdString()
                    << " could have " << QString(letter).toStdString();
            }
        }
    }
    void startAnew() {
        taken.clear();
        lettered.clear();
        seenOn.clear();
    }

    std::map<std::pair<int, QChar>, const QWidget*> taken;
    std::set<const QWidget*> lettered;
    std::map<const QWidget*, Pages> seenOn;
};

TEST_F(LettersWalk, NoTwoOfAPageShareALetterAndNoneLacksOneThatIsFree) {
    for (const auto& station : walk::Stations) {
        const forms::Form& form = open(station);
        startAnew();
        onEachPage(form, [&](int page) { look(form, page); });
        expectLettersWhereThereAreAny(form);
        closeOthers(stationOf("frmTarn"));
    }
}

}  // namespace
