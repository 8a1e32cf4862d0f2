#include "app/project_chooser.h"

#include <QAccessible>
#include <QBoxLayout>
#include <QDir>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QTimer>

#include "app/recent_projects.h"
#include "base/errors.h"
#include "base/path_name.h"
#include "base/user_defaults.h"
#include "base/visible_text.h"
#include "storage/package_entries.h"
#include "storage/package_preview.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace tweenery {
namespace {

constexpr QSize kSize{820, 540};
constexpr int kPlacesWidth = 180;
constexpr int kPlacesSpacing = 3;
constexpr int kMostRecentFolders = 5;
constexpr int kGap = 10;
// A folder that is read sooner shows no sign of it.
constexpr auto kReadingIsShownAfter = 300ms;
const QString kGridKey = u"projectsAreGrid"_s;
const QString kSuffix = u'.' + kPackageExtension.toString();

QString withSuffix(const QString& path) {
    return pathExtension(lastPathComponent(path)) == kPackageExtension ? path : path + kSuffix;
}

}  // namespace

ProjectChooser::ProjectChooser(Purpose purpose, const QString& title, AlertPort& alerts,
                               QWidget* parent)
    : QDialog(parent), m_purpose(purpose), m_alerts(alerts) {
    setWindowTitle(title);
    resize(kSize);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(sizes::dialogMargin, sizes::dialogMargin, sizes::dialogMargin,
                               sizes::dialogMargin);
    layout->setSpacing(kGap);
    layout->addLayout(makeTopRow());
    layout->addWidget(makeNewFolderRow());
    layout->addLayout(makeMiddle(), 1);
    m_message = new QLabel(this);
    m_message->setWordWrap(true);
    m_message->setTextFormat(Qt::PlainText);
    m_message->setMinimumHeight(sizes::frameTextLine);
    layout->addWidget(m_message);
    layout->addLayout(makeBottomRow());
    addShortcuts();
    fillPlaces();
    (m_name ? static_cast<QWidget*>(m_name) : m_view)->setFocus();
    const QString last = UserDefaults::standard().value(folderKey()).toString();
    setFolder(last.isEmpty() ? QDir::homePath() : last);
    m_mayFallBack = true;
}

ProjectChooser::~ProjectChooser() = default;

QString ProjectChooser::folderKey() const {
    return m_purpose == Purpose::Open ? u"folderOfOpen"_s : u"folderOfSave"_s;
}

// The controls.

QLayout* ProjectChooser::makeTopRow() {
    auto* row = new QHBoxLayout;
    auto* up = new QPushButton(u"Up"_s, this);
    up->setToolTip(u"Enclosing Folder (Alt+Up)"_s);
    connect(up, &QPushButton::clicked, this, &ProjectChooser::goUp);
    m_path = new QLineEdit(this);
    m_path->setAccessibleName(u"Path"_s);
    connect(m_path, &QLineEdit::textEdited, this, &ProjectChooser::updateDefault);
    m_grid = new QRadioButton(u"Grid"_s, this);
    m_list = new QRadioButton(u"List"_s, this);
    connect(m_grid, &QRadioButton::toggled, this, [this](bool isGrid) {
        m_view->setIsGrid(isGrid);
        UserDefaults::standard().setValue(kGridKey, isGrid);
    });
    auto* newFolder = new QPushButton(u"New Folder…"_s, this);
    newFolder->setAccessibleName(u"New Folder"_s);
    newFolder->setToolTip(u"New Folder (Ctrl+Shift+N)"_s);
    connect(newFolder, &QPushButton::clicked, this, [this] {
        m_newFolderRow->show();
        m_newFolderName->setFocus();
    });
    for (QPushButton* button : {up, newFolder}) {
        button->setAutoDefault(false);
    }
    row->setSpacing(kGap);
    row->addWidget(up);
    row->addWidget(m_path, 1);
    row->addWidget(m_grid);
    row->addWidget(m_list);
    row->addWidget(newFolder);
    return row;
}

QWidget* ProjectChooser::makeNewFolderRow() {
    m_newFolderRow = new QWidget(this);
    auto* row = new QHBoxLayout(m_newFolderRow);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(kGap);
    auto* label = new QLabel(u"Name of the new folder:"_s, m_newFolderRow);
    m_newFolderName = new QLineEdit(m_newFolderRow);
    m_newFolderName->setAccessibleName(u"Name of the new folder"_s);
    label->setBuddy(m_newFolderName);
    auto* create = new QPushButton(u"Create"_s, m_newFolderRow);
    create->setAutoDefault(false);
    connect(create, &QPushButton::clicked, this, &ProjectChooser::makeNewFolder);
    row->addWidget(label);
    row->addWidget(m_newFolderName, 1);
    row->addWidget(create);
    m_newFolderRow->hide();
    return m_newFolderRow;
}

