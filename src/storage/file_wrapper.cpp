#include "storage/file_wrapper.h"

#include "base/errors.h"

namespace tweenery {

using namespace Qt::StringLiterals;

namespace {

const FileWrapper::Children noChildren;

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
    explicit Node(Kind kind) : FileWrapper(kind) {}
};

FileWrapper::Ptr FileWrapper::create(Kind kind, const QString& preferredFilename) {
    Ptr node = std::make_shared<Node>(kind);
    node->m_preferredFilename = preferredFilename;
    if (kind == Kind::Directory) { node->m_children = std::make_unique<Children>(); }
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

FileWrapper::Ptr FileWrapper::symbolicLink(const QByteArray& target,
                                           const QString& preferredFilename) {
    Ptr node = create(Kind::SymbolicLink, preferredFilename);
    node->m_contents = target;
    return node;
}

const FileWrapper::Children& FileWrapper::fileWrappers() const {
    return m_children ? *m_children : noChildren;
}

const FileWrapper::Children& FileWrapper::removedEntries() const {
    return m_removed ? *m_removed : noChildren;
}

FileWrapper::Ptr FileWrapper::child(const QString& name) const {
    const auto found = fileWrappers().find(name);
    return found == fileWrappers().end() ? nullptr : found->second;
}

void FileWrapper::setOrigin(const std::optional<Origin>& origin) {
    m_origin = origin;
    m_removed.reset();
}

QString FileWrapper::addFileWrapper(const Ptr& node) {
    assertContract(isDirectory(), u"only a directory holds entries"_s);
    const QString& wanted = node->m_preferredFilename;
    if (!isFilingName(wanted)) { failContract(u"\"%1\" cannot name an entry"_s.arg(wanted)); }
    node->takeStoredState();
    QString name = m_children->contains(wanted) ? numberedName(wanted, *m_children) : wanted;
    node->m_filename = name;
    m_children->emplace(name, node);
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
    removeChild(position);
}

void FileWrapper::removeChild(Children::iterator position) {
    if (Ptr stored = position->second->takeStoredState()) {
        if (!m_removed) { m_removed = std::make_unique<Children>(); }
        m_removed->insert_or_assign(position->first, std::move(stored));
    }
    m_children->erase(position);
}

// Takes what is known about the disk out of a subtree that leaves its place: the node is new
// wherever it is filed next, and the returned skeleton stays behind in its old parent.
FileWrapper::Ptr FileWrapper::takeStoredState() {
    if (!m_origin) { return nullptr; }
    Ptr stored = create(m_kind, m_filename);
    stored->m_filename = m_filename;
    stored->m_origin = std::exchange(m_origin, std::nullopt);
    if (!isDirectory()) { return stored; }
    if (m_removed) { stored->m_children = std::move(m_removed); }
    for (const auto& [name, child] : *m_children) {
        if (Ptr storedChild = child->takeStoredState()) {
            stored->m_children->insert_or_assign(name, std::move(storedChild));
        }
    }
    return stored;
}

void FileWrapper::pc_replaceSubFileWrapperNamed(const QString& name, const QByteArray& data) {
    const Ptr present = child(name);
    if (present && present->isRegularFile() && present->m_contents == data) { return; }
    pc_deleteSubFileWrapperNamed(name);
    addFileWrapper(regularFile(data, name));
}

void FileWrapper::pc_deleteSubFileWrapperNamed(const QString& name) {
    if (!m_children) { return; }
    const auto position = m_children->find(name);
    if (position != m_children->end()) { removeChild(position); }
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
            target.addFileWrapper(regularFile(node->m_contents, node->m_preferredFilename));
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
        text += u" (%1)"_s.arg(QString::fromUtf8(m_contents));
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
