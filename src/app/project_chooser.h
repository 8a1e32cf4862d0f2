#pragma once

#include <QDialog>
#include <QStringList>
#include <memory>

#include "app/folder_view.h"
#include "app/loose_thread.h"
#include "base/ports.h"

class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QPushButton;
class QRadioButton;

namespace tweenery {

/// The dialog in which projects, or a place for one, are chosen. A package is a document in it, and
/// folders are walked into. Whatever a disk has to answer is asked on threads of their own, so that
/// a slow one holds up nothing; what goes wrong is said in place.
class ProjectChooser : public QDialog {
    Q_OBJECT

 public:
    enum class Purpose { Open, Save };

    /// Starts where it was last used for the purpose. `alerts` asks before a project is replaced,
    /// and outlives this.
    ProjectChooser(Purpose purpose, const QString& title, AlertPort& alerts, QWidget* parent);
    ~ProjectChooser() override;

    void setFolder(const QString& folder);
    const QString& folder() const { return m_folder; }
    /// Of the project to save, without the suffix.
    void setName(const QString& name);
    /// What was chosen, once accepted: packages to open, or the one place to save at.
    const QStringList& paths() const { return m_paths; }

    void accept() override;
    void reject() override;

 protected:
    void keyPressEvent(QKeyEvent* event) override;

 private:
    const Purpose m_purpose;
    AlertPort& m_alerts;
    QString m_folder;
    QStringList m_paths;
    bool m_mayFallBack = true;  // the folder was not asked for by the user

    FolderModel m_model;
    QListWidget* m_places;
    QLineEdit* m_path;
    QRadioButton* m_grid;
    QRadioButton* m_list;
    QWidget* m_newFolderRow;
    QLineEdit* m_newFolderName;
    FolderView* m_view;
    QLabel* m_message;
    QLineEdit* m_name = nullptr;  // when saving
    QPushButton* m_default;

    // Each lets go of the one before.
    std::unique_ptr<LooseThread> m_listing;
    std::unique_ptr<LooseThread> m_question;
    std::unique_ptr<LooseThread> m_volumes;

    QLayout* makeTopRow();
    QWidget* makeNewFolderRow();
    QLayout* makeMiddle();
    QLayout* makeBottomRow();
    void fillPlaces();
    void addPlace(const QString& text, const QString& path);
    void addPlacesHeading(const QString& text);
    void addShortcuts();

    void showEntries(const std::vector<FolderEntry>& entries);
    void showFailure(const QString& reason);
    void showMessage(const QString& text);
    void showRefusal(const QString& path, const QString& reason);
    bool hasTypedPath() const;
    void updateDefault();

    template <class Answer>
    void ask(std::function<Answer()> question, std::function<void(const Answer&)> then);
    void goTo(const QListWidgetItem* place);
    void goUp();
    void goToTyped(const QString& text);
    void openSelected();
    void saveAtName();
    void save(const QString& path);
    void makeNewFolder();
    void hideNewFolderRow();
    void choose(const QStringList& paths);
    QString folderKey() const;
};

}  // namespace tweenery