QLayout* ProjectChooser::makeMiddle() {
    auto* middle = new QHBoxLayout;
    middle->setSpacing(kGap);
    m_places = new QListWidget(this);
    m_places->setAccessibleName(u"Places"_s);
    m_places->setFixedWidth(kPlacesWidth);
    m_places->setFrameShape(QFrame::NoFrame);
    m_places->setSpacing(kPlacesSpacing);
    m_places->setTextElideMode(Qt::ElideRight);
    m_places->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(m_places, &QListWidget::itemClicked, this, &ProjectChooser::goTo);

    m_view = new FolderView(this);
    m_view->setAccessibleName(u"Projects and Folders"_s);
    m_view->setModel(&m_model);
    const bool isGrid = UserDefaults::standard().value(kGridKey).toString() != u"false";
    (isGrid ? m_grid : m_list)->setChecked(true);
    m_view->setIsGrid(isGrid);
    if (m_purpose == Purpose::Open) { m_view->setSelectionMode(FolderView::ExtendedSelection); }
    connect(m_view, &QListView::doubleClicked, this, &ProjectChooser::openSelected);
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        const QModelIndexList selected = m_view->selectionModel()->selectedIndexes();
        if (m_name && selected.size() == 1 && m_model.entry(selected.first()).isProject) {
            setName(withoutPathExtension(m_model.entry(selected.first()).name));
        }
        showMessage({});
        updateDefault();
    });
    middle->addWidget(m_places);
    middle->addWidget(m_view, 1);
    return middle;
}

QLayout* ProjectChooser::makeBottomRow() {
    auto* row = new QHBoxLayout;
    row->setSpacing(kGap);
    if (m_purpose == Purpose::Save) {
        auto* label = new QLabel(u"Name:"_s, this);
        m_name = new QLineEdit(this);
        m_name->setAccessibleName(u"Name"_s);
        label->setBuddy(m_name);
        connect(m_name, &QLineEdit::textEdited, this, [this] {
            showMessage({});
            updateDefault();
        });
        row->addWidget(label);
        row->addWidget(m_name, 1);
    } else {
        row->addStretch(1);
    }
    auto* cancel = new QPushButton(u"Cancel"_s, this);
    cancel->setAutoDefault(false);
    connect(cancel, &QPushButton::clicked, this, [this] { QDialog::reject(); });
    m_default = new QPushButton(m_purpose == Purpose::Open ? u"Open"_s : u"Save"_s, this);
    m_default->setDefault(true);
    connect(m_default, &QPushButton::clicked, this, &ProjectChooser::accept);
    row->addWidget(cancel);
    row->addWidget(m_default);
    return row;
}

void ProjectChooser::addPlacesHeading(const QString& text) {
    auto* item = new QListWidgetItem(text, m_places);
    item->setFlags(Qt::NoItemFlags);
    item->setFont(regularFont(sizes::captionTextSize));
    item->setForeground(Appearance::current().frame().secondInk);
}

void ProjectChooser::addPlace(const QString& text, const QString& path) {
    auto* item = new QListWidgetItem(visibleText(text), m_places);
    item->setData(Qt::UserRole, path);
    item->setToolTip(visibleText(path));
}

void ProjectChooser::fillPlaces() {
    addPlace(u"Home"_s, QDir::homePath());
    QStringList folders;
    for (const QString& path : recentProjects()) {
        folders << path.first(std::max<qsizetype>(path.lastIndexOf(u'/'), 1));
    }
    folders.removeDuplicates();
    if (!folders.isEmpty()) { addPlacesHeading(u"Recent"_s); }
    for (const QString& folder : folders.mid(0, kMostRecentFolders)) {
        addPlace(lastPathComponent(folder), folder);
    }
    m_volumes = std::make_unique<LooseThread>([this](const LooseThread::Tell& tell) {
        tell([this, volumes = mountedVolumes()] {
            if (!volumes.isEmpty()) { addPlacesHeading(u"Volumes"_s); }
            for (const QString& volume : volumes) {
                addPlace(lastPathComponent(volume), volume);
            }
        });
    });
}

