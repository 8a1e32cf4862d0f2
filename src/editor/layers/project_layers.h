#pragma once

#include <QRectF>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "editor/layers/element_layer.h"
#include "model/edit_time.h"
#include "model/element.h"
#include "model/view_layer.h"
#include "scene/affine.h"

namespace tweenery {

class PCProject;

/// Makes the layers of a project's elements and keeps them, with the borders of selected elements,
/// at what is shown: the setup state, or the state at a time. Elements tell their layers of every
/// change; the layers wait, each once, and are copied from the model together, when the event
/// loop's turn ends, or earlier when somebody draws or asks where something is. Nobody else copies
/// a layer. Main thread only.
class ProjectLayers : public ElementViewLayerFactory,
                      public ElementLayerKeeper,
                      public std::enable_shared_from_this<ProjectLayers> {
    struct Passkey {};

 public:
    using Ptr = std::shared_ptr<ProjectLayers>;
    /// Asks for a flush() at the end of the event loop's turn. Called once until that.
    using Schedule = std::function<void()>;

    /// Gives every element a layer. The project is not kept alive; when this object goes, its
    /// elements are without a screen again.
    static Ptr forProject(const std::shared_ptr<PCProject>& project, Schedule schedule = {});
    /// For the factory only: the passkey is private.
    ProjectLayers(Passkey, const std::shared_ptr<PCProject>& project, Schedule schedule)
        : m_project(project), m_schedule(std::move(schedule)) {}
    ~ProjectLayers() override;

    /// What the layers show from now on; setup at first. Without an animation that is selected a
    /// time shows the setup state all the same.
    void show(EditTime time);
    EditTime shown() const { return m_shown; }

    /// Brings up to date what waits. Costs next to nothing when nothing does.
    void update() override;
    /// The elements in the tree that have changed since the last update, or are new in it; not
    /// those of which only the children have come, gone or changed places.
    PCElement::Elements changedElements() const;
    /// As update(), and says what has to be painted again since the last call, in canvas
    /// coordinates; the rectangles may overlap, and edges may reach a pixel beyond. `kEverywhere`
    /// stands for everything. What animations move during playback is not told of.
    std::vector<QRectF> flush();
    static constexpr QRectF kEverywhere{-1e9, -1e9, 2e9, 2e9};
    /// What changes without the model, such as animations that come or go.
    void repaintEverything() override;

    /// A layer for an element; part of making elements.
    std::unique_ptr<ElementViewLayer> layer() override;

 private:
    /// What keeps the parts of borders at their size on the screen, and sharp.
    struct Magnification {
        QPointF scale;
        float zoomLevel = 0;
        double backingScale = 0;
        bool operator==(const Magnification& other) const;
    };

    std::weak_ptr<PCProject> m_project;
    Schedule m_schedule;
    EditTime m_shown = EditTime::setup();
    std::vector<PCLayer*> m_stale;    // null for those that have gone
    std::vector<PCLayer*> m_changed;  // by the update under way
    std::vector<QRectF> m_toRepaint;
    Magnification m_magnification;
    uint64_t m_imagesRevision = 0;
    bool m_allAreStale = false;
    bool m_isUpdateAwaited = false;
    bool m_isScheduled = false;
    bool m_repaintsEverything = false;

    void awaitUpdate();
    // What layers tell.
    void layerIsStale(PCLayer& layer) override;
    void layerGoes(PCLayer& layer) override;
    void layerLeavesTree(PCLayer& layer) override;
    void borderDidChange(PCLayer& layer) override;
    // The steps of an update.
    EditTime effectiveTime(PCProject& project) const;
    void noticeSurroundings(PCProject& project);
    void copyStale(PCProject& project);
    void copyBelow(PCLayer& layer, EditTime time);
    void copy(PCLayer& layer, EditTime time);
    void stackChildren(PCLayer& layer, EditTime time);
    void setHasChanged(PCLayer& layer);
    void placeChanged(PCProject& project);
    void place(PCLayer& layer, const Affine& parentToCanvas);
    void placeBorder(PCLayer& layer);
    void repaint(QRectF& painted, const QRectF& now);
};

}  // namespace tweenery
