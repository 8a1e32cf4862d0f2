#include "ui/canvas/canvas_accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <array>
#include <unordered_map>

#include "ui/canvas/canvas_view.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

constexpr double kHandleSide = 13;  // points of the screen, as handles are drawn

// Where a part of a selected element's border lies, in units of its bounds.
struct BorderPart {
    QString name;
    QPointF unitPoint;
};

const std::vector<BorderPart>& borderParts() {
    static const std::vector<BorderPart> parts{
        {u"Top Left Handle"_s, {0, 0}},        {u"Top Center Handle"_s, {0.5, 0}},
        {u"Top Right Handle"_s, {1, 0}},       {u"Center Left Handle"_s, {0, 0.5}},
        {u"Center Right Handle"_s, {1, 0.5}},  {u"Bottom Left Handle"_s, {0, 1}},
        {u"Bottom Center Handle"_s, {0.5, 1}}, {u"Bottom Right Handle"_s, {1, 1}},
    };
    return parts;
}

// From the points of an element to those of the screen.
class ScreenPlace {
 public:
    ScreenPlace(CanvasView& view, const PCElement& element)
        : m_view(view), m_layer(*PCLayer::of(element)) {}

    QPointF screenPoint(QPointF point) const {
        PCDocumentWindowController& controller = m_view.controller();
        const QPointF onCanvas =
            controller.editorLayer().convertPointToCanvasFromLayer(point, m_layer);
        return m_view.viewport()->mapToGlobal(controller.viewport().viewPoint(onCanvas));
    }
    QRect box() const {
        const QRectF bounds = m_layer.bounds();
        QPolygonF outline;
        for (const QPointF& corner :
             {bounds.topLeft(), bounds.topRight(), bounds.bottomRight(), bounds.bottomLeft()}) {
            outline << screenPoint(corner);
        }
        return outline.boundingRect().toAlignedRect();
    }
    QRect square(QPointF unitPoint, QPointF beside = {}) const {
        const QSizeF size = m_layer.bounds().size();
        const QPointF middle =
            screenPoint({unitPoint.x() * size.width(), unitPoint.y() * size.height()}) + beside;
        return QRectF(middle - QPointF(kHandleSide, kHandleSide) / 2,
                      QSizeF(kHandleSide, kHandleSide))
            .toAlignedRect();
    }

 private:
    CanvasView& m_view;
    const PCLayer& m_layer;
};

class CanvasAccessible;

// What lies on the canvas: its canvas goes first.
class CanvasChild : public QAccessibleInterface {
 public:
    explicit CanvasChild(CanvasAccessible& canvas) : m_canvas(canvas) {}
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    void setText(QAccessible::Text, const QString&) override {}

 protected:
    CanvasAccessible& m_canvas;
};

class ElementAccessible : public CanvasChild, public QAccessibleActionInterface {
 public:
    ElementAccessible(CanvasAccessible& canvas, const PCElement::Ptr& element)
        : CanvasChild(canvas), m_element(element) {}

    bool isValid() const override;
    QAccessibleInterface* parent() const override;
    QAccessibleInterface* child(int index) const override;
    int childCount() const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QString text(QAccessible::Text kind) const override;
    QRect rect() const override;
    QAccessible::Role role() const override;
    QAccessible::State state() const override;
    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }

    QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& name) override;
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

    PCElement::Ptr element() const { return m_element.lock(); }

 private:
    std::weak_ptr<PCElement> m_element;
};

// A handle of the selected element, its rotation band, or its anchor point.
class PartAccessible : public CanvasChild {
 public:
    PartAccessible(CanvasAccessible& canvas, QString name, QPointF unitPoint, QPointF beside)
        : CanvasChild(canvas), m_name(std::move(name)), m_unitPoint(unitPoint), m_beside(beside) {}

    bool isValid() const override;
    QAccessibleInterface* parent() const override;
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? m_name : QString();
    }
    QRect rect() const override;
    QAccessible::Role role() const override { return QAccessible::PushButton; }
    QAccessible::State state() const override { return {}; }

 private:
    QString m_name;
    QPointF m_unitPoint;
    QPointF m_beside;  // points of the screen
};

class CanvasAccessible : public QAccessibleWidget {
 public:
    explicit CanvasAccessible(CanvasView& view) : QAccessibleWidget(&view, QAccessible::Canvas) {}
    ~CanvasAccessible() override {
        for (const auto& [element, id] : m_elements) {
            QAccessible::deleteAccessibleInterface(id);
        }
        for (const QAccessible::Id id : m_parts) {
            QAccessible::deleteAccessibleInterface(id);
        }
    }

    CanvasView& view() const { return static_cast<CanvasView&>(*widget()); }
    PCDocumentWindowController& controller() const { return view().controller(); }
    PCElement::Ptr canvas() const { return controller().project()->canvas(); }
    // Null unless exactly one is selected.
    PCElement::Ptr onlySelected() const {
        const PCElementSelectionManager& selection = controller().selectionManager();
        return selection.selectedElementsCount() == 1 ? selection.firstSelectedElement() : nullptr;
    }

