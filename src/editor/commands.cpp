#include "editor/commands.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

// Adds the commands of one menu, top down.
class MenuTable {
 public:
    MenuTable(std::vector<Command>& commands, const QString& menu)
        : m_commands(commands), m_menu(menu) {}

    MenuTable& item(const QString& name, const QString& title, const QString& shortcuts = {}) {
        m_commands.push_back({name, m_menu, title, shortcuts, m_submenu, m_startsSection});
        m_startsSection = false;
        return *this;
    }
    MenuTable& toggle(const QString& name, const QString& title, const QString& shortcuts = {}) {
        item(name, title, shortcuts);
        m_commands.back().isSwitch = true;
        return *this;
    }
    MenuTable& section() {
        m_startsSection = true;
        return *this;
    }
    MenuTable& submenu(const QString& title) {
        m_submenu = title;
        return *this;
    }

 private:
    std::vector<Command>& m_commands;
    QString m_menu;
    QString m_submenu;
    bool m_startsSection = false;
};

void addTimelineMenu(std::vector<Command>& commands) {
    MenuTable(commands, u"Timeline"_s)
        .item(u"keyAll"_s, u"Key All"_s, u"K"_s)
        .item(u"createKeyframes"_s, u"Create Keyframe"_s, u"Shift+K"_s)
        .item(u"switchTransitionType"_s, u"Make Instant Keyframe"_s, u"Ctrl+T"_s)
        .submenu(u"Easing"_s)
        .item(u"easingInstant"_s, u"Instant"_s, u"Alt+1"_s)
        .item(u"easingLinear"_s, u"Linear"_s, u"Alt+2"_s)
        .item(u"easingIn"_s, u"Ease In"_s, u"Alt+3"_s)
        .item(u"easingOut"_s, u"Ease Out"_s, u"Alt+4"_s)
        .item(u"easingInOut"_s, u"In-Out"_s, u"Alt+5"_s)
        .item(u"easingAnticipate"_s, u"Anticipate"_s, u"Alt+6"_s)
        .item(u"easingOvershoot"_s, u"Overshoot"_s, u"Alt+7"_s)
        .item(u"easingAnticOver"_s, u"Ant-Over"_s, u"Alt+8"_s)
        .submenu(u"Default Easing"_s)
        .toggle(u"defaultEasingInstant"_s, u"Instant"_s)
        .toggle(u"defaultEasingLinear"_s, u"Linear"_s)
        .toggle(u"defaultEasingIn"_s, u"Ease In"_s)
        .toggle(u"defaultEasingOut"_s, u"Ease Out"_s)
        .toggle(u"defaultEasingInOut"_s, u"In-Out"_s)
        .toggle(u"defaultEasingAnticipate"_s, u"Anticipate"_s)
        .toggle(u"defaultEasingOvershoot"_s, u"Overshoot"_s)
        .toggle(u"defaultEasingAnticOver"_s, u"Ant-Over"_s)
        .submenu({})
        .item(u"cycleLoopMode"_s, u"Change Loop Mode"_s, u"Ctrl+R"_s)
        .section()
        .item(u"cutKeyframes"_s, u"Cut Keyframes"_s, u"Ctrl+Alt+X"_s)
        .item(u"copyKeyframes"_s, u"Copy Keyframes"_s, u"Ctrl+Alt+C"_s)
        .item(u"pasteKeyframes"_s, u"Paste Keyframes"_s, u"Ctrl+Alt+V"_s)
        .item(u"deleteKeyframes"_s, u"Delete Keyframes"_s, u"Ctrl+Del; Ctrl+Backspace"_s)
        .item(u"deleteTimeline"_s, u"Delete Timeline"_s, u"Ctrl+Shift+Del"_s)
        .item(u"deleteAllTimelines"_s, u"Delete All Timelines"_s, u"Ctrl+Shift+Backspace"_s)
        .section()
        .submenu(u"Select"_s)
        .item(u"selectAllKeyframes"_s, u"All Keyframes"_s, u"Ctrl+Alt+A"_s)
        .item(u"deselectAllKeyframes"_s, u"No Keyframes"_s, u"Ctrl+Alt+Shift+A"_s)
        .item(u"selectKeyframesAtPlayhead"_s, u"At the Playhead"_s, u"Ctrl+Alt+P"_s)
        .item(u"selectKeyframesAfterPlayhead"_s, u"After the Playhead"_s, u"Ctrl+Alt+F"_s)
        .item(u"selectKeyframesOfRows"_s, u"All of the Row"_s, u"Ctrl+Alt+R"_s)
        .item(u"selectEarlierKeyframe"_s, u"Earlier Keyframe"_s, u"<; Shift+<"_s)
        .item(u"selectLaterKeyframe"_s, u"Later Keyframe"_s, u">; Shift+>"_s)
        .submenu(u"Move Keyframes"_s)
        .item(u"moveKeyframesLeft"_s, u"Earlier by a Tick"_s, u"Alt+Shift+Left"_s)
        .item(u"moveKeyframesRight"_s, u"Later by a Tick"_s, u"Alt+Shift+Right"_s)
        .item(u"nudgeKeyframesLeft"_s, u"Earlier by 1 ms"_s, u"Alt+Left"_s)
        .item(u"nudgeKeyframesRight"_s, u"Later by 1 ms"_s, u"Alt+Right"_s)
        .submenu({})
        .item(u"editKeyframe"_s, u"Time and Value…"_s, u"Ctrl+E"_s)
        .item(u"stretchKeyframes"_s, u"Stretch to Length…"_s, u"Ctrl+Shift+T"_s)
        .item(u"reverseKeyframes"_s, u"Reverse"_s, u"Ctrl+Shift+R"_s)
        .section()
        .item(u"insertTime"_s, u"Insert Time…"_s, u"Ctrl+Shift+I"_s)
        .item(u"removeTime"_s, u"Remove Time…"_s, u"Ctrl+Shift+X"_s)
        .section()
        .toggle(u"showOnlySelectedRows"_s, u"Only Rows of Selected Elements"_s, u"Ctrl+Shift+F"_s)
        .item(u"zoomTimelineIn"_s, u"Zoom Timeline In"_s, u"Alt++; Alt+="_s)
        .item(u"zoomTimelineOut"_s, u"Zoom Timeline Out"_s, u"Alt+-"_s)
        .item(u"zoomTimelineToFit"_s, u"Fit Timeline"_s, u"Alt+0"_s);
}