void ProjectChooser::addShortcuts() {
    const auto add = [this](const QString& keys, auto slot) {
        connect(new QShortcut(QKeySequence(keys), this), &QShortcut::activated, this, slot);
    };
    add(u"Alt+Up"_s, [this] { goUp(); });
    add(u"Ctrl+L"_s, [this] {
        m_path->setFocus();
        m_path->selectAll();
    });
    add(u"Ctrl+Shift+N"_s, [this] {
        m_newFolderRow->show();
        m_newFolderName->setFocus();
    });
}

// The folder.

void ProjectChooser::setFolder(const QString& folder) {
    m_folder = QDir::cleanPath(folder);
    m_mayFallBack = false;
    m_path->setText(visibleText(m_folder));
    m_model.setEntries({});
    m_view->setEmptyText({}, {});
    showMessage({});
    updateDefault();
    m_listing = std::make_unique<LooseThread>([this, path = m_folder](const auto& tell) {
        std::vector<FolderEntry> entries;
        try {
            entries = listProjectFolder(path);
        } catch (const InputError& error) {
            tell([this, reason = error.reason()] { showFailure(reason); });
            return;
        }
        if (!tell([this, entries] { showEntries(entries); })) { return; }
        for (size_t i = 0; i < entries.size(); ++i) {
            if (!entries[i].isProject) { continue; }
            const QImage preview = packagePreview(entries[i].path);
            const auto show = [this, i, preview] {
                m_model.setPreview(static_cast<int>(i), preview);
            };
            if (!tell(show)) { return; }
        }
    });
    QTimer::singleShot(kReadingIsShownAfter, m_view, [this, path = m_folder] {
        const bool isReading = m_folder == path && m_view->accessibleDescription().isEmpty();
        if (isReading) { m_view->setEmptyText(u"Reading “%1”…"_s.arg(visibleText(path)), {}); }
    });
}

void ProjectChooser::showEntries(const std::vector<FolderEntry>& entries) {
    m_view->setEmptyText(u"No projects here"_s,
                         m_purpose == Purpose::Open
                             ? u"Projects are folders that end in “%1”."_s.arg(kSuffix)
                             : u"Your project is saved into this folder."_s);
    m_model.setEntries(entries);
    if (!entries.empty()) {
        m_view->selectionModel()->setCurrentIndex(m_model.index(0), QItemSelectionModel::NoUpdate);
    }
    updateDefault();
}

void ProjectChooser::showFailure(const QString& reason) {
    if (m_mayFallBack && m_folder != QDir::homePath()) { return setFolder(QDir::homePath()); }
    m_view->setEmptyText(u"“%1” %2."_s.arg(visibleText(m_folder), reason),
                         u"Choose another place."_s);
}

void ProjectChooser::goTo(const QListWidgetItem* place) {
    if (place) { setFolder(place->data(Qt::UserRole).toString()); }
}

void ProjectChooser::goUp() {
    setFolder(m_folder + u"/.."_s);
    m_view->setFocus();
}

// Messages.

