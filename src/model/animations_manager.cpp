#include "model/animations_manager.h"

#include <algorithm>

#include "base/errors.h"
#include "base/undo_manager.h"
#include "model/edit_context.h"
#include "model/element.h"
#include "storage/package_entries.h"

using namespace Qt::StringLiterals;

namespace tweenery {

PCAnimationsManager::PCAnimationsManager(const std::shared_ptr<EditContext>& project,
                                         FileWrapper& package)
    : m_project(project) {
    const UndoRegistrationPause pause(project->undoManager());
    m_fileWrapper = package.pc_ensureSubfileWrapperDirectoryExistsWithName(kAnimationsEntry);
    for (const auto& [name, node] : m_fileWrapper->fileWrappers()) {
        if (node->isDirectory()) { insertByName(makeAnimation(node)); }
    }
}

std::shared_ptr<EditContext> PCAnimationsManager::project() const {
    auto project = m_project.lock();
    assertContract(project != nullptr, u"the animations manager has outlived its project"_s);
    return project;
}

PCAnimation::Ptr PCAnimationsManager::makeAnimation(const FileWrapper::Ptr& directory) {
    return PCAnimation::initWithAnimationFileWrapper(directory, m_project.lock());
}

Subscription PCAnimationsManager::addChangeListener(PCAnimationsManagerChangeListener* listener) {
    return m_listeners.add(listener);
}

void PCAnimationsManager::removeChangeListener(PCAnimationsManagerChangeListener* listener) {
    m_listeners.remove(listener);
}

void PCAnimationsManager::insertByName(const PCAnimation::Ptr& animation) {
    const auto place =
        std::upper_bound(m_animations.begin(), m_animations.end(), animation,
                         [](const PCAnimation::Ptr& a, const PCAnimation::Ptr& b) {
                             return a->name().compare(b->name(), Qt::CaseInsensitive) < 0;
                         });
    m_animations.insert(place, animation);
}

// A deleted animation that comes back needs its directory, or the next save would lose it.
void PCAnimationsManager::putBackDirectory(const PCAnimation& animation) {
    if (m_fileWrapper->child(animation.identifier()) != animation.fileWrapper()) {
        m_fileWrapper->addFileWrapper(animation.fileWrapper());
    }
}

void PCAnimationsManager::addAnimation(const PCAnimation::Ptr& animation) {
    putBackDirectory(*animation);
    insertByName(animation);
    m_hasUnsavedChanges = true;
    project()->undoManager().registerUndo([this, animation] { deleteAnimation(animation); });
    m_listeners.tell(
        [&](auto& listener) { listener.animationManagerDidAddAnimation(*this, animation); });
}

PCAnimation::Ptr PCAnimationsManager::addNewEmptyAnimation() {
    const UndoGroup group(project()->undoManager());
    const QString identifier = Identifier::generate().toString();
    PCAnimation::Ptr animation =
        makeAnimation(m_fileWrapper->pc_ensureSubfileWrapperDirectoryExistsWithName(identifier));
    nameWithoutUndo(animation, u"Untitled Animation"_s);
    addAnimation(animation);
    return animation;
}

PCAnimation::Ptr PCAnimationsManager::duplicateAnimation(const PCAnimation::Ptr& source) {
    const UndoGroup group(project()->undoManager());
    source->saveChangesToFileWrapper();
    const QString identifier = Identifier::generate().toString();
    const auto directory =
        m_fileWrapper->pc_ensureSubfileWrapperDirectoryExistsWithName(identifier);
    source->fileWrapper()->pc_copySubFileWrappersToFileWrapper(*directory);
    PCAnimation::Ptr copy = makeAnimation(directory);
    nameWithoutUndo(copy, source->name());
    addAnimation(copy);
    return copy;
}

// For an animation that is not in the list yet: its creation is the undo step.
void PCAnimationsManager::nameWithoutUndo(const PCAnimation::Ptr& animation, const QString& name) {
    const UndoRegistrationPause pause(project()->undoManager());
    renameAnimation(animation, freeName(name));
}

QString PCAnimationsManager::freeName(const QString& name) const {
    QString candidate = name;
    while (animationExistsWithName(candidate)) {
        candidate = pc_stringByGettingNextNumberedName(candidate);
    }
    return candidate;
}

PCAnimation::Ptr PCAnimationsManager::renameAnimation(PCAnimation::Ptr animation,
                                                      const QString& name) {
    assertContract(animation != nullptr, u"no animation specified to rename"_s);
    const QString oldName = animation->name();
    if (name != oldName) {
        animation->setName(freeName(name));
        m_hasUnsavedChanges = true;
        project()->undoManager().registerUndo(
            [this, animation, oldName] { renameAnimation(animation, oldName); });
    }
    m_listeners.tell(
        [&](auto& listener) { listener.animationManagerDidRenameAnimation(*this, animation); });
    return animation;
}

void PCAnimationsManager::deleteAnimation(PCAnimation::Ptr animation) {
    const UndoGroup group(project()->undoManager());
    const bool wasSelected = animation == m_selectedAnimation;
    if (wasSelected) { setSelectedAnimation(nullptr); }
    std::erase(m_animations, animation);
    m_fileWrapper->removeFileWrapper(animation->fileWrapper());
    m_hasUnsavedChanges = true;
    project()->undoManager().registerUndo([this, animation, wasSelected] {
        addAnimation(animation);
        if (wasSelected) { setSelectedAnimation(animation); }
    });
    m_listeners.tell(
        [&](auto& listener) { listener.animationManagerDidDeleteAnimation(*this, animation); });
}

void PCAnimationsManager::setSelectedAnimation(PCAnimation::Ptr animation) {
    const auto owner = project();
    // Everything that can fail on damaged files comes before the first change.
    if (animation) { animation->loadAllTimelines(); }
    if (m_selectedAnimation) { m_selectedAnimation->saveChangesToFileWrapper(); }
    m_selectedAnimation = animation;
    for (const PCElement::Ptr& element : owner->canvas()->elementAndAllDescendants()) {
        element->setSelected(false);
        element->removeAllTimelines();
    }
    if (animation) { animation->applyAnimationWithRootElement(*owner->canvas()); }
    m_listeners.tell(
        [&](auto& listener) { listener.animationManagerDidSelectAnimation(*this, animation); });
}

bool PCAnimationsManager::animationExistsWithName(const QString& name) const {
    return std::any_of(
        m_animations.begin(), m_animations.end(),
        [&name](const PCAnimation::Ptr& animation) { return animation->name() == name; });
}

PCAnimation::Ptr PCAnimationsManager::animationForIdentifier(const QString& identifier) const {
    const auto found = std::find_if(m_animations.begin(), m_animations.end(),
                                    [&identifier](const PCAnimation::Ptr& animation) {
                                        return animation->identifier() == identifier;
                                    });
    return found == m_animations.end() ? nullptr : *found;
}

QString PCAnimationsManager::debugDescription() const {
    QString text = u"<PCProjectAnimationsManager (count:%1)"_s.arg(m_animations.size());
    for (const PCAnimation::Ptr& animation : m_animations) {
        text += u'\n' + (animation->name().isNull() ? u"(null)"_s : animation->name());
    }
    return text + u"\n/PCProjectAnimationsManager>"_s;
}

QString pc_stringByGettingNextNumberedName(const QString& name) {
    const QStringList parts = name.split(u' ');
    const QString& last = parts.last();
    // The leading digits count, as a C string would be read.
    qsizetype digits = 0;
    while (digits < last.size() && last[digits] >= u'0' && last[digits] <= u'9') {
        ++digits;
    }
    const qlonglong number = last.left(digits).toLongLong();
    if (parts.size() < 2 || number <= 0 || number >= INT32_MAX) { return name + u" 2"_s; }
    return name.left(name.size() - last.size()) + QString::number(number + 1);
}

}  // namespace tweenery
