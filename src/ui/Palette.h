#pragma once

#include <QColor>
#include <QObject>

namespace kestrix::ui {

// Every colour that is not part of a picture. QML, C++ and tests read them here, and no colour stands as a
// number anywhere else.
class Palette : public QObject {
    Q_OBJECT
    Q_PROPERTY(QColor clear MEMBER clear CONSTANT FINAL)
    Q_PROPERTY(QColor stage MEMBER stage CONSTANT FINAL)
    Q_PROPERTY(QColor textOnDark MEMBER textOnDark CONSTANT FINAL)
    Q_PROPERTY(QColor ungiven MEMBER ungiven CONSTANT FINAL)
    Q_PROPERTY(QColor ink MEMBER ink CONSTANT FINAL)
    Q_PROPERTY(QColor picturePaper MEMBER picturePaper CONSTANT FINAL)
    Q_PROPERTY(QColor paper MEMBER paper CONSTANT FINAL)
    Q_PROPERTY(QColor header MEMBER header CONSTANT FINAL)
    Q_PROPERTY(QColor lit MEMBER lit CONSTANT FINAL)
    Q_PROPERTY(QColor tableLine MEMBER tableLine CONSTANT FINAL)
    Q_PROPERTY(QColor keyboardRow MEMBER keyboardRow CONSTANT FINAL)
    Q_PROPERTY(QColor markedRow MEMBER markedRow CONSTANT FINAL)
    Q_PROPERTY(QColor mark MEMBER mark CONSTANT FINAL)
    Q_PROPERTY(QColor warning MEMBER warning CONSTANT FINAL)
    Q_PROPERTY(QColor scrollTrack MEMBER scrollTrack CONSTANT FINAL)
    Q_PROPERTY(QColor scrollTrackOnDark MEMBER scrollTrackOnDark CONSTANT FINAL)
    Q_PROPERTY(QColor scrollThumb MEMBER scrollThumb CONSTANT FINAL)
    Q_PROPERTY(QColor focusLight MEMBER focusLight CONSTANT FINAL)
    Q_PROPERTY(QColor focusDark MEMBER focusDark CONSTANT FINAL)
    Q_PROPERTY(QColor hover MEMBER hover CONSTANT FINAL)
    Q_PROPERTY(QColor tip MEMBER tip CONSTANT FINAL)
    Q_PROPERTY(QColor field MEMBER field CONSTANT FINAL)
    Q_PROPERTY(QColor fieldEdge MEMBER fieldEdge CONSTANT FINAL)
    Q_PROPERTY(QColor selection MEMBER selection CONSTANT FINAL)
    Q_PROPERTY(QColor placeholder MEMBER placeholder CONSTANT FINAL)
    Q_PROPERTY(QColor panelEdge MEMBER panelEdge CONSTANT FINAL)
    Q_PROPERTY(QColor heldTitle MEMBER heldTitle CONSTANT FINAL)
    Q_PROPERTY(QColor groupGround MEMBER groupGround CONSTANT FINAL)
    Q_PROPERTY(QColor sideBarText MEMBER sideBarText CONSTANT FINAL)
    Q_PROPERTY(QColor sideBarLine MEMBER sideBarLine CONSTANT FINAL)
    Q_PROPERTY(QColor deletion MEMBER deletion CONSTANT FINAL)
    Q_PROPERTY(QColor shadow MEMBER shadow CONSTANT FINAL)
    Q_PROPERTY(QColor rowLine MEMBER rowLine CONSTANT FINAL)

  public:
    static Palette& shared();

    static constexpr QColor clear{0, 0, 0, 0};
    static constexpr QColor stage{14, 22, 38};              // behind everything, and between the titles
    static constexpr QColor textOnDark{255, 255, 255};      // on the housing, the display and the headers
    static constexpr QColor ungiven{0, 0, 0};               // of a text whose screen says none
    static constexpr QColor ink{16, 24, 42};                // texts on paper
    static constexpr QColor picturePaper{243, 246, 251};    // as in the picture of that name, below its strip
    static constexpr QColor paper{255, 255, 255};           // ground of a table, where no picture is
    static constexpr QColor header{69, 94, 149};            // ground of a table's headers
    static constexpr QColor lit{39, 121, 205};              // ground of the function in use
    static constexpr QColor tableLine{108, 108, 108};       // between and around the cells of a table
    static constexpr QColor keyboardRow{39, 121, 205, 51};  // over the row where the keyboard is
    static constexpr QColor markedRow{255, 214, 208};       // ground of a row with which something is wrong
    static constexpr QColor mark{150, 14, 24};              // what is wrong, in words
    static constexpr QColor warning{255, 205, 190};         // the same on the housing
    static constexpr QColor scrollTrack{108, 108, 108, 64};
    static constexpr QColor scrollTrackOnDark{255, 255, 255, 40};
    static constexpr QColor scrollThumb{16, 24, 42};         // told apart from the headers above it
    static constexpr QColor focusLight{255, 209, 102};       // the frame around what has the keyboard: one of
    static constexpr QColor focusDark{16, 24, 42};           // its two lines stands out on any ground
    static constexpr QColor hover{255, 255, 255, 40};        // over a button that the mouse points at
    static constexpr QColor field{255, 255, 255};            // ground of a text field
    static constexpr QColor fieldEdge{108, 120, 144};        // around it
    static constexpr QColor selection{42, 93, 176};          // ground of its selected text
    static constexpr QColor placeholder{95, 107, 128};       // what stands in it while it is empty
    static constexpr QColor panelEdge{143, 180, 232};        // around notices and questions
    static constexpr QColor menuButton{255, 255, 255, 77};   // over the ground of a menu
    static constexpr QColor menuCancel{255, 255, 255, 128};  // the same, of the button that cancels
    static constexpr QColor menuCancelTitle{16, 24, 42};
    static constexpr QColor shadow{0, 0, 0};             // of the content area, on the side bars
    static constexpr QColor heldTitle{85, 85, 85};       // of a menu's button while it is held
    static constexpr QColor rowLine{128, 128, 128};      // below a row of a side bar's menu
    static constexpr QColor groupGround{214, 223, 240};  // of what stands above the rows of a group
    static constexpr QColor sideBarText{222, 222, 222};  // in the list of test records
    static constexpr QColor sideBarLine{47, 47, 47};     // in and between its rows
    static constexpr QColor deletion{190, 28, 44};       // ground of what deletes
    static constexpr QColor tip{16, 24, 42};             // ground of the words beside such a button
};

}  // namespace kestrix::ui