std::vector<Command> makeCommands() {
    std::vector<Command> commands;
    MenuTable(commands, u"File"_s)
        .item(u"newDocument"_s, u"New"_s, u"Ctrl+N"_s)
        .item(u"openDocument"_s, u"Open…"_s, u"Ctrl+O"_s)
        .item(u"openRecent"_s, u"Open Recent"_s)
        .section()
        .item(u"close"_s, u"Close"_s, u"Ctrl+W"_s)
        .item(u"saveDocument"_s, u"Save"_s, u"Ctrl+S"_s)
        .item(u"saveDocumentAs"_s, u"Save As…"_s, u"Ctrl+Shift+S"_s)
        .item(u"saveDocumentCopy"_s, u"Save a Copy…"_s, u"Ctrl+Alt+S"_s)
        .item(u"revertDocument"_s, u"Revert to Saved…"_s)
        .section()
        .item(u"importImages"_s, u"Import Images…"_s, u"Ctrl+I"_s)
        .item(u"exportGeneratedCode"_s, u"Export…"_s, u"Ctrl+Return; Ctrl+Enter"_s)
        .section()
        .item(u"quit"_s, u"Quit"_s, u"Ctrl+Q"_s);
    MenuTable(commands, u"Edit"_s)
        .item(u"undo"_s, u"Undo"_s, u"Ctrl+Z"_s)
        .item(u"redo"_s, u"Redo"_s, u"Ctrl+Shift+Z; Ctrl+Y"_s)
        .section()
        .item(u"cut"_s, u"Cut"_s, u"Ctrl+X"_s)
        .item(u"copy"_s, u"Copy"_s, u"Ctrl+C"_s)
        .item(u"paste"_s, u"Paste"_s, u"Ctrl+V"_s)
        .item(u"duplicateElements"_s, u"Duplicate"_s, u"Ctrl+D"_s)
        .item(u"duplicateElementsInPlace"_s, u"Duplicate In Place"_s, u"Ctrl+Shift+D"_s)
        .item(u"delete"_s, u"Delete"_s, u"Del; Backspace"_s)
        .section()
        .item(u"selectAll"_s, u"Select All"_s, u"Ctrl+A"_s)
        .item(u"deselectAll"_s, u"Deselect All"_s, u"Ctrl+Shift+A"_s)
        .section()
        .item(u"openPreferences"_s, u"Preferences…"_s, u"Ctrl+,"_s);
    MenuTable(commands, u"Element"_s)
        .item(u"renameElement"_s, u"Rename"_s, u"F2"_s)
        .item(u"groupElements"_s, u"Group"_s, u"Ctrl+G"_s)
        .item(u"ungroupElements"_s, u"Ungroup"_s, u"Ctrl+Shift+G"_s)
        .section()
        .item(u"moveElementsForward"_s, u"Bring Forward"_s, u"Ctrl+]; Ctrl+PgUp"_s)
        .item(u"moveElementsBackward"_s, u"Send Backward"_s, u"Ctrl+[; Ctrl+PgDown"_s)
        .item(u"moveElementsToFront"_s, u"Bring to Front"_s, u"Ctrl+Shift+]; Ctrl+Shift+PgUp"_s)
        .item(u"moveElementsToBack"_s, u"Send to Back"_s, u"Ctrl+Shift+[; Ctrl+Shift+PgDown"_s)
        .section()
        .item(u"lockElements"_s, u"Lock"_s, u"Ctrl+L"_s)
        .item(u"unlockElements"_s, u"Unlock"_s, u"Ctrl+Shift+L"_s)
        .item(u"toggleHidden"_s, u"Hide"_s, u"Ctrl+Shift+H"_s)
        .section()
        .submenu(u"Nudge"_s)
        .item(u"moveUp"_s, u"Up"_s, u"Up"_s)
        .item(u"moveDown"_s, u"Down"_s, u"Down"_s)
        .item(u"moveLeft"_s, u"Left"_s, u"Left"_s)
        .item(u"moveRight"_s, u"Right"_s, u"Right"_s)
        .item(u"moveUpFar"_s, u"Up by 10"_s, u"Shift+Up"_s)
        .item(u"moveDownFar"_s, u"Down by 10"_s, u"Shift+Down"_s)
        .item(u"moveLeftFar"_s, u"Left by 10"_s, u"Shift+Left"_s)
        .item(u"moveRightFar"_s, u"Right by 10"_s, u"Shift+Right"_s)
        .submenu(u"Place Anchor Point"_s)
        .item(u"anchorAtCenter"_s, u"At Center"_s, u"Alt+Shift+C"_s)
        .item(u"anchorAtTopLeft"_s, u"At Top Left"_s)
        .item(u"anchorAtTopRight"_s, u"At Top Right"_s)
        .item(u"anchorAtBottomLeft"_s, u"At Bottom Left"_s)
        .item(u"anchorAtBottomRight"_s, u"At Bottom Right"_s);
    MenuTable(commands, u"Animation"_s)
        .item(u"addAnimation"_s, u"New Animation"_s, u"Ctrl+Shift+N"_s)
        .item(u"renameAnimation"_s, u"Rename Animation"_s)
        .item(u"duplicateAnimation"_s, u"Duplicate Animation"_s)
        .item(u"deleteAnimation"_s, u"Delete Animation"_s)
        .section()
        .item(u"selectSetup"_s, u"Setup"_s, u"Ctrl+Home"_s)
        .item(u"selectPreviousAnimation"_s, u"Previous Animation"_s, u"Ctrl+Up"_s)
        .item(u"selectNextAnimation"_s, u"Next Animation"_s, u"Ctrl+Down"_s)
        .section()
        .item(u"togglePlayPause"_s, u"Play"_s, u"Return; Enter"_s)
        .item(u"goToStart"_s, u"Go to Start"_s, u"Home"_s)
        .item(u"goToEnd"_s, u"Go to End"_s, u"End"_s)
        .item(u"goToPreviousKeyframe"_s, u"Previous Keyframe"_s, u","_s)
        .item(u"goToNextKeyframe"_s, u"Next Keyframe"_s, u"."_s)
        .section()
        .toggle(u"loopRange"_s, u"Loop Range"_s, u"L"_s)
        .item(u"setLoopStart"_s, u"Set Loop Start"_s, u"I"_s)
        .item(u"setLoopEnd"_s, u"Set Loop End"_s, u"O"_s)
        .item(u"setLoopRangeToSelection"_s, u"Set Loop Range to Selection"_s, u"Shift+L"_s)
        .item(u"clearLoopRange"_s, u"Clear Loop Range"_s, u"Shift+O"_s)
        .submenu(u"At the Last Keyframe"_s)
        .toggle(u"playOnAtEnd"_s, u"Play On"_s, u"Ctrl+Alt+7"_s)
        .toggle(u"stopAtEnd"_s, u"Stop"_s, u"Ctrl+Alt+8"_s)
        .toggle(u"loopAtEnd"_s, u"Loop"_s, u"Ctrl+Alt+9"_s);
    addTimelineMenu(commands);
    MenuTable(commands, u"View"_s)
        .toggle(u"changeCursorStateToSelection"_s, u"Move Tool"_s, u"V"_s)
        .toggle(u"changeCursorStateToDirect"_s, u"Direct Selection Tool"_s, u"A"_s)
        .toggle(u"changeCursorStateToHand"_s, u"Hand Tool"_s, u"H"_s)
        .section()
        .item(u"zoomIn"_s, u"Zoom In"_s, u"Ctrl++; Ctrl+="_s)
        .item(u"zoomOut"_s, u"Zoom Out"_s, u"Ctrl+-"_s)
        .item(u"zoomCenter"_s, u"Fit Canvas"_s, u"Ctrl+0"_s)
        .item(u"zoomActualSize"_s, u"Actual Size"_s, u"Ctrl+1"_s)
        .item(u"zoomToSelection"_s, u"Zoom to Selection"_s, u"Ctrl+2"_s)
        .section()
        .toggle(u"showGuidelines"_s, u"Show Guidelines"_s, u"Ctrl+;"_s)
        .section()
        .item(u"toggleLeftPane"_s, u"Hide Left Pane"_s, u"Ctrl+Alt+1"_s)
        .item(u"toggleBottomPane"_s, u"Hide Bottom Pane"_s, u"Ctrl+Alt+2"_s)
        .item(u"toggleRightPane"_s, u"Hide Right Pane"_s, u"Ctrl+Alt+3"_s)
        .item(u"customizeToolbar"_s, u"Customize Toolbar…"_s)
        .section()
        .toggle(u"toggleFullScreen"_s, u"Full Screen"_s, u"F11"_s);
    MenuTable(commands, u"Window"_s)
        .item(u"minimize"_s, u"Minimize"_s, u"Ctrl+M"_s)
        .item(u"nextWindow"_s, u"Next Window"_s, u"Ctrl+F6"_s)
        .section()
        .item(u"nextPane"_s, u"Next Pane"_s, u"F6"_s)
        .item(u"previousPane"_s, u"Previous Pane"_s, u"Shift+F6"_s);
    MenuTable(commands, u"Help"_s)
        .item(u"openHelp"_s, u"Tweenery Help"_s, u"F1"_s)
        .item(u"showShortcuts"_s, u"Keyboard Shortcuts…"_s, u"Ctrl+?"_s)
        .section()
        .item(u"about"_s, u"About Tweenery"_s);
    return commands;
}

}  // namespace

const std::vector<Command>& allCommands() {
    static const std::vector<Command> commands = makeCommands();
    return commands;
}

const Command* commandNamed(const QString& name) {
    const auto& commands = allCommands();
    const auto found =
        std::find_if(commands.begin(), commands.end(),
                     [&name](const Command& command) { return command.name == name; });
    return found == commands.end() ? nullptr : &*found;
}

const QStringList& menuTitles() {
    static const QStringList titles = [] {
        QStringList found;
        for (const Command& command : allCommands()) {
            if (!found.contains(command.menu)) { found << command.menu; }
        }
        return found;
    }();
    return titles;
}

}  // namespace tweenery
