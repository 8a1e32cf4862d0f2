#pragma once

#include <QString>
#include <memory>

#include "base/identifier.h"

namespace tweenery {

class ElementViewLayerFactory;
class NotificationCentre;
class PCAnimationsManager;
class PCElement;
class PCImageSetManager;
class PCKeyedPropertyTimeline;
class PCProjectPreferences;
class UndoManager;

/// What elements, timelines and animations need of the project that they belong to, which is it:
/// whom an edit tells, what undoes it, and by which settings it is made.
class EditContext {
 public:
    virtual UndoManager& undoManager() = 0;
    virtual NotificationCentre& notificationCentre() = 0;
    virtual PCImageSetManager& imageSetManager() = 0;
    virtual PCAnimationsManager& animationsManager() = 0;
    virtual PCProjectPreferences& preferences() = 0;
    virtual const std::shared_ptr<PCElement>& canvas() const = 0;
    virtual bool isSetupMode() const = 0;
    /// Pixels per point of the screen.
    virtual double backingScale() const = 0;
    /// Whether new keyframes tween, by the application's preferences.
    virtual bool tweenOn() const = 0;
    /// By how much more each further target of an additive edit changes, by the same preferences.
    virtual float linkFXFactor() const = 0;
    /// Not owned; null without a screen.
    virtual ElementViewLayerFactory* viewLayerFactory() const = 0;

    /// The tree of the package is ahead of what is stored.
    virtual void animationFilesDidChange() = 0;
    /// Of an element of the tree, or the master keyframes of an animation.
    virtual void timelineDidChange(PCKeyedPropertyTimeline& timeline) = 0;

    // The tree of elements.

    /// Null when the tree has none.
    virtual std::shared_ptr<PCElement> elementForIdentifier(const Identifier& identifier) = 0;
    /// `base`, or the next free numbered name; the name of `ignoredElement` (may be null) is free.
    virtual QString uniqueElementNameWithBase(const QString& base,
                                              const PCElement* ignoredElement) = 0;
    virtual void treeDidInsertElement(PCElement& element) = 0;
    virtual void treeWillRemoveElement(PCElement& element) = 0;
    virtual void treeDidMoveElement() = 0;
    virtual void nameDidChange(const PCElement& element, const QString& oldName) = 0;

 protected:
    ~EditContext() = default;
};

}  // namespace tweenery
