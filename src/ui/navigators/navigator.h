#pragma once

#include <QWidget>

#include "ui/navigators/animations_view.h"
#include "ui/navigators/elements_view.h"
#include "ui/widgets/header_view.h"

namespace tweenery {

/// The left pane of a window: the list of elements above the list of animations, each below its
/// title. The title of the animations is also the handle that divides the two. It adds the commands
/// to rename, and to add an animation, to those of the document.
class Navigator : public QWidget {
    Q_OBJECT

 public:
    /// Not owned; lives longer.
    explicit Navigator(DocumentContext& document, QWidget* parent = nullptr);

    ElementsView& elementsView() { return m_elements; }
    AnimationsView& animationsView() { return m_animations; }
    /// Height of the upper part with its title, in points; kept to what leaves both lists a row.
    int dividerPosition() const { return m_divider; }
    void setDividerPosition(int position);
    /// Keeps what was typed into an open field, and closes it.
    void endEditing();

    QSize minimumSizeHint() const override;

 protected:
    void resizeEvent(QResizeEvent* event) override;

 private:
    HeaderView m_elementsHeader;
    ElementsView m_elements;
    HeaderView m_animationsHeader;
    AnimationsView m_animations;
    int m_divider = 0;
    double m_share = 0;  // of the upper part in the whole height

    void setUpHeaders(CommandSet& commands);
    void addCommands(DocumentContext& document);
    void layOut();
};

}  // namespace tweenery