void ProjectChooser::showMessage(const QString& text) {
    QPalette palette = m_message->palette();
    palette.setColor(QPalette::WindowText, Appearance::current().frame().danger);
    m_message->setPalette(palette);
    m_message->setText(text);
    if (text.isEmpty() || !QAccessible::isActive()) { return; }
    QAccessibleEvent event(m_message, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

void ProjectChooser::showRefusal(const QString& path, const QString& reason) {
    showMessage(u"“%1” %2."_s.arg(visibleText(path), reason));
}

bool ProjectChooser::hasTypedPath() const {
    return m_path->text() != visibleText(m_folder);
}

void ProjectChooser::updateDefault() {
    const bool hasChoice =
        m_name ? !m_name->text().trimmed().isEmpty() : m_view->selectionModel()->hasSelection();
    m_default->setEnabled(!m_question && (hasChoice || hasTypedPath()));
}

// What was chosen.

template <class Answer>
void ProjectChooser::ask(std::function<Answer()> question,
                         std::function<void(const Answer&)> then) {
    m_question = std::make_unique<LooseThread>([this, question, then](const auto& tell) {
        tell([this, then, answer = question()] {
            m_question.reset();
            updateDefault();
            then(answer);
        });
    });
    showMessage({});
    updateDefault();
}

void ProjectChooser::accept() {
    if (m_question) { return; }
    if (hasTypedPath()) { return goToTyped(m_path->text()); }
    m_purpose == Purpose::Open ? openSelected() : saveAtName();
}

// Return does what belongs to where the keyboard is.
void ProjectChooser::keyPressEvent(QKeyEvent* event) {
    if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
        return QDialog::keyPressEvent(event);
    }
    if (m_question) { return; }
    if (auto* button = qobject_cast<QPushButton*>(focusWidget())) { return button->click(); }
    if (m_newFolderName->hasFocus()) { return makeNewFolder(); }
    if (m_path->hasFocus()) { return goToTyped(m_path->text()); }
    if (m_places->hasFocus()) { return goTo(m_places->currentItem()); }
    if (m_view->hasFocus()) { return openSelected(); }
    accept();
}

void ProjectChooser::reject() {
    if (m_newFolderName->hasFocus()) { return hideNewFolderRow(); }
    QDialog::reject();
}

void ProjectChooser::goToTyped(const QString& text) {
    const QString path = text == visibleText(m_folder) ? m_folder : typedPath(text, m_folder);
    ask<FoundPlace>([path] { return findPlace(path); },
                    [this](const FoundPlace& found) {
                        if (found.kind == FoundPlace::Kind::Refused) {
                            showRefusal(found.path, found.reason);
                        } else if (found.kind == FoundPlace::Kind::Folder) {
                            setFolder(found.path);
                            (m_name ? static_cast<QWidget*>(m_name) : m_view)->setFocus();
                        } else if (m_purpose == Purpose::Open) {
                            choose({found.path});
                        } else {
                            save(found.path);
                        }
                    });
}

void ProjectChooser::openSelected() {
    QStringList projects;
    QString folder;
    for (const QModelIndex& index : m_view->selectionModel()->selectedIndexes()) {
        const FolderEntry& entry = m_model.entry(index);
        if (entry.isProject) {
            projects << entry.path;
        } else {
            folder = entry.path;
        }
    }
    if (projects.isEmpty() && !folder.isEmpty()) { return setFolder(folder); }
    if (m_purpose == Purpose::Save) { return saveAtName(); }
    if (!projects.isEmpty()) { choose(projects); }
}

void ProjectChooser::setName(const QString& name) {
    m_name->setText(name);
    m_name->selectAll();
    updateDefault();
}

void ProjectChooser::saveAtName() {
    const QString name = m_name->text().trimmed();
    if (name.isEmpty()) { return; }
    const QString path = typedPath(name, m_folder);
    const bool isPlainName = lastPathComponent(path) == name;
    ask<FoundPlace>([path] { return findPlace(path); },
                    [this, path, isPlainName](const FoundPlace& found) {
                        if (found.kind == FoundPlace::Kind::Folder && !isPlainName) {
                            setFolder(path);
                            setName({});
                        } else {
                            save(withSuffix(path));
                        }
                    });
}

void ProjectChooser::save(const QString& path) {
    ask<SavePlace>(
        [path] { return checkSavePlace(path); },
        [this, path](const SavePlace& place) {
            if (place.kind == SavePlace::Kind::Refused) { return showRefusal(path, place.reason); }
            if (place.kind == SavePlace::Kind::ReplacesProject) {
                const QString name = visibleText(withoutPathExtension(lastPathComponent(path)));
                const QString folder = visibleText(path.first(path.lastIndexOf(u'/')));
                const AlertAnswer answer = m_alerts.runModal(
                    {u"“%1” Is There Already"_s.arg(name),
                     u"There is a project of that name in %1. Do you want to replace it?"_s.arg(
                         folder),
                     {u"Cancel"_s, u"Replace"_s},
                     {}});
                if (answer.button != 1) { return; }
            }
            choose({path});
        });
}

void ProjectChooser::choose(const QStringList& paths) {
    m_paths = paths;
    UserDefaults::standard().setValue(
        folderKey(), paths.first().first(std::max<qsizetype>(paths.first().lastIndexOf(u'/'), 1)));
    QDialog::accept();
}

// New folders.

void ProjectChooser::makeNewFolder() {
    const QString name = m_newFolderName->text().trimmed();
    if (name.isEmpty()) { return; }
    const QString path = m_folder + u'/' + name;
    ask<QString>([folder = m_folder, name] { return makeFolder(folder, name); },
                 [this, path](const QString& fault) {
                     if (!fault.isEmpty()) { return showRefusal(path, fault); }
                     hideNewFolderRow();
                     setFolder(path);
                 });
}

void ProjectChooser::hideNewFolderRow() {
    m_newFolderName->clear();
    m_newFolderRow->hide();
    m_view->setFocus();
}

}  // namespace tweenery