    QString text(QAccessible::Text kind) const override {
        if (kind == QAccessible::Name) { return u"Canvas"_s; }
        if (kind != QAccessible::Description) { return QAccessibleWidget::text(kind); }
        const QSizeF size = canvas()->size();
        const int percent = static_cast<int>(controller().viewport().magnificationFactor() * 100);
        return u"%1 by %2, %3%"_s.arg(size.width()).arg(size.height()).arg(percent);
    }
    int childCount() const override {
        const auto parts = onlySelected() ? borderParts().size() + kOtherParts : 0;
        return static_cast<int>(canvas()->children().size() + parts);
    }
    QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= childCount()) { return nullptr; }
        const auto count = canvas()->children().size();
        const auto place = static_cast<size_t>(index);
        return place < count ? interfaceOf(canvas()->children()[place]) : part(place - count);
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        for (int i = 0; i < childCount(); ++i) {
            if (this->child(i) == child) { return i; }
        }
        return -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        for (int i = childCount() - 1; i >= 0; --i) {
            if (child(i)->rect().contains(x, y)) { return child(i); }
        }
        return nullptr;
    }

    // The same one for an element as long as both live.
    QAccessibleInterface* interfaceOf(const PCElement::Ptr& element) const {
        QAccessible::Id& id = m_elements[element.get()];
        auto* known = dynamic_cast<ElementAccessible*>(QAccessible::accessibleInterface(id));
        if (known && known->element() == element) { return known; }
        if (known) { QAccessible::deleteAccessibleInterface(id); }
        auto* made = new ElementAccessible(const_cast<CanvasAccessible&>(*this), element);
        id = QAccessible::registerAccessibleInterface(made);
        return made;
    }

 private:
    static constexpr size_t kOtherParts = 2;  // Rotate, Anchor Point

    mutable std::unordered_map<const PCElement*, QAccessible::Id> m_elements;
    mutable std::vector<QAccessible::Id> m_parts;

    QAccessibleInterface* part(size_t index) const {
        if (m_parts.empty()) { makeParts(); }
        return QAccessible::accessibleInterface(m_parts[index]);
    }
    void makeParts() const {
        auto& self = const_cast<CanvasAccessible&>(*this);
        const auto add = [&](const QString& name, QPointF unitPoint, QPointF beside = {}) {
            m_parts.push_back(QAccessible::registerAccessibleInterface(
                new PartAccessible(self, name, unitPoint, beside)));
        };
        for (const BorderPart& part : borderParts()) {
            add(part.name, part.unitPoint);
        }
        add(u"Rotate"_s, {1, 0}, {kHandleSide, -kHandleSide});
        constexpr double kOwnAnchorPoint = -1;
        add(u"Anchor Point"_s, {kOwnAnchorPoint, kOwnAnchorPoint});
    }
};

QAccessibleInterface* CanvasChild::childAt(int x, int y) const {
    for (int i = childCount() - 1; i >= 0; --i) {
        if (child(i)->rect().contains(x, y)) { return child(i); }
    }
    return nullptr;
}

bool ElementAccessible::isValid() const {
    const PCElement::Ptr element = m_element.lock();
    return element && element->project() && PCLayer::of(*element);
}

QAccessibleInterface* ElementAccessible::parent() const {
    if (!isValid()) { return nullptr; }
    PCElement* above = element()->parentElement();
    if (!above || above == m_canvas.canvas().get()) { return &m_canvas; }
    return m_canvas.interfaceOf(above->shared_from_this());
}

QAccessibleInterface* ElementAccessible::child(int index) const {
    if (index < 0 || index >= childCount()) { return nullptr; }
    return m_canvas.interfaceOf(element()->children()[static_cast<size_t>(index)]);
}

int ElementAccessible::childCount() const {
    return isValid() ? static_cast<int>(element()->children().size()) : 0;
}

int ElementAccessible::indexOfChild(const QAccessibleInterface* child) const {
    const auto* below = dynamic_cast<const ElementAccessible*>(child);
    return below && below->isValid() ? static_cast<int>(below->element()->index()) : -1;
}

QString ElementAccessible::text(QAccessible::Text kind) const {
    return kind == QAccessible::Name && isValid() ? element()->name() : QString();
}

QRect ElementAccessible::rect() const {
    return isValid() ? ScreenPlace(m_canvas.view(), *element()).box() : QRect();
}

QAccessible::Role ElementAccessible::role() const {
    return isValid() && element()->isGroup() ? QAccessible::Grouping : QAccessible::Graphic;
}

QAccessible::State ElementAccessible::state() const {
    QAccessible::State state;
    if (!isValid()) {
        state.invalid = true;
        return state;
    }
    state.selectable = !element()->locked();
    state.selected = m_canvas.controller().selectionManager().elementIsSelected(*element());
    state.invisible = element()->hidden();
    return state;
}

void ElementAccessible::doAction(const QString& name) {
    if (name != pressAction() || !isValid()) { return; }
    m_canvas.controller().selectionManager().selectElements({element()});
}

bool PartAccessible::isValid() const {
    return m_canvas.onlySelected() != nullptr;
}

QAccessibleInterface* PartAccessible::parent() const {
    return &m_canvas;
}

QRect PartAccessible::rect() const {
    const PCElement::Ptr element = m_canvas.onlySelected();
    if (!element || !PCLayer::of(*element)) { return {}; }
    const QPointF unitPoint = m_unitPoint.x() < 0 ? element->anchorPoint() : m_unitPoint;
    return ScreenPlace(m_canvas.view(), *element).square(unitPoint, m_beside);
}

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
    auto* view = qobject_cast<CanvasView*>(object);
    return view ? new CanvasAccessible(*view) : nullptr;
}

}  // namespace

void installCanvasAccessibility() {
    QAccessible::installFactory(makeInterface);
}

}  // namespace tweenery
