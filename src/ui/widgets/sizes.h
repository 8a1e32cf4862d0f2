#pragma once

#include <chrono>

namespace tweenery {

/// Every size of the window, in device-independent points.
namespace sizes {

inline constexpr int toolbarHeight = 44;
inline constexpr int toolbarItem = 30;
inline constexpr int toolbarGap = 4;
inline constexpr int toolbarMargin = 12;
inline constexpr int toolbarSpace = 16;
inline constexpr int toolbarDividerWidth = 5;
inline constexpr int toolbarPicture = 24;
inline constexpr int panelsItemWidth = 90;
inline constexpr int groupFxOpenWidth = 150;
inline constexpr int platePicture = 28;  // the plate of an active picture
inline constexpr int plateRadius = 6;
/// Pictures from this size up have the thick stroke.
inline constexpr int thickStrokeFrom = 32;

inline constexpr int headerHeight = 30;
inline constexpr int headerPicture = 26;
inline constexpr int headerPictureLeft = 5;
inline constexpr int headerTextLeft = 40;
inline constexpr int headerTextSize = 22;
inline constexpr int headerButton = 22;
inline constexpr int headerButtonFromRight = 27;
inline constexpr int headerButtonTop = 4;

inline constexpr int elementRow = 28;
inline constexpr int visibilityColumn = 32;
inline constexpr int lockColumn = 28;
inline constexpr int setupRow = 60;
inline constexpr int animationRow = 30;
inline constexpr int rowLowerEdge = 2;
inline constexpr int rowTextSize = 18;
inline constexpr int rowPicture = 20;
inline constexpr int lockPicture = 18;

inline constexpr int paneWidth = 350;
inline constexpr int leastLeftPaneWidth = 250;
inline constexpr int paneGap = 2;
inline constexpr int paneLabelSize = 14;
inline constexpr int paneMargin = 12;
inline constexpr int paneRowGap = 8;
inline constexpr int keyButton = 36;
inline constexpr int keyPicture = 25;
inline constexpr int paneLabelLeft = 52;
inline constexpr int paneLabelWidth = 100;
inline constexpr int paneFieldLeft = 160;
inline constexpr int paneFieldWidth = 84;
inline constexpr int paneFieldHeight = 24;
inline constexpr int paneFieldBezel = 2;  // of the field beyond what is painted, each way
inline constexpr int paneUnitSize = 12;
inline constexpr int paneUnitGap = 6;
inline constexpr int paneExtraLeft = 272;
inline constexpr int paneExtraWidth = 66;
inline constexpr int twoRowPane = 80;
inline constexpr int rotationPane = 64;
inline constexpr int opacityPane = 60;
inline constexpr int imagePane = 120;
inline constexpr int rotateDial = 40;
inline constexpr int paneSign = 20;  // lock and swap
inline constexpr int sliderGroove = 4;
inline constexpr int sliderKnob = 16;
inline constexpr int thumbnail = 96;
inline constexpr int zPositionRow = 35;
inline constexpr int zPositionHead = 50;
inline constexpr int zPositionFoot = 10;
inline constexpr int chooserWidth = 310;
inline constexpr int collapsedTimeline = 44;
inline constexpr int timelineHeader = 42;
inline constexpr int timelineRow = 28;
inline constexpr int timelineScroller = 15;
inline constexpr int timelineOutline = 350;
inline constexpr int timelineDivider = 3;
inline constexpr int easingPopoverWidth = 288;
inline constexpr int easingPopoverHeight = 164;

inline constexpr int frameTextSize = 13;
inline constexpr int frameTextLine = 16;
inline constexpr int captionTextSize = 12;
inline constexpr int smallCaptionTextSize = 11;
inline constexpr int headingTextSize = 15;
inline constexpr int emptyPlaceTitleSize = 15;

inline constexpr int buttonHeight = 28;
inline constexpr int buttonRadius = 6;
inline constexpr int leastButtonWidth = 80;
inline constexpr int buttonMargin = 15;  // between its text and its edge
inline constexpr int checkBox = 16;
inline constexpr int checkBoxRadius = 4;
inline constexpr int checkBoxGap = 8;  // between the box and its text
inline constexpr int fieldHeight = 26;
inline constexpr int focusRing = 2;
inline constexpr int focusRingGap = 2;
inline constexpr int menuBarHeight = 28;
inline constexpr int menuItemHeight = 26;
inline constexpr int menuRadius = 6;
inline constexpr int menuMargin = 4;
inline constexpr int scrollBar = 12;
inline constexpr int noticeBarHeight = 40;
inline constexpr int statusPlateHeight = 28;
inline constexpr int progressBarHeight = 6;
inline constexpr int leastPress = 22;  // the least side of what can be pressed
inline constexpr int dialogMargin = 20;
inline constexpr int sheetWidth = 1040;
inline constexpr int sheetHeight = 640;
inline constexpr int sheetRadius = 8;
inline constexpr int sheetMargin = 16;  // of its columns, and round it in a small window
inline constexpr int sheetHead = 48;
inline constexpr int sheetFoot = 60;
inline constexpr int sheetListWidth = 248;
inline constexpr int sheetTogglesWidth = 280;
inline constexpr int sheetNotesHeight = 124;
inline constexpr int sheetAnimationRow = 40;
inline constexpr int sheetAnimationPicture = 20;
inline constexpr int sheetNotePicture = 20;
inline constexpr int sheetNoteRow = 40;
inline constexpr int sheetToggleSection = 128;
inline constexpr int sheetToggleColumn = 124;
inline constexpr int alertPicture = 48;
inline constexpr int alertWidth = 416;

}  // namespace sizes

namespace motion {

inline constexpr std::chrono::milliseconds pane{250};
inline constexpr std::chrono::milliseconds fade{120};
inline constexpr std::chrono::milliseconds groupFx{2000};

}  // namespace motion

}  // namespace tweenery
