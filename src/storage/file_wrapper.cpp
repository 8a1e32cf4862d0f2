#include "storage/file_wrapper.h"

#include <algorithm>
#include <mutex>
#include <utility>

#include "base/errors.h"

using namespace Qt::StringLiterals;

namespace tweenery {

namespace {

const FileWrapper::Children kNoChildren;

// What would lead a name out of its directory, or end it early.
bool isFilingName(const QString& name) {
    return !name.isEmpty() && name != u"."_s && name != u".."_s && !name.contains(u'/') &&
           !name.contains(QChar(0));
}

// "logo.png" becomes "logo 2.png", or the next number that is free.
QString numberedName(const QString& name, const FileWrapper::Children& taken) {
    const qsizetype dot = name.lastIndexOf(u'.');
    const qsizetype stemLength = dot > 0 ? dot : name.size();
    for (int number = 2;; ++number) {
        QString numbered = name.left(stemLength) + u' ' + QString::number(number);
        numbered += QStringView(name).mid(stemLength);
        if (!taken.contains(numbered)) { return numbered; }
    }
}

}  // namespace

// Lets std::make_shared reach the private constructor.
struct FileWrapper::Node : FileWrapper {
    Node(Kind kind, std::shared_ptr<Place> place) : FileWrapper(kind, std::move(place)) {}
};

struct FileWrapper::Deferred {
    std::once_flag isMade;
    std::function<QByteArray()> make;
    QByteArray contents;
};

FileWrapper::~FileWrapper() {
    for (const auto& [name, child] : fileWrappers()) {
        if (child->m_parent == this) { child->m_parent = nullptr; }
    }
}

FileWrapper::Ptr FileWrapper::create(Kind kind, const QString& preferredFilename) {
    Ptr node = std::make_shared<Node>(kind, std::make_shared<Place>());
    node->m_preferredFilename = preferredFilename;
    if (kind == Kind::Directory) { node->m_children = std::make_shared<Children>(); }
    return node;
}

FileWrapper::Ptr FileWrapper::directory(const QString& preferredFilename) {
    return create(Kind::Directory, preferredFilename);
}

FileWrapper::Ptr FileWrapper::regularFile(const QByteArray& contents,
                                          const QString& preferredFilename) {
    Ptr node = create(Kind::RegularFile, preferredFilename);
    node->m_contents = contents;
    return node;
}

FileWrapper::Ptr FileWrapper::regularFileMadeLater(std::function<QByteArray()> make,
                                                   const QString& preferredFilename) {
    Ptr node = create(Kind::RegularFile, preferredFilename);
    node->m_deferred = std::make_shared<Deferred>();
    node->m_deferred->make = std::move(make);
    return node;
}

FileWrapper::Ptr FileWrapper::symbolicLink(const QByteArray& target,
                                           const QString& preferredFilename) {
    Ptr node = create(Kind::SymbolicLink, preferredFilename);
    node->m_contents = target;
    return node;
}

// The same file at another place.
FileWrapper::Ptr FileWrapper::copyOfFile() const {
    Ptr copy = create(m_kind, m_preferredFilename);
    copy->m_filename = m_filename;
    copy->m_contents = m_contents;
    copy->m_deferred = m_deferred;
    return copy;
}

void FileWrapper::setFilename(const QString& name) {
    m_filename = name;
    didChange();
}

const QByteArray& FileWrapper::contents() const {
    if (!m_deferred) { return m_contents; }
    std::call_once(m_deferred->isMade, [this] {
        m_deferred->contents = m_deferred->make();
        m_deferred->make = nullptr;
    });
    return m_deferred->contents;
}

const FileWrapper::Children& FileWrapper::fileWrappers() const {
    return m_children ? *m_children : kNoChildren;
}

FileWrapper::Children FileWrapper::removedEntries() const {
    Children stored;
    if (!m_removed) { return stored; }
    for (const Ptr& node : *m_removed) {
        if (node->origin()) { stored.emplace(node->m_filename, node); }
    }
    return stored;
}

FileWrapper::Ptr FileWrapper::child(const QString& name) const {
    const auto found = fileWrappers().find(name);
    return found == fileWrappers().end() ? nullptr : found->second;
}

void FileWrapper::setOrigin(const std::optional<Origin>& origin) const {
    m_place->origin = origin;
    if (!m_removed) { return; }
    for (const Ptr& node : *m_removed) {
        *node->m_place = {};
    }
}

QString FileWrapper::addFileWrapper(const Ptr& node) {
    assertContract(isDirectory(), u"only a directory holds entries"_s);
    const QString& wanted = node->m_preferredFilename;
    if (!isFilingName(wanted)) { failContract(u"\"%1\" cannot name an entry"_s.arg(wanted)); }
    Ptr filed = node;
    if (node->isDirectory()) {
        takeStoredState(filed);
        node->m_parent = this;
        m_holdsDirectories = true;
    } else if (!node->m_filename.isNull()) {
        filed = node->copyOfFile();  // snapshots may hold the node itself
    }
    QString name = m_children->contains(wanted) ? numberedName(wanted, *m_children) : wanted;
    filed->m_filename = name;
    ownChildren().emplace(name, filed);
    didChange();
    return name;
}

void FileWrapper::removeFileWrapper(const Ptr& node) {
    const auto isNode = [&](const auto& entry) { return entry.second == node; };
    assertContract(isDirectory(), u"only a directory holds entries"_s);
    auto position = m_children->find(node->m_filename);
    if (position == m_children->end() || !isNode(*position)) {
        position = std::find_if(m_children->begin(), m_children->end(), isNode);
    }
    assertContract(position != m_children->end(), u"the entry is not in this directory"_s);
    removeChild(position->first);
}

void FileWrapper::removeChild(QString name) {
    Children& children = ownChildren();
    const auto position = children.find(name);
    if (Ptr stored = takeStoredState(position->second)) {
        if (!m_removed) { m_removed = std::make_unique<std::vector<Ptr>>(); }
        m_removed->push_back(std::move(stored));
    }
    position->second->m_parent = nullptr;
    children.erase(position);
    didChange();
}

// The list of entries, to be changed. Snapshots keep the one that they share.
FileWrapper::Children& FileWrapper::ownChildren() {
    if (std::exchange(m_sharesChildren, false)) {
        m_children = std::make_shared<Children>(*m_children);
        for (const auto& [name, child] : *m_children) {
            child->m_place->isInSnapshot = true;
        }
    }
    return *m_children;
}

// Takes what is known about the disk out of a subtree that leaves its place: what is filed next is
// new there, and the returned skeleton stays behind in the old parent. A file is replaced by a copy
// that knows nothing.
FileWrapper::Ptr FileWrapper::takeStoredState(Ptr& node) {
    if (!node->m_place->mayBeStored()) { return nullptr; }
    Ptr stored = create(node->m_kind, node->m_filename);
    stored->m_filename = node->m_filename;
    stored->m_place = node->m_place;
    if (!node->isDirectory()) {
        stored->m_contents = node->m_contents;
        stored->m_deferred = node->m_deferred;
        node = node->copyOfFile();
        return stored;
    }
    node->m_place = std::make_shared<Place>();
    node->m_snapshot.reset();
    stored->m_removed = std::move(node->m_removed);
    for (auto& [name, child] : node->ownChildren()) {
        if (Ptr storedChild = takeStoredState(child)) {
            stored->m_children->emplace(name, std::move(storedChild));
        }
    }
    return stored;
}

// A directory without a snapshot of its own has no ancestor with one.
void FileWrapper::didChange() {
    for (FileWrapper* node = this; node && node->m_snapshot; node = node->m_parent) {
        node->m_snapshot.reset();
    }
}

FileWrapper::Snapshot FileWrapper::snapshot() const {
    if (m_snapshot) { return m_snapshot; }
    assertContract(isDirectory(), u"a snapshot is taken of a directory"_s);
    Ptr taken = std::make_shared<Node>(m_kind, m_place);
    taken->m_filename = m_filename;
    taken->m_preferredFilename = m_preferredFilename;
    m_place->isInSnapshot = true;
    if (m_holdsDirectories) {
        taken->m_children = std::make_shared<Children>();
        for (const auto& [name, child] : *m_children) {
            if (child->isDirectory()) { child->snapshot(); }
            child->m_place->isInSnapshot = true;
            taken->m_children->emplace_hint(taken->m_children->end(), name,
                                            child->isDirectory() ? child->m_snapshot : child);
        }
    } else {
        taken->m_children = m_children;
        m_sharesChildren = true;
    }
    if (m_removed) {
        std::erase_if(*m_removed, [](const Ptr& node) { return !node->m_place->mayBeStored(); });
        taken->m_removed = std::make_unique<std::vector<Ptr>>(*m_removed);
    }
    m_snapshot = taken;
    return m_snapshot;
}

void FileWrapper::pc_replaceSubFileWrapperNamed(const QString& name, const QByteArray& data) {
    const Ptr present = child(name);
    if (present && present->isRegularFile() && present->contents() == data) { return; }
    pc_deleteSubFileWrapperNamed(name);
    addFileWrapper(regularFile(data, name));
}

void FileWrapper::pc_deleteSubFileWrapperNamed(const QString& name) {
    if (fileWrappers().contains(name)) { removeChild(name); }
}

void FileWrapper::pc_ensureSubfileWrapperDoesNotExistWithName(const QString& name) {
    pc_deleteSubFileWrapperNamed(name);
}

FileWrapper::Ptr FileWrapper::pc_ensureSubfileWrapperDirectoryExistsWithName(const QString& name) {
    if (Ptr present = child(name)) {
        if (!present->isDirectory()) { throw InputError(name, u"is not a directory"_s); }
        return present;
    }
    Ptr made = directory(name);
    const QString filed = addFileWrapper(made);
    if (filed != name) { failContract(u"%1 != %2"_s.arg(filed, name)); }
    return made;
}

void FileWrapper::pc_copySubFileWrappersToFileWrapper(FileWrapper& target) const {
    assertContract(&target != this, u"a directory cannot be copied into itself"_s);
    for (const auto& [name, node] : fileWrappers()) {
        if (node->isDirectory()) {
            const Ptr copy = target.pc_ensureSubfileWrapperDirectoryExistsWithName(name);
            node->pc_copySubFileWrappersToFileWrapper(*copy);
        } else if (node->isRegularFile()) {
            target.addFileWrapper(regularFile(node->contents(), node->m_preferredFilename));
        }
    }
}

QString FileWrapper::debugDescriptionWithIndent(const QString& indent) const {
    QString text;
    describe(indent, text);
    return text;
}

void FileWrapper::describe(const QString& indent, QString& text) const {
    const QString& name = m_filename.isNull() ? m_preferredFilename : m_filename;
    text += indent + name;
    if (isRegularFile() && name == u"name.data"_s) {
        text += u" (%1)"_s.arg(QString::fromUtf8(contents()));
    }
    text += u'\n';
    for (const auto& [childName, node] : fileWrappers()) {
        node->describe(indent + u"|     "_s, text);
    }
}

bool isSafeFilename(const QString& name) {
    constexpr qsizetype maxBytes = 255;  // NAME_MAX of Linux
    return isFilingName(name) && name.isValidUtf16() && name.size() <= maxBytes &&
           name.toUtf8().size() <= maxBytes;
}

}  // namespace tweenery
