#include "ui/inspector/property_pane.h"

#include <QApplication>
#include <QPainter>

#include "ui/widgets/appearance.h"
#include "ui/widgets/fonts.h"
#include "ui/widgets/sizes.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

QString unitSign(NumberUnit unit) {
    switch (unit) {
        case NumberUnit::Points:
            return u"pt"_s;
        case NumberUnit::Percent:
            return u"%"_s;
        case NumberUnit::Degrees:
            break;
    }
    return u"°"_s;
}

int keyButtonCentreY(InspectorPaneKind kind, int height) {
    return kind == InspectorPaneKind::ZPosition ? sizes::zPositionHead / 2 : height / 2;
}

}  // namespace

PropertyPane::PropertyPane(InspectorPaneKind kind, int height,
                           PCDocumentWindowController& controller)
    : m_kind(kind), m_controller(controller) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    resize(sizes::paneWidth, height);
    if (keyedTypes(kind).empty()) { return; }
    m_keyButton = new KeyButton(kind, this);
    const QPoint centre(sizes::paneMargin + sizes::keyButton / 2, keyButtonCentreY(kind, height));
    m_keyButton->move(centre - KeyButton::centreFromTopLeft());
    connect(m_keyButton, &QAbstractButton::clicked, this, [this] {
        edits().createKeyframes(m_kind);
        Q_EMIT edited();
    });
}

InspectorEdits& PropertyPane::edits() {
    InspectorEdits& edits = m_controller.inspectorEdits();
    auto* field = qobject_cast<NumberField*>(QApplication::focusWidget());
    if (field && !edits.isDragging()) { field->commit(); }
    return edits;
}

void PropertyPane::addField(InspectorField field, int top) {
    auto* label = new ScrubbyLabel(this);
    label->setGeometry(sizes::paneLabelLeft, top, sizes::paneLabelWidth, sizes::paneFieldHeight);
    addDrag(label);
    connect(label, &ScrubbyLabel::scrubbed, this, [this, field](double delta) {
        edits().step(field, delta);
        Q_EMIT edited();
    });
    m_labels.push_back(label);
    auto* number = new NumberField(field, this);
    number->move(sizes::paneFieldLeft - sizes::paneFieldBezel, top - sizes::paneFieldBezel);
    setUpField(*number);
    m_fields.push_back(number);
}

void PropertyPane::setUpField(NumberField& field) {
    const InspectorField which = field.field();
    connect(&field, &NumberField::typed, this, [this, which](double number) {
        m_controller.inspectorEdits().set(which, number);
        Q_EMIT edited();
    });
    connect(&field, &NumberField::stepped, this, [this, which](double delta) {
        m_controller.inspectorEdits().step(which, delta);
        Q_EMIT edited();
    });
    connect(&field, &TextField::left, this, [this, &field] {
        if (!field.isRefused()) { Q_EMIT left(); }
    });
}

void PropertyPane::showValues(const InspectorValues& values, EditTime when) {
    if (m_keyButton) {
        m_keyButton->setInAnimation(!when.isSetup());
        m_keyButton->setState(values.key(m_kind));
    }
    for (size_t i = 0; i < m_fields.size(); ++i) {
        NumberField& field = *m_fields[i];
        const QString label = labelOf(field.field(), when.isSetup());
        if (field.accessibleName() != label) {
            field.setAccessibleName(label);
            m_labels[i]->setLabel(label);
        }
        field.setValue(values[field.field()]);
    }
}

void PropertyPane::paintEvent(QPaintEvent*) {
    const WorkbenchColors& colors = Appearance::current().workbench();
    QPainter painter(this);
    painter.fillRect(rect(), colors.pane);
    painter.setFont(lightFont(sizes::paneUnitSize));
    painter.setPen(colors.paneSecondInk);
    const int left = sizes::paneFieldLeft + sizes::paneFieldWidth + sizes::paneUnitGap;
    for (const NumberField* field : m_fields) {
        const QRect place(left, field->y(), sizes::paneExtraLeft - left, field->height());
        painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter, unitSign(unitOf(field->field())));
    }
}

}  // namespace tweenery
