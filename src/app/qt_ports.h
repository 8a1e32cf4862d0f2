#pragma once

#include "editor/desktop_ports.h"

namespace tweenery {

/// The desktop's clipboard, with elements as MimePasteboard carries them.
class QtClipboard : public ClipboardPort {
 public:
    void write(const std::vector<PasteboardItem>& items) override;
    QVariantList read(const QString& type) const override;
    void beginCopy(const QImage& picture) override { m_picture = picture; }
    QImage picture() const override;
    QStringList files() const override;

 private:
    QImage m_picture;  // for the next write()
};

/// Asks for files by the desktop's own dialog, in the folder where it was last asked.
class QtOpenPanel : public OpenPanelPort {
 public:
    QStringList chooseFiles(const OpenPanel& panel) override;
    QString chooseFolder(const FolderPanel& panel) override;
};

class QtWorkspace : public WorkspacePort {
 public:
    bool openUrl(const QString& url) override;
};

}  // namespace tweenery
