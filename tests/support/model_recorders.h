#pragma once

#include <string>
#include <vector>

#include "base/ports.h"
#include "model/project.h"
#include "support/scripted_ports.h"

namespace tweenery::test {

/// Makes layers that write down what they are told, as "element: call".
class RecordingLayerFactory : public ElementViewLayerFactory {
 public:
    std::vector<std::string> calls;

    std::unique_ptr<ElementViewLayer> layer() override { return std::make_unique<Layer>(calls); }

 private:
    class Layer : public ElementViewLayer {
     public:
        explicit Layer(std::vector<std::string>& calls) : m_calls(calls) {}
        void setElement(PCElement* element) override { m_element = element; }
        void syncPositionWithModel() override { record("position"); }
        void syncTransformsWithModel() override { record("transforms"); }
        void syncAnchorPointWithModel() override { record("anchor"); }
        void syncOpacityWithModel() override { record("opacity"); }
        void syncBoundsWithModel() override { record("bounds"); }
        void syncContentsWithModel() override { record("contents"); }
        void syncHiddenWithModel() override { record("hidden"); }
        void syncWithModel() override { record("all"); }
        void syncWithModelAtTimeInMS(int32_t time) override {
            record("all at " + std::to_string(time));
        }
        void setSelected(bool selected) override { record(selected ? "selected" : "deselected"); }
        void addSublayer(ElementViewLayer& sublayer) override { record("add " + nameOf(sublayer)); }
        void insertSublayer(ElementViewLayer& sublayer, uint32_t index) override {
            record("insert " + nameOf(sublayer) + " at " + std::to_string(index));
        }
        void removeFromSuperlayer() override { record("remove"); }
        void removeAllAnimations() override { record("stop animations"); }

     private:
        std::vector<std::string>& m_calls;
        PCElement* m_element = nullptr;

        std::string name() const { return m_element ? m_element->name().toStdString() : "?"; }
        void record(const std::string& call) { m_calls.push_back(name() + ": " + call); }
        static std::string nameOf(ElementViewLayer& layer) {
            const auto* recording = dynamic_cast<Layer*>(&layer);
            return recording ? recording->name() : "no layer";
        }
    };
};

/// Writes down a project's notifications as "element: notification", the latter without the prefix
/// that all share.
class NotificationRecorder {
 public:
    std::vector<std::string> posts;

    explicit NotificationRecorder(PCProject& project) {
        using namespace ElementNotification;
        for (const QString& name :
             {position, rotation, scale, opacity, name, hidden, locked, expanded, subelements,
              contents, childrenZPosition, anchorPoint, size, imageName, scalesLocked}) {
            const std::string text = name.mid(prefixLength).toStdString();
            m_subscriptions.push_back(project.notificationCentre().subscribe(
                name, nullptr, [this, text](const void* object) {
                    const auto* element = static_cast<const PCElement*>(object);
                    posts.push_back(element->name().toStdString() + ": " + text);
                }));
        }
    }

 private:
    static constexpr qsizetype prefixLength = sizeof("com.lumenfold.tweenery.") - 1;
    std::vector<Subscription> m_subscriptions;
};

class RecordingLog : public LogPort {
 public:
    std::vector<std::string> lines;
    void writeLine(const QString& line) override { lines.push_back(line.toStdString()); }
};

}  // namespace tweenery::test
