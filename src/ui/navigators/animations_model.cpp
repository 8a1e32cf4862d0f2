#include "ui/navigators/animations_model.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tweenery {

AnimationsModel::AnimationsModel(DocumentContext& document, QObject* parent)
    : QAbstractListModel(parent),
      m_undo(document.project()->undoManager()),
      m_manager(document.project()->animationsManager()),
      m_rows(m_manager.animations()),
      m_subscription(m_manager.addChangeListener(this)) {}

PCAnimation::Ptr AnimationsModel::animation(const QModelIndex& index) const {
    if (!index.isValid() || index.row() == kSetupRow) { return nullptr; }
    return m_rows[static_cast<size_t>(index.row()) - 1];
}

QModelIndex AnimationsModel::indexOf(const PCAnimation::Ptr& animation) const {
    if (!animation) { return index(kSetupRow); }
    const auto found = std::find(m_rows.begin(), m_rows.end(), animation);
    return found == m_rows.end() ? QModelIndex()
                                 : index(static_cast<int>(found - m_rows.begin()) + 1);
}

int AnimationsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size()) + 1;
}

QVariant AnimationsModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) { return {}; }
    const bool isText = role == Qt::DisplayRole || role == Qt::EditRole;
    if (const PCAnimation::Ptr shown = animation(index)) {
        return isText ? shown->name() : QVariant();
    }
    if (role == Qt::ToolTipRole) {
        return u"Setup Mode: Defines the initial Global State of all Elements. "
               "All animations remain relative to this Setup State."_s;
    }
    return isText ? u"setup"_s : QVariant();
}

bool AnimationsModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    const PCAnimation::Ptr renamed = animation(index);
    const QString name = value.toString();
    if (!renamed || role != Qt::EditRole || name.trimmed().isEmpty()) { return false; }
    const UndoGroup step(m_undo);
    m_manager.renameAnimation(renamed, name);
    m_undo.setActionName(u"Rename Animation"_s);
    return true;
}

Qt::ItemFlags AnimationsModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) { return Qt::NoItemFlags; }
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
    flags.setFlag(Qt::ItemIsEditable, index.row() != kSetupRow);
    return flags;
}

void AnimationsModel::animationManagerDidSelectAnimation(PCAnimationsManager&,
                                                         const PCAnimation::Ptr&) {
    Q_EMIT selectionChanged();
}

void AnimationsModel::animationManagerDidDeleteAnimation(PCAnimationsManager&,
                                                         const PCAnimation::Ptr& animation) {
    const QModelIndex index = indexOf(animation);
    if (!index.isValid()) { return; }
    beginRemoveRows({}, index.row(), index.row());
    m_rows.erase(m_rows.begin() + (index.row() - 1));
    endRemoveRows();
}

void AnimationsModel::animationManagerDidRenameAnimation(PCAnimationsManager&,
                                                         const PCAnimation::Ptr& animation) {
    const QModelIndex index = indexOf(animation);
    if (index.isValid()) { Q_EMIT dataChanged(index, index); }
}

void AnimationsModel::animationManagerDidAddAnimation(PCAnimationsManager&,
                                                      const PCAnimation::Ptr& animation) {
    const auto& all = m_manager.animations();
    const auto place = std::find(all.begin(), all.end(), animation) - all.begin();
    const int row = static_cast<int>(place) + 1;
    beginInsertRows({}, row, row);
    m_rows.insert(m_rows.begin() + place, animation);
    endInsertRows();
}

}  // namespace tweenery
