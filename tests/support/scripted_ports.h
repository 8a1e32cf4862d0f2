#pragma once

#include <deque>
#include <set>
#include <stdexcept>
#include <vector>

#include "base/ports.h"

namespace tweenery::test {

/// Answers with the buttons given, in order, and keeps the alerts that were shown. One alert more
/// than there are answers throws.
class ScriptedAlerts : public AlertPort {
 public:
    std::deque<int> answers;
    std::set<size_t> ticked;  // the alerts, by number, whose check box the user ticks
    std::vector<Alert> shown;

    AlertAnswer runModal(const Alert& alert) override {
        shown.push_back(alert);
        if (answers.empty()) { throw std::logic_error("unexpected alert"); }
        const int button = answers.front();
        answers.pop_front();
        return {button, ticked.contains(shown.size() - 1)};
    }
};

/// The user picks `files`, or `folder`, or cancels when there are none.
class ScriptedOpenPanel : public OpenPanelPort {
 public:
    QStringList files;
    QString folder;
    std::vector<OpenPanel> shown;
    std::vector<FolderPanel> shownFolders;

    QStringList chooseFiles(const OpenPanel& panel) override {
        shown.push_back(panel);
        return files;
    }
    QString chooseFolder(const FolderPanel& panel) override {
        shownFolders.push_back(panel);
        return folder;
    }
};

/// A pasteboard in memory.
class MemoryPasteboard : public PasteboardPort {
 public:
    std::vector<PasteboardItem> items;

    void write(const std::vector<PasteboardItem>& newItems) override { items = newItems; }
    QVariantList read(const QString& type) const override {
        QVariantList lists;
        for (const PasteboardItem& item : items) {
            if (item.type == type) { lists.append(QVariant(item.propertyList)); }
        }
        return lists;
    }
};

/// Keeps what it was asked to open.
class RecordingWorkspace : public WorkspacePort {
 public:
    QStringList opened;

    bool openUrl(const QString& url) override {
        opened.append(url);
        return true;
    }
};

}  // namespace tweenery::test
