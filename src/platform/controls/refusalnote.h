#pragma once

#include <QPointer>

#include "platform/controls/notebox.h"

namespace controls {

/// The sentence under a refused field, over what stands there: why it was refused and what is
/// allowed. It is seen until the focus goes on to another field, and again whenever it comes back;
/// screen readers have it as the field's description. It never takes a click.
class RefusalNote : public NoteBox {
    Q_OBJECT

public:
    RefusalNote(QWidget& field, const QString& sentence);
    ~RefusalNote() override;

    /// The note of a field; null without one.
    [[nodiscard]] static RefusalNote* of(const QWidget& field);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void place();

    QPointer<QWidget> field_;
    QString describedBefore_;
    bool wanted_ = true;  ///< the focus has not gone on
};

}  // namespace controls
