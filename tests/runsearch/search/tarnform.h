#pragma once

#include <QTabWidget>

#include "platform/controls/timebox.h"
#include "runsearch/search/frmTarn.h"
#include "startup/base/session.h"
#include "support/formtest.h"

namespace runsearch {

/// The main form on the small district.
class TarnForm : public support::FormTest<> {
protected:
    struct Form : frmTarn {
        using frmTarn::Form_Activate;
        using frmTarn::Form_QueryUnload;
    };
    Form& form() override { return loaded<Form>(); }

    /// Clicks Find Now; the ids listed then, in ascending order.
    std::vector<std::string> found() {
        click("cmdSearch");
        auto ids = column("RunList");
        std::sort(ids.begin(), ids.end());
        return ids;
    }
    std::string row(const std::string& id) {
        return Controls::row("RunList", rowOf("RunList", id));
    }
};

}  // namespace runsearch
