#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QVBoxLayout>

#include "platform/base/ports.h"
#include "platform/controls/grid.h"
#include "platform/controls/multicolumncombo.h"
#include "platform/controls/multicolumnlist.h"
#include "platform/controls/timebox.h"
#include "platform/forms/filedialog.h"
#include "platform/forms/form.h"
#include "platform/forms/formregistry.h"
#include "platform/forms/timer.h"
#include "platform/process/process.h"

/// A small form with one control of each kind that scripts know.
class DemoForm : public forms::Form {
public:
    DemoForm() : Form("frmDemo") {
        setWindowTitle("Demo");
        auto* layout = new QVBoxLayout(this);
        auto* tabs = add<QTabWidget>("Tabs", layout);
        auto* page = new QWidget;
        tabs->addTab(page, "&Criteria");
        auto* otherPage = new QWidget;
        tabs->addTab(otherPage, "&More");
        auto* first = new QVBoxLayout(page);
        auto* second = new QVBoxLayout(otherPage);
        addControls(first, second);
        auto* bar = new QMenuBar(this);
        layout->setMenuBar(bar);
        auto* menu = bar->addMenu("&Help");
        menu->addAction("&About\tF2", this, [this] {
            QDialog(this).exec();
            label_->setText("about");
        });
        menu->addAction("&Off")->setEnabled(false);
        list_ = add<controls::MultiColumnList>("List", layout);
        grid_ = add<controls::Grid>("Grid", layout);
        fill();
        on(list_, &controls::MultiColumnList::rowClicked,
           [this](int row) { label_->setText("row " + QString::number(row)); });
        on(list_, &controls::MultiColumnList::rowActivated,
           [this] { label_->setText("opened " + QString::fromStdString(list_->chosenKey())); });
    }

private:
    template <class Control>
    Control* add(const char* name, QLayout* layout) {
        auto* control = new Control(this);
        control->setObjectName(name);
        layout->addWidget(control);
        return control;
    }

    void addControls(QLayout* first, QLayout* second) {
        name_ = add<QLineEdit>("RunName", first);
        add<controls::TimeBox>("Start", first);
        combo_ = add<controls::MultiColumnCombo>("School", first);
        auto* check = add<QCheckBox>("Check", second);
        add<QRadioButton>("Option", second);
        label_ = add<QLabel>("Status", second);
        QPushButton* remove = button("cmdDelete", second);
        QPushButton* fault = button("cmdFault", second);
        QPushButton* end = button("cmdExit", second);
        QPushButton* later = button("cmdLater", second);
        QPushButton* browse = button("cmdBrowse", second);
        button("cmdOff", second)->setEnabled(false);
        add<QPlainTextEdit>("Comment", second);
        add<QLineEdit>("Hidden", second)->hide();
        on(check, &QCheckBox::toggled, [this](bool now) { label_->setText(now ? "on" : "off"); });
        on(remove, &QPushButton::clicked, [this] { cmdDelete_Click(); });
        on(fault, &QPushButton::clicked, [] { base::raise(base::errors::TypeMismatch); });
        on(end, &QPushButton::clicked, [] {
            base::ports().forms->unloadAll();
            throw base::EndProgram{};
        });
        on(browse, &QPushButton::clicked, [this] {
            label_->setText("file " + forms::chooseFile(*this, {"Open", "", ""}));
            process::host().start("/programs/Logon.Exe", {"TARN"});
        });
        on(later, &QPushButton::clicked, [this] { timer_.startOnce(20); });
        on(&timer_, &forms::Timer::tick, [this] { label_->setText("later"); });
    }

    QPushButton* button(const char* name, QLayout* layout) {
        auto* button = add<QPushButton>(name, layout);
        button->setText("&Go");
        return button;
    }

    void cmdDelete_Click() {
        const base::MsgAnswer answer = base::MsgBox(
            "Are you sure?", "Please Confirm", base::MsgIcon::Question, base::MsgButtons::YesNo);
        label_->setText(answer == base::MsgAnswer::Yes ? "deleted" : "kept");
    }

    void fill() {
        table::TextTable table;
        table.columns = {{"Run", 1500}, {"Miles", 1500, table::CellKind::Number}};
        for (const int miles : {10, 9, 100}) {
            const std::size_t row = table.addRow();
            table.setText(row, 0, "R" + std::to_string(row + 1));
            table.set(row, 1, miles);
        }
        table.colourRed(1, 0, 0);
        list_->setTable(table);
        combo_->setTable(std::move(table));
        grid_->setColumns({{"Bell", "Bell"}, {"New Bell", "NewBell", true}});
        grid_->setRows({{"8:00"}, {"9:00"}});
    }

    QLineEdit* name_ = nullptr;
    controls::MultiColumnCombo* combo_ = nullptr;
    controls::MultiColumnList* list_ = nullptr;
    controls::Grid* grid_ = nullptr;
    QLabel* label_ = nullptr;
    forms::Timer timer_;
};
