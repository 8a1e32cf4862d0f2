#include "model/project_index.h"

#include "model/element.h"

using namespace Qt::StringLiterals;

namespace tweenery {

void ProjectIndex::rebuild(PCElement& canvas) {
    m_elements.clear();
    m_names.clear();
    m_nextNumbers.clear();
    m_hasDuplicateIdentifiers = false;
    m_valid = true;
    add(canvas);
}

void ProjectIndex::addTree(PCElement& root) {
    if (!m_valid) { return; }
    add(root);
    // Of two elements with one identifier only a walk tells which is the first.
    if (m_hasDuplicateIdentifiers) { invalidate(); }
}

void ProjectIndex::add(PCElement& root) {
    addName(root.name());
    PCElement*& found = m_elements[root.identifier()];
    m_hasDuplicateIdentifiers = m_hasDuplicateIdentifiers || found;
    if (!found) { found = &root; }
    for (const PCElement::Ptr& child : root.children()) {
        add(*child);
    }
}

void ProjectIndex::removeTree(PCElement& root) {
    if (!m_valid) { return; }
    // With an identifier that two elements share, the other one may now be the first.
    if (m_hasDuplicateIdentifiers) { return invalidate(); }
    remove(root);
}

void ProjectIndex::treeDidMove() {
    // Of two elements with one identifier the other may now be the first.
    if (m_hasDuplicateIdentifiers) { invalidate(); }
}

void ProjectIndex::remove(PCElement& root) {
    removeName(root.name());
    m_elements.remove(root.identifier());
    for (const PCElement::Ptr& child : root.children()) {
        remove(*child);
    }
}

void ProjectIndex::nameDidChange(const QString& oldName, const QString& newName) {
    if (!m_valid) { return; }
    removeName(oldName);
    addName(newName);
}

PCElement* ProjectIndex::elementForIdentifier(const Identifier& identifier) const {
    return m_elements.value(identifier);
}

void ProjectIndex::addName(const QString& name) {
    ++m_names[name.trimmed()];
}

void ProjectIndex::removeName(const QString& name) {
    const QString trimmed = name.trimmed();
    const auto found = m_names.find(trimmed);
    if (found == m_names.end() || --*found > 0) { return; }
    // "Base 3" is free again: numbering of "Base" may start there.
    const qsizetype blank = trimmed.lastIndexOf(u' ');
    const int number = blank < 0 ? 0 : trimmed.mid(blank + 1).toInt();
    const auto next = m_nextNumbers.find(trimmed.left(std::max<qsizetype>(blank, 0)));
    if (number > 0 && next != m_nextNumbers.end()) { *next = std::min(*next, number); }
}

bool ProjectIndex::isTaken(const QString& name, const QString* ignoredTrimmed) const {
    const int ownCount = ignoredTrimmed && *ignoredTrimmed == name ? 1 : 0;
    return m_names.value(name) > ownCount;
}

QString ProjectIndex::uniqueName(const QString& base, const QString* ignored) {
    const QString ignoredTrimmed = ignored ? ignored->trimmed() : QString();
    const QString* own = ignored ? &ignoredTrimmed : nullptr;
    QString trimmed = base.trimmed();
    if (!isTaken(trimmed, own)) { return trimmed; }

    const auto numbered = [&base](int number) { return base + u' ' + QString::number(number); };
    // Numbers below the remembered one are taken; only the ignored element's own may be free.
    const int ownNumber =
        own && own->startsWith(base + u' ') ? own->mid(base.size() + 1).toInt() : 0;
    int& next = m_nextNumbers[base];
    next = std::max(next, 1);
    if (ownNumber > 0 && ownNumber < next && *own == numbered(ownNumber) && !isTaken(*own, own)) {
        return *own;
    }
    while (isTaken(numbered(next), own)) {
        ++next;
    }
    return numbered(next);
}

}  // namespace tweenery
