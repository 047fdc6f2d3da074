#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "display/Display.h"
#include "display/Steps.h"
#include "link/BusinessCommunicationDelegate.h"
#include "live/ControlProperty.h"
#include "live/RcdRow.h"
#include "protocol/MeterReading.h"
#include "ui/Screen.h"

namespace kestrix::live {

// The tester's display on the screen: its labels, which show a display::Display and decide nothing. Needs
// neither a link nor a database.
class MeterDisplay : public kestrix::ui::Screen, public link::BusinessCommunicationDelegate {
    Q_OBJECT
    KESTRIX_CONTROL(Label, D1Value)
    KESTRIX_CONTROL(Label, D1Unit)
    KESTRIX_CONTROL(Label, D2Value)
    KESTRIX_CONTROL(Label, D2Unit)
    KESTRIX_CONTROL_AT(Label, RCD1Row, rcdRows[0].Row)
    KESTRIX_CONTROL_AT(Label, RCD1Angle, rcdRows[0].Angle)
    KESTRIX_CONTROL_AT(Label, RCD1Value, rcdRows[0].Value)
    KESTRIX_CONTROL_AT(Label, RCD1Unit, rcdRows[0].Unit)
    KESTRIX_CONTROL_AT(Label, RCD2Row, rcdRows[1].Row)
    KESTRIX_CONTROL_AT(Label, RCD2Angle, rcdRows[1].Angle)
    KESTRIX_CONTROL_AT(Label, RCD2Value, rcdRows[1].Value)
    KESTRIX_CONTROL_AT(Label, RCD2Unit, rcdRows[1].Unit)
    KESTRIX_CONTROL_AT(Label, RCD3Row, rcdRows[2].Row)
    KESTRIX_CONTROL_AT(Label, RCD3Angle, rcdRows[2].Angle)
    KESTRIX_CONTROL_AT(Label, RCD3Value, rcdRows[2].Value)
    KESTRIX_CONTROL_AT(Label, RCD3Unit, rcdRows[2].Unit)
    KESTRIX_CONTROL_AT(Label, RCD4Row, rcdRows[3].Row)
    KESTRIX_CONTROL_AT(Label, RCD4Angle, rcdRows[3].Angle)
    KESTRIX_CONTROL_AT(Label, RCD4Value, rcdRows[3].Value)
    KESTRIX_CONTROL_AT(Label, RCD4Unit, rcdRows[3].Unit)
    KESTRIX_CONTROL_AT(Label, RCD5Row, rcdRows[4].Row)
    KESTRIX_CONTROL_AT(Label, RCD5Angle, rcdRows[4].Angle)
    KESTRIX_CONTROL_AT(Label, RCD5Value, rcdRows[4].Value)
    KESTRIX_CONTROL_AT(Label, RCD5Unit, rcdRows[4].Unit)
    KESTRIX_CONTROL_AT(Label, RCD6Row, rcdRows[5].Row)
    KESTRIX_CONTROL_AT(Label, RCD6Angle, rcdRows[5].Angle)
    KESTRIX_CONTROL_AT(Label, RCD6Value, rcdRows[5].Value)
    KESTRIX_CONTROL_AT(Label, RCD6Unit, rcdRows[5].Unit)
    KESTRIX_CONTROL(Label, fun1)
    KESTRIX_CONTROL(Label, fun2)
    KESTRIX_CONTROL(Label, fun3)
    KESTRIX_CONTROL(Label, fun4)
    KESTRIX_CONTROL(Label, fun5)
    KESTRIX_CONTROL(Label, fun6)
    KESTRIX_CONTROL(ImageView, blueImage)

  public:
    // How `setUILabelView` styles a label.
    static constexpr std::int32_t kRcdRowStyle = 0;
    static constexpr std::int32_t kTitleStyle = 1;
    static constexpr std::int32_t kHeaderStyle = 2;
    static constexpr std::int32_t kReadingStyle = 3;

    // showMode, lastSubFuncF2 and rcdStep of the process: every screen goes on where the last record, on
    // whichever screen, left them.
    static display::Counters counters;

    MeterDisplay();

    // Shows the record and keeps its texts. success: not looked at.
    void didReceive3820Data(const protocol::MeterReading& record, bool success) override;

    // Styles 0 to 3; any other leaves background and font as they are.
    void setUILabelView(ui::Label& label, std::int32_t style, const QString& text);
    // Groups 1 to 5 (display/Steps.h); any other does nothing.
    void setHiddenLable(std::int32_t group, bool hidden);
    // Lights the title of a function code, '1' to '7'; any other lights none.
    void setTitleColor(std::int32_t code);

    std::string getRCDResult(const std::string& value, const std::string& multiplier,
                             const std::string& angle) const;
    void ClearRCDValue();
    void ClearData();

    // What the labels show.
    const display::Display& display() const { return display_; }

    // Of the latest record; strfunction: none until the first one.
    const std::optional<std::string>& strfunction() const { return display_.strfunction; }
    std::int32_t intfunctions() const { return display_.intfunctions; }
    const std::string& parameters() const { return display_.parameters; }
    const std::string& results() const { return display_.results; }

    // The title that is lit; none when none is.
    const ui::Label* litTitle() const;

    ui::Label D1Value{*this, "D1Value"};
    ui::Label D1Unit{*this, "D1Unit"};
    ui::Label D2Value{*this, "D2Value"};
    ui::Label D2Unit{*this, "D2Unit"};
    // RCD1Row, RCD1Angle, RCD1Value, RCD1Unit to RCD6Unit.
    std::array<RcdRow, display::kRcdRows> rcdRows;
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
    // As linkStateChanged of display/Steps.h. False when the state changes nothing.
    bool showLinkState(std::int32_t state);

  private:
    void show();

    display::Display display_;
};

}  // namespace kestrix::live
