#include "help/viewer/pageprinting.h"

#include <QGuiApplication>
#include <QLocale>
#include <QPdfWriter>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QTextDocument>
#include <QWidget>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "help/guide/pagetext.h"
#include "help/viewer/pagedress.h"
#include "platform/base/wait.h"
#include "platform/controls/qtext.h"
#include "platform/forms/filedialog.h"
#include "platform/forms/printerdialog.h"
#include "reports/printing/printservice.h"

namespace help {

namespace {

using controls::fromQt;
using controls::toQt;

constexpr double TypeSize = 10;          // points
constexpr double PaperDots = 96;         // to the inch, as pictures and lengths of a page are meant
constexpr double PageMargin = 2 / 2.54;  // inches, which the toolkit leaves

QPalette ink() {
    QPalette palette(Qt::white);
    palette.setColor(QPalette::Text, Qt::black);
    palette.setColor(QPalette::PlaceholderText, "#5f6771");
    palette.setColor(QPalette::Mid, "#c3c8cf");
    palette.setColor(QPalette::AlternateBase, "#f2f4f7");
    palette.setColor(QPalette::Link, "#1d4f91");
    return palette;
}

/// What the print service answers; nothing where the user gives up waiting for it.
template <class Answer>
std::optional<Answer> ask(std::string waitingFor, std::function<Answer()> question) {
    auto promise = std::make_shared<std::promise<Answer>>();
    auto answer = promise->get_future();
    std::thread([promise, question = std::move(question)] {
        promise->set_value(question());
    }).detach();
    base::Wait wait(std::move(waitingFor));
    while (answer.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
        if (!wait.goesOn()) {
            return std::nullopt;
        }
    }
    return answer.get();
}

using Printers = std::optional<std::vector<std::string>>;

/// Where there is no printer, a file is offered in its place.
std::optional<forms::PrintChoice> choose(QWidget& over, const QString& title, bool isA4) {
    const auto printers = ask<Printers>("Asking for the printers.", printing::service().printers)
                              .value_or(Printers());
    if (printers && !printers->empty()) {
        return forms::choosePrinter(over, {.title = title, .isA4 = isA4});
    }
    const QString file =
        forms::chooseFile(over, {.title = QObject::tr("No Printer: Save the Page as a File"),
                                 .startAt = title + ".pdf",
                                 .filter = QObject::tr("PDF (*.pdf)"),
                                 .isToWrite = true});
    return file.isEmpty() ? std::nullopt : std::optional(forms::PrintChoice{{}, file, {}});
}

QString send(const forms::PrintChoice& choice, const QString& title, const QString& markdown,
             const QString& folder, bool isA4) {
    const auto passage = std::make_shared<QTemporaryDir>();
    const QString file = passage->filePath("guide.pdf");
    if (!writePdf(file, title, markdown, folder, isA4)) {
        return QObject::tr("Not printed: there is no room for the page in %1.")
            .arg(passage->path());
    }
    printing::PrintJob job{fromQt(choice.printer), fromQt(title), fromQt(file), {}};
    for (const auto& [name, value] : choice.options) {
        job.options.emplace_back(fromQt(name), fromQt(value));
    }
    const auto refusal =
        ask<std::string>("Handing the page to " + job.printer + ".",
                         [passage, job, print = printing::service().print] { return print(job); });
    if (!refusal) {
        return QObject::tr("You stopped; the printer may print all the same.");
    }
    return refusal->empty() ? QObject::tr("Sent to %1.").arg(choice.printer)
                            : QObject::tr("Not printed: %1").arg(toQt(*refusal));
}

}  // namespace

bool writePdf(const QString& file, const QString& title, const QString& markdown,
              const QString& folder, bool isA4) {
    QSaveFile whole(file);
    if (!whole.open(QIODevice::WriteOnly)) {
        return false;
    }
    QPdfWriter writer(&whole);
    writer.setTitle(title);
    writer.setPageSize(QPageSize(isA4 ? QPageSize::A4 : QPageSize::Letter));
    QFont type = QGuiApplication::font();
    type.setPointSizeF(TypeSize);
    QTextDocument document;
    readPage(document, markdown);
    const double width = writer.pageLayout().fullRect(QPageLayout::Inch).width();
    dress(document, {type, ink(), (width - 2 * PageMargin) * PaperDots, 2, folder, true});
    document.print(&writer);
    return whole.commit();
}

QString printPage(QWidget& over, const QString& title, const QString& markdown,
                  const QString& folder) {
    const bool isA4 = QLocale::system().measurementSystem() == QLocale::MetricSystem;
    const auto choice = choose(over, title, isA4);
    if (!choice) {
        return {};
    }
    if (choice->file.isEmpty()) {
        return send(*choice, title, markdown, folder, isA4);
    }
    return writePdf(choice->file, title, markdown, folder, isA4)
               ? QObject::tr("Saved as %1.").arg(choice->file)
               : QObject::tr("Not saved: %1 cannot be written.").arg(choice->file);
}

}  // namespace help
