#pragma once

#include <QString>
#include <memory>
#include <vector>

#include "base/listener_set.h"
#include "model/animation.h"

namespace tweenery {

class PCAnimationsManager;
class EditContext;

/// Told of the set of animations and of the selection. For the selection a null animation is setup.
class PCAnimationsManagerChangeListener {
 public:
    virtual ~PCAnimationsManagerChangeListener() = default;
    virtual void animationManagerDidSelectAnimation(PCAnimationsManager&, const PCAnimation::Ptr&) {
    }
    virtual void animationManagerDidDeleteAnimation(PCAnimationsManager&, const PCAnimation::Ptr&) {
    }
    virtual void animationManagerDidRenameAnimation(PCAnimationsManager&, const PCAnimation::Ptr&) {
    }
    virtual void animationManagerDidAddAnimation(PCAnimationsManager&, const PCAnimation::Ptr&) {}
};

/// The project's animations, in name order when opened, and the one that is selected. No selection
/// is setup mode. Every edit registers its inverse with the project's undo manager; selecting is
/// none.
class PCAnimationsManager {
 public:
    using Animations = std::vector<PCAnimation::Ptr>;

    // An argument may be an entry of animations(), whatever happens to that list.

    /// Loads the animations of the project's package.
    PCAnimationsManager(const std::shared_ptr<EditContext>& project, FileWrapper& package);

    const Animations& animations() const { return m_animations; }
    PCAnimation::Ptr selectedAnimation() const { return m_selectedAnimation; }
    bool hasUnsavedChanges() const { return m_hasUnsavedChanges; }
    void setHasUnsavedChanges() { m_hasUnsavedChanges = true; }
    const FileWrapper::Ptr& fileWrapper() const { return m_fileWrapper; }

    /// Saves the old selection into the tree, strips all elements of timelines and selection,
    /// attaches the new one's, tells the listeners. Null is setup. Throws InputError when a
    /// timeline of the new selection cannot be read; then nothing has changed.
    void setSelectedAnimation(PCAnimation::Ptr animation);
    /// Inserts by name, case-insensitively. The animation's directory is put back if it was taken
    /// out.
    void addAnimation(const PCAnimation::Ptr& animation);
    /// Named "Untitled Animation", numbered from 2 when taken.
    PCAnimation::Ptr addNewEmptyAnimation();
    /// A deep copy under the next free numbered name, so that names stay unique.
    PCAnimation::Ptr duplicateAnimation(const PCAnimation::Ptr& source);
    /// Numbers the name while it is taken. Returns the animation.
    PCAnimation::Ptr renameAnimation(PCAnimation::Ptr animation, const QString& name);
    /// A selected animation is deselected first. Undo puts its directory back too.
    void deleteAnimation(PCAnimation::Ptr animation);

    bool animationExistsWithName(const QString& name) const;
    PCAnimation::Ptr animationForIdentifier(const QString& identifier) const;
    /// Saving is the animation's: does nothing.
    void saveChangesToFileWrapper() {}
    /// Not owned; whoever registers takes itself away before it goes.
    Subscription addChangeListener(PCAnimationsManagerChangeListener* listener);
    void removeChangeListener(PCAnimationsManagerChangeListener* listener);
    QString debugDescription() const;

 private:
    Animations m_animations;
    ListenerSet<PCAnimationsManagerChangeListener> m_listeners;
    bool m_hasUnsavedChanges = false;
    std::weak_ptr<EditContext> m_project;
    PCAnimation::Ptr m_selectedAnimation;
    FileWrapper::Ptr m_fileWrapper;

    std::shared_ptr<EditContext> project() const;
    PCAnimation::Ptr makeAnimation(const FileWrapper::Ptr& directory);
    void insertByName(const PCAnimation::Ptr& animation);
    void nameWithoutUndo(const PCAnimation::Ptr& animation, const QString& name);
    QString freeName(const QString& name) const;
    void putBackDirectory(const PCAnimation& animation);
};

/// "Bounce" becomes "Bounce 2", "Bounce 2" becomes "Bounce 3", "Take 0" becomes "Take 0 2".
QString pc_stringByGettingNextNumberedName(const QString& name);

}  // namespace tweenery
