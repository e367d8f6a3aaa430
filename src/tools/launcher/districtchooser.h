#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "platform/forms/timer.h"
#include "platform/table/texttable.h"
#include "startup/districts/knowndistricts.h"
#include "startup/forms/trappedform.h"
#include "tools/launcher/backgroundlook.h"

namespace Ui {
class Districts;
}

namespace tools::launcher {

/// The user's districts: opens the chosen one with the logon program and ends, brings an older one
/// up first, and says of each that cannot be opened why not. Looking at them holds nothing up.
class DistrictChooser : public startup::TrappedForm {
    Q_OBJECT

public:
    DistrictChooser();
    ~DistrictChooser() override;

    /// Opens the district in that folder as soon as it was looked at. The form itself is shown only
    /// where that takes long or the district cannot be opened as it is.
    void openWithoutAsking(const std::string& folder);

protected:
    void Form_Load() override;
    void Form_Activate() override;

private:
    void fill();
    void showLook(table::TextTable& table, std::size_t row, const std::string& folder);
    void lookAt(const std::string& folder);
    void takeLooks();
    void showChosen();
    void Open_Click();
    void NewDistrict_Click();
    void AddFolder_Click();
    void Remove_Click();

    [[nodiscard]] std::string chosenFolder() const;
    void choose(const std::string& folder);
    void openWhenLooked(const std::string& folder);
    void openOrTell(const std::string& folder);
    void openReady(const std::string& folder, const std::string& name);
    void bringUp(const std::string& folder, const std::string& says);
    void adopt(const std::string& folder, const std::string& says);
    /// In the place of the form that made the district.
    void showInFront();

    std::unique_ptr<Ui::Districts> ui_;
    startup::KnownDistricts known_;
    std::vector<startup::KnownDistrict> districts_;
    std::map<std::string, BackgroundLook> looks_;  ///< under way, by folder
    std::map<std::string, DistrictLook> found_;
    std::string toOpen_;  ///< as soon as it was looked at
    forms::Timer looking_;
    forms::Timer showing_;
};

}  // namespace tools::launcher
