#pragma once

#include <QHash>
#include <QString>
#include <memory>

#include "base/identifier.h"

namespace tweenery {

class PCElement;

/// What the project remembers of its tree so that look-ups by identifier and by name need no walk:
/// kept up to date by the tree's edits. Of two elements with one identifier the first in pre-order
/// is found.
class ProjectIndex {
 public:
    /// Starts over from `canvas`.
    void rebuild(PCElement& canvas);
    /// Forgets everything; the next look-up rebuilds.
    void invalidate() { m_valid = false; }
    bool isValid() const { return m_valid; }

    void addTree(PCElement& root);
    void removeTree(PCElement& root);
    void treeDidMove();
    void nameDidChange(const QString& oldName, const QString& newName);

    PCElement* elementForIdentifier(const Identifier& identifier) const;
    /// A name that no element has: the trimmed base, or the base with the first free number from 1.
    /// `ignored` (may be null) is the name of one element that does not count.
    QString uniqueName(const QString& base, const QString* ignored);

 private:
    bool m_valid = false;
    bool m_hasDuplicateIdentifiers = false;
    QHash<Identifier, PCElement*> m_elements;
    QHash<QString, int> m_names;        // trimmed name: how many elements have it, also none
    QHash<QString, int> m_nextNumbers;  // base: every smaller number is taken

    void add(PCElement& root);
    void remove(PCElement& root);
    void addName(const QString& name);
    void removeName(const QString& name);
    bool isTaken(const QString& name, const QString* ignoredTrimmed) const;
};

}  // namespace tweenery
