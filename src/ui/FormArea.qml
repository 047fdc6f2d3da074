import QtQuick
import Kestrix.Ui

// The fields of a form. What is typed into stays in sight above the keyboard of a phone's screen: `coveredByKeyboard` points
// of the form's foot are behind it.
Flickable {
    id: form
    property real coveredByKeyboard: 0

    contentHeight: height
    bottomMargin: coveredByKeyboard
    interactive: coveredByKeyboard > 0
    boundsBehavior: Flickable.StopAtBounds
    onBottomMarginChanged: showField()

    function showField() {
        const field = Window.activeFocusItem
        const seen = height - bottomMargin
        let top = 0
        if (bottomMargin > 0 && field !== null) {
            const place = field.mapToItem(contentItem, 0, 0, field.width, field.height)
            top = Math.max(0, Math.min(bottomMargin, place.y + place.height + 8 - seen))
        }
        contentY = top
    }
}
