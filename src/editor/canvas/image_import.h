#pragma once

#include <QImage>
#include <QPointF>
#include <QStringList>
#include <functional>
#include <optional>
#include <set>
#include <vector>

#include "base/ports.h"
#include "model/element.h"
#include "model/images/image_set_manager.h"

namespace tweenery {

class PCProject;

/// One import of artwork into a project: asks what it has to know of each picture before the first
/// change, then makes image sets, and elements that show them. Files that differ only in their
/// density suffix make one set, unasked. What the user ticks to hold for all holds for the rest of
/// this import.
///
/// An import is one step of undo. Undoing it takes the elements away and puts back each set that
/// was replaced, bytes and all; new sets stay in the project, unused. A file that cannot be read is
/// left out, and an alert names it with the reason.
class ImageImport {
 public:
    using ImageSets = std::vector<PCImageSetManager::ImageSet>;
    /// Called before each image set is made, with how many are done of how many; false ends the
    /// import there. Called once more at the end, however it came, with all done.
    using Progress = std::function<bool(size_t done, size_t count)>;

    /// Neither is owned.
    ImageImport(PCProject& project, AlertPort& alerts);
    void setProgress(Progress progress) { m_progress = std::move(progress); }

    /// Asks for files; their elements come to the middle of the canvas, in front of all. Switches
    /// to setup mode first, as do the two that follow. Returns the new elements.
    PCElement::Elements importImages(OpenPanelPort& panel);
    /// `position` is the elements' own, in points; they go to `index` among the children of
    /// `parent`, the later file behind the earlier one. A null parent is the canvas.
    PCElement::Elements receivedDroppedImages(const QStringList& paths, QPointF position,
                                              PCElement::Ptr parent, size_t index);
    /// A picture without a file name comes in as "Pasted Image", unasked, at density 1.
    PCElement::Elements receivedPastedImage(const QImage& image, QPointF position,
                                            PCElement::Ptr parent, size_t index);
    /// The image sets alone, in the order of their first files.
    ImageSets addImagesToProject(const QStringList& paths);

 private:
    // Files of one folder and one keyname, at most one for each density.
    struct Artwork {
        QStringList paths;
        QString filename;  // of the first, with the density that it was settled to have
        bool replaces = false;
        QString basename;  // of the set
    };
    using Images = std::vector<std::shared_ptr<const PCImage>>;

    PCProject& m_project;
    AlertPort& m_alerts;
    Progress m_progress;
    std::optional<int> m_densityAnswer;  // to the rest of the questions
    bool m_applyToAll = false;
    bool m_rename = true;
    std::set<QString> m_planned;  // keynames
    QStringList m_failures;

    static std::vector<Artwork> artworkIn(const QStringList& paths);
    std::vector<Artwork> settle(const QStringList& paths);
    bool settleDensity(Artwork& artwork);
    void settleName(Artwork& artwork);
    bool isTaken(const QString& keyname) const;
    QString freeBasename(const QString& basename, const QString& extension) const;
    ImageSets makeSets(const std::vector<Artwork>& artwork);
    PCImageSetManager::ImageSet makeSet(const Artwork& artwork);
    PCElement::Elements addElements(const ImageSets& sets, QPointF position,
                                    const PCElement::Ptr& parent, size_t index);
    void tellFailures();
};

}  // namespace tweenery
