#include <QPainter>
#include <functional>

#include "ui/inspector/image_pane.h"
#include "ui/inspector/opacity_slider.h"
#include "ui/inspector/property_pane.h"
#include "ui/inspector/rotate_dial.h"
#include "ui/inspector/z_position_pane.h"
#include "ui/widgets/appearance.h"
#include "ui/widgets/icon_button.h"
#include "ui/widgets/icons.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr int kFirstRow = sizes::paneMargin;
constexpr int kSecondRow = kFirstRow + sizes::paneFieldHeight + sizes::paneRowGap;
constexpr int kSignCentreX = sizes::paneExtraLeft + 19;
constexpr double kBracketLine = 1.5;
constexpr int kSignGap = 11;  // from the middle of the sign to the bracket

int fieldTop(int paneHeight) {
    return (paneHeight - sizes::paneFieldHeight) / 2;
}

// Joins both fields of a pane, with a sign between.
void paintBracket(QPainter& painter, const QColor& color) {
    const double half = sizes::paneFieldHeight / 2.0;
    const double upper = kFirstRow + half;
    const double lower = kSecondRow + half;
    const double middle = sizes::twoRowPane / 2.0;
    painter.setPen(QPen(color, kBracketLine, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin));
    painter.drawPolyline(QPolygonF(
        {{sizes::paneExtraLeft, upper}, {kSignCentreX, upper}, {kSignCentreX, middle - kSignGap}}));
    painter.drawPolyline(QPolygonF(
        {{sizes::paneExtraLeft, lower}, {kSignCentreX, lower}, {kSignCentreX, middle + kSignGap}}));
}

void placeSign(QWidget& sign) {
    sign.move(kSignCentreX - sign.width() / 2, sizes::twoRowPane / 2 - sign.height() / 2);
}

class CanvasSizePane : public PropertyPane {
 public:
    explicit CanvasSizePane(PCDocumentWindowController& controller)
        : PropertyPane(InspectorPaneKind::CanvasSize, sizes::twoRowPane, controller),
          m_swap(u"swap"_s, sizes::paneSign, this) {
        addField(InspectorField::CanvasWidth, kFirstRow);
        addField(InspectorField::CanvasHeight, kSecondRow);
        m_swap.setInk([] { return Appearance::current().workbench().paneInk; });
        m_swap.setToolTip(u"Swap Width and Height"_s);
        m_swap.setAccessibleName(u"Swap Width and Height"_s);
        placeSign(m_swap);
        connect(&m_swap, &QAbstractButton::clicked, this, [this] {
            edits().swapCanvasSize();
            Q_EMIT edited();
        });
    }

    void showValues(const InspectorValues& values, EditTime when) override {
        PropertyPane::showValues(values, when);
        const bool isLandscape =
            values[InspectorField::CanvasWidth] > values[InspectorField::CanvasHeight];
        if (isLandscape == m_isLandscape) { return; }
        m_isLandscape = isLandscape;
        update();
    }

 protected:
    void paintEvent(QPaintEvent* event) override {
        PropertyPane::paintEvent(event);
        const WorkbenchColors& colors = Appearance::current().workbench();
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        paintBracket(painter, colors.bracket);
        QRectF picture(0, 0, sizes::keyPicture, sizes::keyPicture);
        picture.moveCenter({sizes::paneMargin + sizes::keyButton / 2.0, height() / 2.0});
        paintIcon(painter, picture,
                  m_isLandscape ? u"canvas_icon_landscape"_s : u"canvas_icon_portrait"_s,
                  colors.paneInk);
    }

 private:
    IconButton m_swap;
    bool m_isLandscape = false;
};

class PositionPane : public PropertyPane {
 public:
    explicit PositionPane(PCDocumentWindowController& controller)
        : PropertyPane(InspectorPaneKind::Position, sizes::twoRowPane, controller) {
        addField(InspectorField::PositionX, kFirstRow);
        addField(InspectorField::PositionY, kSecondRow);
    }
};

