#pragma once

#include <QPoint>

#include "editor/document_window_controller.h"
#include "support/model_builder.h"
#include "support/model_recorders.h"
#include "support/scripted_clock.h"
#include "support/scripted_ports.h"

namespace tweenery::test {

/// A clipboard in memory.
class MemoryClipboard : public ClipboardPort {
 public:
    MemoryPasteboard items;
    QImage offered;  // beside the items
    QImage foreign;  // put there by another program
    QStringList foreignFiles;

    void beginCopy(const QImage& picture) override { offered = picture; }
    void write(const std::vector<PasteboardItem>& written) override { items.write(written); }
    QVariantList read(const QString& type) const override { return items.read(type); }
    QImage picture() const override { return foreign; }
    QStringList files() const override { return foreignFiles; }
};

inline void appendText(std::string& text, const FileWrapper& wrapper) {
    for (const auto& [name, child] : wrapper.fileWrappers()) {
        text += '\n' + name.toStdString();
        if (child->isDirectory()) {
            appendText(text, *child);
        } else {
            text += child->contents().toBase64().toStdString();
        }
    }
}

/// All that a save would store of canvas and animations.
inline std::string storedText(PCProject& project) {
    project.fileWrapper();
    std::string text = exactState(*project.canvas());
    for (const PCAnimation::Ptr& animation : project.animationsManager().animations()) {
        text += '\n' + animation->name().toStdString();
        appendText(text, *animation->fileWrapper());
    }
    return text;
}

/// A controller without a window, on a desktop that is scripted. What is to be called later waits
/// for runLater().
class ControllerScene {
 public:
    ScriptedAlerts alerts;
    ScriptedOpenPanel panel;
    MemoryClipboard clipboard;
    RecordingWorkspace workspace;
    ScriptedClock clock;
    RecordingLog log;
    std::vector<std::function<void()>> later;
    PCProject::Ptr project;
    PCDocumentWindowController controller;

    explicit ControllerScene(std::string_view tree = "", PCProject::Ptr opened = PCProject::init())
        : project(std::move(opened)),
          controller((buildTree(*project, tree), project),
                     {alerts, panel, clipboard, workspace, clock, log},
                     {[] {}, [] {},
                      [this](std::chrono::milliseconds, std::function<void()> call) {
                          later.push_back(std::move(call));
                      }}) {
        controller.viewport().setContainerSize({800, 600});
    }

    void select(const QStringList& names) {
        controller.selectionManager().selectElements(allNamed(*project, names));
    }
    QString selected() {
        QStringList names;
        for (const PCElement::Ptr& element : controller.selectionManager().selectedElements()) {
            names << element->name();
        }
        return names.join(u' ');
    }
    std::string tree() { return treeText(*project->canvas()); }
    void perform(const char* command) {
        controller.commands().perform(QString::fromLatin1(command));
    }
    std::string stored() { return storedText(*project); }
};

}  // namespace tweenery::test
