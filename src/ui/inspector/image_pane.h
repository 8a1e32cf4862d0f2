#pragma once

#include <QAbstractButton>
#include <QPointer>

#include "ui/inspector/property_pane.h"

namespace tweenery {

class ImageChooser;
class Popover;

/// The picture that the selected element shows, on a button that opens the choice of another one.
class ImageButton : public QAbstractButton {
    Q_OBJECT

 public:
    explicit ImageButton(QWidget* parent);

    /// Null shows an empty board.
    void setImageSet(const PCImageSetManager::ImageSet& set);
    void setOpen(bool isOpen);

 protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

 private:
    PCImageSetManager::ImageSet m_set;
    bool m_isOpen = false;
};

/// The pane of the image: the button, with name, size and density beside it.
class ImagePane : public PropertyPane {
    Q_OBJECT

 public:
    explicit ImagePane(PCDocumentWindowController& controller);

    void showValues(const InspectorValues& values, EditTime when) override;

 protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

 private:
    ImageButton m_button;
    PCImageSetManager::ImageSet m_set;
    uint64_t m_revision = 0;
    QString m_name;  // of the artwork, without extension
    QStringList m_details;
    QPointer<Popover> m_popover;
    QPointer<ImageChooser> m_chooser;

    void openChooser();
    void choose(const QString& imageName);
    void apply(const std::function<void()>& edit);
    void browse();
    QRect nameRect() const;
};

}  // namespace tweenery
