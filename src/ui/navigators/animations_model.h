#pragma once

#include <QAbstractListModel>

#include "editor/document_context.h"

namespace tweenery {

/// The setup row, and the project's animations below it in their order. Row and animation numbers
/// differ by one. Always up to date.
class AnimationsModel : public QAbstractListModel, private PCAnimationsManagerChangeListener {
    Q_OBJECT

 public:
    static constexpr int kSetupRow = 0;

    /// Not owned; lives longer.
    explicit AnimationsModel(DocumentContext& document, QObject* parent = nullptr);

    /// Null for the setup row, and for none.
    PCAnimation::Ptr animation(const QModelIndex& index) const;
    /// Null is setup.
    QModelIndex indexOf(const PCAnimation::Ptr& animation) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

 Q_SIGNALS:
    /// The project has selected another animation, or setup.
    void selectionChanged();

 private:
    UndoManager& m_undo;
    PCAnimationsManager& m_manager;
    PCAnimationsManager::Animations m_rows;
    Subscription m_subscription;

    void animationManagerDidSelectAnimation(PCAnimationsManager&, const PCAnimation::Ptr&) override;
    void animationManagerDidDeleteAnimation(PCAnimationsManager&, const PCAnimation::Ptr&) override;
    void animationManagerDidRenameAnimation(PCAnimationsManager&, const PCAnimation::Ptr&) override;
    void animationManagerDidAddAnimation(PCAnimationsManager&, const PCAnimation::Ptr&) override;
};

}  // namespace tweenery
