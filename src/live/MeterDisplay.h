#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "link/BusinessCommunicationDelegate.h"
#include "live/RcdRow.h"
#include "protocol/MeterReading.h"
#include "ui/Screen.h"

namespace kestrix::live {

// The tester's display on the screen: which labels are there, what they show for a record, and the texts that
// describe the latest measurement. Needs neither a link nor a database.
class MeterDisplay : public kestrix::ui::Screen, public link::BusinessCommunicationDelegate {
    Q_OBJECT

  public:
    // How `setUILabelView` styles a label.
    static constexpr std::int32_t kRcdRowStyle = 0;
    static constexpr std::int32_t kTitleStyle = 1;
    static constexpr std::int32_t kHeaderStyle = 2;
    static constexpr std::int32_t kReadingStyle = 3;

    // Groups of labels that are shown and hidden together.
    static constexpr std::int32_t kReadings = 1;
    static constexpr std::int32_t kFirstReadingOnly = 2;  // the second is hidden whatever the flag says
    static constexpr std::int32_t kRcdRows1To4 = 3;
    static constexpr std::int32_t kRcdRows5And6 = 4;
    static constexpr std::int32_t kRcdValues = 5;

    // Process-wide; a disconnect does not change them.
    static std::int32_t
        showMode;  // 0 two readings, 1 one, 2 RCD with four rows, 3 with six; nothing reads it
    static std::int32_t lastSubFuncF2;  // of the last RCD record
    static std::int32_t rcdStep;        // position in the RCD sequence, 0 to 13

    MeterDisplay();

    // Shows the record and keeps its texts. success: not looked at.
    void didReceive3820Data(const protocol::MeterReading& record, bool success) override;

    // Styles 0 to 3; any other leaves background and font as they are.
    void setUILabelView(ui::Label& label, std::int32_t style, const QString& text);
    // Any other group does nothing.
    void setHiddenLable(std::int32_t group, bool hidden);
    // Lights the title of a function code, '1' to '7'; any other lights none.
    void setTitleColor(std::int32_t code);

    std::string getRCDResult(const std::string& value, const std::string& multiplier,
                             const std::string& angle) const;
    void ClearRCDValue();
    void ClearData();

    // The title that is lit; none when none is.
    const ui::Label* litTitle() const;

    // The latest record's; none until the first one.
    std::optional<std::string> strfunction;
    std::int32_t intfunctions = 0;  // a character code
    std::string parameters;
    std::string results;

    ui::Label D1Value{*this, "D1Value"};
    ui::Label D1Unit{*this, "D1Unit"};
    ui::Label D2Value{*this, "D2Value"};
    ui::Label D2Unit{*this, "D2Unit"};
    // RCD1Row, RCD1Angle, RCD1Value, RCD1Unit to RCD6Unit.
    std::array<RcdRow, kRcdRows> rcdRows;
    // In the order of the tester's dial.
    ui::Label fun1{*this, "fun1"};
    ui::Label fun2{*this, "fun2"};
    ui::Label fun3{*this, "fun3"};
    ui::Label fun4{*this, "fun4"};
    ui::Label fun5{*this, "fun5"};
    ui::Label fun6{*this, "fun6"};
    ui::ImageView blueImage{*this, "blueImage"};  // limit exceeded

  protected:
    void buildReadings();
    void buildTitles();

  private:
    void showRcdSequence(const protocol::MeterReading& record);
    void showOneReading(const protocol::MeterReading& record);
    void showTwoReadings(const protocol::MeterReading& record);
    void advanceRcdSequence(const protocol::MeterReading& record);
    std::array<ui::Label*, 6> titles();
};

}  // namespace kestrix::live