class ScalePane : public PropertyPane {
 public:
    explicit ScalePane(PCDocumentWindowController& controller)
        : PropertyPane(InspectorPaneKind::Scale, sizes::twoRowPane, controller),
          m_lock(u"link_off"_s, sizes::paneSign, this) {
        addField(InspectorField::ScaleX, kFirstRow);
        addField(InspectorField::ScaleY, kSecondRow);
        m_lock.setCheckable(true);
        m_lock.setAlternatePicture(u"link_on"_s);
        m_lock.setInk([this] { return ink(); });
        m_lock.setToolTip(u"Lock Scales"_s);
        m_lock.setAccessibleName(u"Lock Scales"_s);
        placeSign(m_lock);
        connect(&m_lock, &QAbstractButton::clicked, this, [this](bool isOn) {
            edits().setScalesLocked(isOn);
            update();
            Q_EMIT edited();
        });
    }

    void showValues(const InspectorValues& values, EditTime when) override {
        PropertyPane::showValues(values, when);
        if (m_lock.isChecked() == values.areScalesLocked) { return; }
        m_lock.setChecked(values.areScalesLocked);
        update();
    }

 protected:
    void paintEvent(QPaintEvent* event) override {
        PropertyPane::paintEvent(event);
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        paintBracket(painter, ink());
    }

 private:
    IconButton m_lock;

    QColor ink() const {
        const WorkbenchColors& colors = Appearance::current().workbench();
        return m_lock.isChecked() ? colors.paneInk : colors.bracket;
    }
};

class RotatePane : public PropertyPane {
 public:
    explicit RotatePane(PCDocumentWindowController& controller)
        : PropertyPane(InspectorPaneKind::Rotation, sizes::rotationPane, controller), m_dial(this) {
        addField(InspectorField::Rotation, fieldTop(height()));
        m_dial.move(sizes::paneExtraLeft, (height() - sizes::rotateDial) / 2);
        addDrag(&m_dial);
        connect(&m_dial, &RotateDial::turned, this, [this](double degrees) {
            edits().step(InspectorField::Rotation, degrees);
            Q_EMIT edited();
        });
    }

    void showValues(const InspectorValues& values, EditTime when) override {
        PropertyPane::showValues(values, when);
        m_dial.setRadians(values.dialRadians);
    }

 private:
    RotateDial m_dial;
};

class OpacityPane : public PropertyPane {
 public:
    explicit OpacityPane(PCDocumentWindowController& controller)
        : PropertyPane(InspectorPaneKind::Opacity, sizes::opacityPane, controller), m_slider(this) {
        addField(InspectorField::Opacity, fieldTop(height()));
        m_slider.move(sizes::paneExtraLeft, fieldTop(height()));
        addDrag(&m_slider);
        connect(&m_slider, &OpacitySlider::moved, this, [this](double opacity) {
            edits().setOpacity(opacity);
            Q_EMIT edited();
        });
        connect(&m_slider, &OpacitySlider::stepped, this, [this](double percents) {
            edits().step(InspectorField::Opacity, percents);
            Q_EMIT edited();
        });
    }

    void showValues(const InspectorValues& values, EditTime when) override {
        PropertyPane::showValues(values, when);
        m_slider.setOpacity(values.sliderOpacity);
    }

 private:
    OpacitySlider m_slider;
};

}  // namespace

std::vector<std::unique_ptr<PropertyPane>> makePropertyPanes(
    PCDocumentWindowController& controller) {
    std::vector<std::unique_ptr<PropertyPane>> panes;
    panes.push_back(std::make_unique<CanvasSizePane>(controller));
    panes.push_back(std::make_unique<PositionPane>(controller));
    panes.push_back(std::make_unique<ScalePane>(controller));
    panes.push_back(std::make_unique<RotatePane>(controller));
    panes.push_back(std::make_unique<OpacityPane>(controller));
    panes.push_back(std::make_unique<ImagePane>(controller));
    panes.push_back(std::make_unique<ZPositionPane>(controller));
    return panes;
}

}  // namespace tweenery
