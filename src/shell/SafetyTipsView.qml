import Kestrix.Shell

PicturePageView {
    ground: "orvo_all_bg.png"
}
