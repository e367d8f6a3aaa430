#pragma once

#include <QString>
#include <QTimer>
#include <memory>
#include <string>
#include <string_view>

#include "platform/store/base/watch.h"

namespace ado {
class Session;
}

namespace startup {

/// Tells the forms what other programs have written of the session's runs and their stops, within
/// half a second. A form connects what it does with on(); while a procedure is running nothing is
/// told, but kept until it has ended.
class ChangeWatch : public QObject {
    Q_OBJECT

public:
    /// The session's; there is one as long as there is an application.
    static ChangeWatch& instance();

    /// Tells others which run is open in this program, "" none any more, see othersOpen().
    void open(const std::string& run);

signals:
    void changed(const store::Changes& changes);
    /// The run that is open here is open elsewhere, too, or not any more: "ANN on DESK3, …".
    void othersOpen(const QString& who);

protected:
    void connectNotify(const QMetaMethod& signal) override;

private:
    explicit ChangeWatch(QObject* parent);
    void look();
    void lookForOthers(store::Watch& watch);
    [[nodiscard]] store::Watch* watchOnSession();

    QTimer timer_;
    std::weak_ptr<ado::Session> watched_;
    std::unique_ptr<store::Watch> watch_;
    std::string user_;  ///< by which others know this program
    std::string open_;
    QString others_;
    int looks_ = 0;
};

/// Whether a run may be among what was changed.
[[nodiscard]] bool concerns(const store::Changes& changes, std::string_view run);

}  // namespace startup
