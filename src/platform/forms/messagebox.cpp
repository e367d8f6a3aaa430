#include "platform/forms/messagebox.h"

#include <QClipboard>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>
#include <array>

#include "platform/base/lookup.h"
#include "platform/controls/qtext.h"
#include "platform/forms/screenfit.h"

namespace forms {

using base::MsgAnswer;
using base::MsgButtons;
using base::MsgIcon;
using base::MsgRequest;
using controls::toQt;

namespace {

constexpr int NarrowestLine = 40;  // characters
constexpr int WidestLine = 90;
constexpr int LongestHeading = 160;
constexpr int DetailLines = 9;
constexpr int RuleWidth = 3;

using Standard = QDialogButtonBox::StandardButton;
constexpr std::pair<MsgAnswer, Standard> Answers[] = {{MsgAnswer::Ok, QDialogButtonBox::Ok},
                                                      {MsgAnswer::Cancel, QDialogButtonBox::Cancel},
                                                      {MsgAnswer::Yes, QDialogButtonBox::Yes},
                                                      {MsgAnswer::No, QDialogButtonBox::No},
                                                      {MsgAnswer::Retry, QDialogButtonBox::Retry}};

Standard buttonOf(MsgAnswer answer) {
    return std::ranges::find(Answers, answer, [](auto pair) { return pair.first; })->second;
}

MsgAnswer answerOf(Standard button) {
    return std::ranges::find(Answers, button, [](auto pair) { return pair.second; })->first;
}

QDialogButtonBox::StandardButtons shownButtons(MsgButtons buttons) {
    using Box = QDialogButtonBox;
    static constexpr std::pair<MsgButtons, Box::StandardButtons> Shown[] = {
        {MsgButtons::OkCancel, Box::Ok | Box::Cancel},
        {MsgButtons::YesNo, Box::Yes | Box::No},
        {MsgButtons::YesNoCancel, Box::Yes | Box::No | Box::Cancel},
        {MsgButtons::RetryCancel, Box::Retry | Box::Cancel}};
    return base::lookUp(Shown, buttons, Box::Ok);
}

MsgAnswer answerThatChangesNothing(MsgButtons buttons) {
    return buttons == MsgButtons::Ok      ? MsgAnswer::Ok
           : buttons == MsgButtons::YesNo ? MsgAnswer::No
                                          : MsgAnswer::Cancel;
}

QIcon iconOf(MsgIcon icon, const QStyle& style) {
    static constexpr std::pair<MsgIcon, QStyle::StandardPixmap> Icons[] = {
        {MsgIcon::Critical, QStyle::SP_MessageBoxCritical},
        {MsgIcon::Question, QStyle::SP_MessageBoxQuestion},
        {MsgIcon::Exclamation, QStyle::SP_MessageBoxWarning},
        {MsgIcon::Information, QStyle::SP_MessageBoxInformation}};
    return icon == MsgIcon::None ? QIcon()
                                 : style.standardIcon(base::lookUp(Icons, icon, Icons[0].second));
}

struct Parts {
    QString heading;
    QString rest;
};

/// A message's first line, or its first sentence where all stands on one line.
Parts partsOf(const QString& text, MsgIcon icon) {
    const auto lineEnd = text.indexOf('\n');
    const auto sentenceEnd = text.indexOf(QStringLiteral(".  "));
    const auto end = lineEnd >= 0 ? lineEnd : sentenceEnd + 1;
    if (icon == MsgIcon::Question || end <= 0 || end > LongestHeading) {
        return {{}, text};
    }
    QString rest = text.mid(end);
    while (!rest.isEmpty() && rest.front().isSpace()) {
        rest.remove(0, 1);
    }
    return {text.left(end), rest};
}

QString shownText(const MsgRequest& request) {
    return toQt(request.plainWords.empty() ? request.text : request.plainWords);
}

QString foldedText(const MsgRequest& request) {
    std::string text = request.plainWords.empty() ? std::string() : request.text;
    if (!text.empty() && !request.details.empty()) {
        text += "\n\n";
    }
    return toQt(text + request.details);
}

QFont bold(QFont font) {
    font.setBold(true);
    return font;
}

int longestLine(const QString& text, const QFont& font) {
    int longest = 0;
    const auto lines = text.split('\n');
    for (const QString& line : lines) {
        longest = std::max(longest, QFontMetrics(font).horizontalAdvance(line));
    }
    return longest;
}

void addLabel(QVBoxLayout& column, const QString& text, bool isBold) {
    if (text.isEmpty()) {
        return;
    }
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    if (isBold) {
        label->setFont(bold(label->font()));
    }
    column.addWidget(label);
}

QWidget* concernsBlock(const QString& concerns) {
    auto* block = new QWidget;
    block->setObjectName("concerns");
    auto* row = new QHBoxLayout(block);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(RuleWidth * 3);
    auto* rule = new QWidget;
    rule->setFixedWidth(RuleWidth);
    rule->setAutoFillBackground(true);
    rule->setBackgroundRole(QPalette::Highlight);
    row->addWidget(rule);
    auto* lines = new QVBoxLayout;
    lines->setSpacing(RuleWidth);
    addLabel(*lines, concerns.section('\n', 0, 0), true);
    addLabel(*lines, concerns.section('\n', 1), false);
    row->addLayout(lines, 1);
    return block;
}

}  // namespace

MessageBox::MessageBox(const MsgRequest& request, QWidget* owner)
    : QDialog(owner),
      request_(request),
      answer_(answerThatChangesNothing(request.buttons)),
      scroll_(new QScrollArea),
      buttons_(new QDialogButtonBox(shownButtons(request.buttons))) {
    setWindowTitle(toQt(request.title));
    setAccessibleDescription(shownText(request));
    auto* layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    const int step = fontMetrics().height();
    layout->setContentsMargins(step, step, step, step);
    layout->setSpacing(step);
    auto* top = new QHBoxLayout;
    top->setSpacing(step);
    layout->addLayout(top);
    if (const QIcon icon = iconOf(request.icon, *style()); !icon.isNull()) {
        auto* sign = new QLabel;
        sign->setPixmap(icon.pixmap(step * 9 / 4));
        top->addWidget(sign, 0, Qt::AlignTop);
    }
    fillScroll(textColumn());
    top->addWidget(scroll_, 1);
    auto* row = new QHBoxLayout;
    layout->addLayout(row);
    QWidget* details = addDetails(*row);
    addButtons(*row);
    if (details != nullptr) {
        layout->addWidget(details);  // so that Tab comes to it last
    }
}

int MessageBox::textWidth() const {
    const QFont strong = bold(font());
    const int natural = std::max({longestLine(shownText(request_), strong),
                                  longestLine(toQt(request_.concerns), strong) + RuleWidth * 4,
                                  QFontMetrics(strong).horizontalAdvance(windowTitle())});
    const int character = fontMetrics().averageCharWidth();
    const int widest =
        std::min(WidestLine * character, roomOnScreen(*this).width() - fontMetrics().height() * 8);
    return std::clamp(natural + 2, std::min(NarrowestLine * character, widest), widest);
}

QWidget* MessageBox::textColumn() {
    auto* column = new QWidget;
    auto* layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(fontMetrics().height() * 3 / 4);
    const Parts parts = partsOf(shownText(request_), request_.icon);
    addLabel(*layout, parts.heading, true);
    addLabel(*layout, parts.rest, false);
    if (!request_.concerns.empty()) {
        layout->addWidget(concernsBlock(toQt(request_.concerns)));
    }
    layout->addStretch();
    return column;
}

void MessageBox::fillScroll(QWidget* column) {
    const int width = textWidth();
    const int line = fontMetrics().height();
    const int folded = foldedText(request_).isEmpty() ? 0 : line * (DetailLines + 4);
    const int room = roomOnScreen(*this).height() - line * 6 - folded;
    const int height = column->layout()->heightForWidth(width);
    scroll_->setFrameShape(QFrame::NoFrame);
    scroll_->setWidgetResizable(true);
    scroll_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll_->setFocusPolicy(Qt::NoFocus);
    scroll_->setWidget(column);
    const int bar = height > room ? style()->pixelMetric(QStyle::PM_ScrollBarExtent) : 0;
    scroll_->setFixedSize(width + bar, std::clamp(height, line * 2, std::max(room, line * 4)));
}

void MessageBox::addButtons(QHBoxLayout& row) {
    row.addStretch();
    row.addWidget(buttons_);
    connect(buttons_, &QDialogButtonBox::clicked, this, [this](QAbstractButton* pressed) {
        answer_ = answerOf(buttons_->standardButton(pressed));
        accept();
    });
    QPushButton* preferred = buttons_->button(buttonOf(base::defaultAnswer(request_)));
    preferred->setDefault(true);
    preferred->setFocus();
}

QWidget* MessageBox::addDetails(QHBoxLayout& row) {
    const QString folded = foldedText(request_);
    if (folded.isEmpty()) {
        return nullptr;
    }
    auto* opener = new QPushButton("Details…");
    opener->setObjectName("Details");
    opener->setAutoDefault(false);
    opener->setCheckable(true);
    row.addWidget(opener);

    auto* pane = new QWidget;
    auto* column = new QVBoxLayout(pane);
    column->setContentsMargins(0, 0, 0, 0);
    auto* text = new QPlainTextEdit(folded);
    text->setReadOnly(true);
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    fixed.setPointSizeF(font().pointSizeF() * 0.92);
    text->setFont(fixed);
    text->setFixedHeight(QFontMetrics(fixed).lineSpacing() * DetailLines);
    text->setTabChangesFocus(true);
    text->setAccessibleName(tr("Details"));
    column->addWidget(text);
    auto* copy = new QPushButton("Copy");
    copy->setObjectName("Copy");
    copy->setAutoDefault(false);
    column->addWidget(copy, 0, Qt::AlignLeft);
    pane->hide();
    connect(copy, &QPushButton::clicked, this,
            [folded] { QGuiApplication::clipboard()->setText(folded); });
    connect(opener, &QPushButton::toggled, this, [this, pane](bool open) {
        pane->setVisible(open);
        this->layout()->activate();
        fitToScreen(*this);
    });
    return pane;
}

void MessageBox::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        QGuiApplication::clipboard()->setText(toQt(request_.plainText()));
    } else if (event->modifiers() == Qt::NoModifier && pressByLetter(event->key())) {
        event->accept();
    } else {
        scroll(event->key());
        QDialog::keyPressEvent(event);
    }
}

bool MessageBox::pressByLetter(int key) {
    const auto buttons = buttons_->buttons();
    const auto found = std::find_if(buttons.begin(), buttons.end(), [key](QAbstractButton* one) {
        const QKeySequence shortcut = one->shortcut();
        return !shortcut.isEmpty() && shortcut[0].key() == key;
    });
    if (found == buttons.end()) {
        return false;
    }
    (*found)->click();
    return true;
}

void MessageBox::scroll(int key) {
    QScrollBar& bar = *scroll_->verticalScrollBar();
    if (key == Qt::Key_PageDown) {
        bar.triggerAction(QAbstractSlider::SliderPageStepAdd);
    } else if (key == Qt::Key_PageUp) {
        bar.triggerAction(QAbstractSlider::SliderPageStepSub);
    } else if (key == Qt::Key_End) {
        bar.triggerAction(QAbstractSlider::SliderToMaximum);
    } else if (key == Qt::Key_Home) {
        bar.triggerAction(QAbstractSlider::SliderToMinimum);
    }
}

}  // namespace forms
