#pragma once

#include <QColor>

#include "model/properties/property_type.h"

namespace tweenery {

/// Colours of windows, bars, dialogs and menus. They follow the desktop's light or dark.
struct FrameColors {
    QColor frame;         // windows and bars
    QColor surround;      // empty space of lists
    QColor line;          // edges
    QColor separator;     // between tools
    QColor ink;           // text
    QColor secondInk;     // text of less weight
    QColor disabledInk;   // text of what cannot be used
    QColor icon;          // toolbar pictures
    QColor disabledIcon;  // toolbar pictures of what cannot be used
    QColor plate;         // active tool, default button, selection of menus
    QColor onPlate;       // text and pictures on a plate
    QColor accent;        // focus ring
    QColor control;       // buttons
    QColor controlLine;   // their lines, and those of fields
    QColor field;         // text fields and unchecked boxes
    QColor popover;       // popovers and menus
    QColor popoverLine;
    QColor popoverShadow;  // laid over itself several times, ever wider
    QColor noticeFill;     // bars across the canvas
    QColor noticeLine;
    QColor noticeInk;
    QColor failureFill;  // the same, when work is at risk
    QColor failureLine;
    QColor failureInk;
    QColor danger;   // what went wrong
    QColor warning;  // what may go wrong
    QColor done;     // what went well
    QColor toolTipFill;
    QColor toolTipLine;
    QColor toolTipInk;
    QColor hover;         // over the fill below
    QColor pressed;       // over the fill below
    QColor plateHover;    // over a plate
    QColor platePressed;  // over a plate
    QColor dim;           // over a window that waits for its sheet
    QColor paper;         // the sheet's head and list
    QColor recents;       // the list of recent projects
    QColor statusFill;    // the plate at the canvas's lower left
    QColor statusInk;
    QColor scrollThumb;
};

/// Colours of rows, header strips, panes, timeline and canvas: the same on every desktop.
struct WorkbenchColors {
    QColor row;           // also unselected rows of the animations
    QColor rowLowerEdge;  // the lowest 2 points of a row
    QColor rowHover;      // over a row
    QColor rowInk;
    QColor rowIcon;     // pictures in rows
    QColor lockDot;     // of an unlocked row
    QColor onSelected;  // text and pictures on a selected row
    QColor onSelectedLockDot;
    QColor setupSelection;
    QColor animationSelection;
    QColor setupIcon;  // the small plate in the setup row
    QColor headerTop;  // gradient of header strips
    QColor headerBottom;
    QColor headerInk;
    QColor headerShadow;  // below the title of a header strip
    QColor divider;       // between the panes of a window
    QColor surround;      // round the canvas
    QColor pane;          // inspector
    QColor paneInk;
    QColor paneIcon;
    QColor paneSecondInk;  // units and what is told beside a picture
    QColor checkerLight;
    QColor checkerDark;
    QColor fieldFill;  // inspector fields
    QColor fieldLine;
    QColor fieldInk;
    QColor fieldRefused;  // the line of a field whose text was refused
    QColor paneRow;       // rows of the children's order
    QColor paneRowLine;
    QColor keyButton;
    QColor dial;
    QColor knob;
    QColor badge;  // the sign that a picture can be changed
    QColor bracket;
    QColor accent;
    QColor track;
    QColor trackLine;
    QColor timelineHeadLine;  // lines of buttons and ticks of the zoom
    QColor timelineRest;      // the timeline's head and ruler
    QColor timelineActive;    // the same while it has the keyboard
    QColor timelinePlaying;   // the ruler
    QColor timelineButton;
    QColor timelineInk;
    QColor timelineSecondInk;
    QColor timelineScroller;
    QColor playheadPlate;  // under the playhead's time
    QColor lightGrey;
    QColor darkGrey;
    QColor grey;
    QColor red;
    QColor blue;   // the skim bar
    QColor green;  // the easing in use where several tweens or none are meant
    QColor toggleOn;
    QColor toggleOff;
    QColor exportToggleOn;  // the round choices of the export sheet
    QColor exportToggleOff;
    QColor easingButton;
    QColor easingInk;
    QColor groupFxFill;
    QColor groupFxInk;
};

/// Colours that the name of a picture tells, the same on every fill.
struct PictureColors {
    QColor onRow;          // "…_dark", "…_dark_icon"
    QColor onSelectedRow;  // "…_light", "…_light_icon"
    QColor shutPadlock;
    QColor loopOff;
    QColor loopMarker;
    QColor loopOn;
    QColor easing;  // on a light button
};
const PictureColors& pictureColors();

/// The table for a light or a dark desktop, with increased contrast or without.
const FrameColors& frameColors(bool isDark, bool increasesContrast);
const WorkbenchColors& workbenchColors(bool increasesContrast);

/// Of keyframes and key buttons. Throws AssertionFailure for types that have none (10 and 11).
QColor propertyColor(PCPropertyType type);
/// The ring and the diamond of a key button on the inspector's pane.
QColor keyButtonLine(PCPropertyType type, bool increasesContrast);

/// What `over`, which may be translucent, looks like on the opaque `fill`.
QColor blended(const QColor& over, const QColor& fill);
/// Mixed with white or with black: 0 is the colour itself, 1 white, or black.
QColor lightened(const QColor& color, double level);
QColor darkened(const QColor& color, double level);
/// 0 (black) to 1 (white), by the definition of WCAG 2.
double relativeLuminance(const QColor& color);
/// 1 to 21, by the definition of WCAG 2; the order does not matter.
double contrastRatio(const QColor& a, const QColor& b);
/// The picture on a filled colour: nearly black on light fills, white on dark ones.
QColor pictureColorOn(const QColor& fill);

}  // namespace tweenery
