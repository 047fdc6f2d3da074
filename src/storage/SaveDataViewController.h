#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "storage/MeasureData.h"
#include "storage/MeasurementColumns.h"
#include "storage/RecordData.h"
#include "storage/ServiceDao.h"
#include "ui/FramedScreen.h"

namespace kestrix::storage {

// The form in which the measurements that are not saved yet become a test record. It shows each of them,
// those of earlier sessions apart: only these can be left out. It is left by saving, and only so: a save that
// fails writes nothing, says why, and lets the user try again.
class SaveDataViewController final : public kestrix::ui::FramedScreen {
    Q_OBJECT

  public:
    using FramedScreen::FramedScreen;

    void viewDidLoad() override;
    // Shows these as all that are not saved yet, oldest first.
    void setMeasurements(std::vector<MeasureData> measurements);
    // Makes the form the field's delegate.
    void setKeyWord(ui::TextField& field);
    // The Return key: ends editing, and the keyboard goes on to the next field, from the last one to Save.
    // Answers true.
    bool textFieldShouldReturn(ui::TextField& field);
    std::string getTimeNow() const;
    // Files what is not left out under a new test record, and closes the form.
    void pressSaveBack();

    // The user's choice of a row: one of an earlier session is left out, or taken in again.
    void chooseRow(int row);
    // Leaves all of earlier sessions out; when none of them is taken in, takes all in.
    void pressEarlier();

    static bool isOfEarlierSession(const MeasureData& measure);
    bool isLeftOut(const MeasureData& measure) const { return leftOut_.contains(measure.dataId); }

    std::unique_ptr<ServiceDao> dao;
    RecordData red;
    std::vector<MeasureData> measureArray;  // all that are not saved yet, oldest first
    std::int32_t number = 0;                // of those that are not left out
    std::string startTimes;
    std::string _projectName, _company, _address, _operator, _serialNumber;

    ui::Label lblProjectName{*this, "lblProjectName"};
    ui::Label lblCompany{*this, "lblCompany"};
    ui::Label lblAddress{*this, "lblAddress"};
    ui::Label lblOperator{*this, "lblOperator"};
    ui::Label lblSerialNumber{*this, "lblSerialNumber"};
    ui::Label lblSample{*this, "lblSample"};
    ui::Label lblStartTime{*this, "lblStartTime"};
    ui::TextField projectName{*this, "projectName"};
    ui::TextField company{*this, "company"};
    ui::TextField address{*this, "address"};
    ui::TextField operators{*this, "operators"};
    ui::TextField serialNumber{*this, "serialNumber"};
    ui::Label sample{*this, "sample"};
    ui::Label startTime{*this, "startTime"};
    ui::Button btnSave{*this, "btnSave", ui::Button::Event::TouchUpInside};
    ui::Button btnEarlier{*this, "btnEarlier", ui::Button::Event::TouchUpInside};
    ui::ListModel rows{measurementColumns()};
    ui::Table filed{*this, "filed", rows};

  private:
    std::array<ui::TextField*, 5> fields() {
        return {&projectName, &company, &address, &operators, &serialNumber};
    }
    void buildCaptions();
    void readMeasurements();
    void showWhatIsFiled();
    ui::TableRow rowOf(const MeasureData& measure) const;
    QString groupOf(const MeasureData& measure) const;
    std::vector<MeasureData> taken() const;
    bool takesAnyEarlier() const;
    void tellFailure(const std::string& reason);

    std::string readProblem_;                   // why measureArray may not be all; empty: it is
    std::unordered_set<std::int64_t> leftOut_;  // identities
    bool hasEarlier_ = false;
    bool saved_ = false;
};

}  // namespace kestrix::storage
