#pragma once

#include <QImage>
#include <QStringList>

#include "base/media_clock.h"
#include "base/ports.h"

namespace tweenery {

/// The desktop's clipboard: what this program copies, and what others put there.
class ClipboardPort : public PasteboardPort {
 public:
    /// The next write() offers this picture too, to programs that know none of its items.
    virtual void beginCopy(const QImage& picture) = 0;
    /// Null when there is none.
    virtual QImage picture() const = 0;
    /// Paths of local files.
    virtual QStringList files() const = 0;
};

/// What a window asks of the desktop around it. None is owned.
struct DesktopPorts {
    AlertPort& alerts;
    OpenPanelPort& openPanel;
    ClipboardPort& clipboard;
    WorkspacePort& workspace;
    const MediaClock& clock;
    LogPort& log;
};

}  // namespace tweenery
