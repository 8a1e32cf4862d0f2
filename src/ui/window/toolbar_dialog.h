#pragma once

#include <QDialog>
#include <QListWidget>

namespace tweenery {

/// The items of the toolbar in their order: chosen from a list, moved by drag or by buttons.
class ToolbarDialog : public QDialog {
    Q_OBJECT

 public:
    ToolbarDialog(const QStringList& identifiers, QWidget* parent);

    QStringList identifiers() const;

 private:
    void showItems(const QStringList& identifiers);
    void addCurrent();
    void removeCurrent();
    void moveCurrent(int by);
    void updateAvailable();

    QListWidget* m_available;
    QListWidget* m_chosen;
};

}  // namespace tweenery
