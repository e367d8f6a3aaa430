#include "startup/forms/changednote.h"

#include <QHBoxLayout>
#include <QPushButton>

#include "platform/controls/notebox.h"

namespace startup {

ChangedNote::ChangedNote(QWidget* parent)
    : QWidget(parent), text_(new controls::NoteBox), button_(new QPushButton(tr("Read Anew"))) {
    setObjectName("ChangedNote");
    text_->setObjectName("ChangedText");
    text_->setWordWrap(true);
    button_->setObjectName("ReadAnew");
    button_->setAutoDefault(false);
    button_->setToolTip(tr("Shows what is stored now.  What you have typed stays."));
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->addWidget(text_, 1);
    row->addWidget(button_);
    connect(button_, &QPushButton::clicked, this, &ChangedNote::readAnew);
    hide();
}

void ChangedNote::standIn(QBoxLayout& column, int place, QWidget* before) {
    column.insertWidget(place, this);
    setTabOrder(before, button_);
}

void ChangedNote::tell(const QString& text) {
    text_->say(controls::Tone::Look, text.toHtmlEscaped(), controls::Sign::Warning);
    show();
}

void ChangedNote::clear() { hide(); }

QString changedBy(const QString& what, const QString& who, const QString& when) {
    const QString name = who.trimmed();
    return name.isEmpty() ? ChangedNote::tr("Another program has changed %1.").arg(what)
                          : ChangedNote::tr("%1 was changed meanwhile, last by %2 on %3.")
                                .arg(what.left(1).toUpper() + what.mid(1), name, when);
}

}  // namespace startup
