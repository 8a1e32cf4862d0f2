#include "bench/window/open_window.h"

#include <QApplication>
#include <QPainter>
#include <QTest>
#include <QWheelEvent>
#include <numbers>
#include <random>
#include <stdexcept>

#include "ui/canvas/canvas_view.h"

using namespace Qt::StringLiterals;

namespace tweenery::bench {
namespace {

constexpr QSize kArtwork(48, 36);
constexpr int kKindsOfArtwork = 10;

QImage artwork(int number) {
    QImage image(kArtwork, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(QColor::fromHsv(number * 36, 200, 220));
    painter.drawRoundedRect(QRectF(1, 1, kArtwork.width() - 2, kArtwork.height() - 2), 8, 8);
    return image;
}

QString artworkName(int number) {
    return u"image %1.png"_s.arg(number);
}

}  // namespace

AlertAnswer OpenWindow::NoAlerts::runModal(const Alert& alert) {
    throw std::logic_error("unexpected alert: " + alert.message.toStdString());
}

OpenWindow::OpenWindow(const std::function<void(PCProject&)>& fill)
    : m_services{m_alerts,
                 m_log,
                 m_clock,
                 [] { return QDateTime::currentDateTime(); },
                 RecoveryStore(m_folder.path(u"recovery"_s)),
                 m_folder.path(u"locks"_s)} {
    auto document = std::make_unique<OpenDocument>(m_services);
    document->openUntitled(u"Benchmark"_s);
    PCProject& project = *document->project();
    {
        const UndoRegistrationPause pause(project.undoManager());
        fill(project);
        project.preferences().setNewProject(false);
    }
    m_window = std::make_unique<DocumentWindow>(
        std::move(document),
        DesktopPorts{m_alerts, m_panel, m_clipboard, m_workspace, m_clock, m_log}, *this);
    m_window->showAsRemembered();
    m_window->resize(kSize);
    settle();
    controller().viewport().zoomToActualSize();
    settle();
}

OpenWindow::~OpenWindow() = default;

QPoint OpenWindow::at(QPointF canvasPoint) {
    const QPointF inView = controller().viewport().viewPoint(canvasPoint);
    return m_window->canvas().viewport()->mapTo(m_window.get(), inView.toPoint());
}

void OpenWindow::press(QPoint point, Qt::KeyboardModifiers modifiers) {
    QTest::mousePress(m_window->windowHandle(), Qt::LeftButton, modifiers, point);
}

void OpenWindow::move(QPoint point) {
    QTest::mouseMove(m_window->windowHandle(), point);
}

void OpenWindow::release(QPoint point) {
    QTest::mouseRelease(m_window->windowHandle(), Qt::LeftButton, {}, point);
}

void OpenWindow::key(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    QTest::keyClick(m_window->windowHandle(), key, modifiers);
}

void OpenWindow::wheel(QPoint angle, Qt::KeyboardModifiers modifiers) {
    QWidget* canvas = m_window->canvas().viewport();
    const QPointF middle = canvas->rect().center();
    QWheelEvent event(middle, canvas->mapToGlobal(middle), {}, angle, Qt::NoButton, modifiers,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(canvas, &event);
}

void OpenWindow::settle() {
    QTest::qWait(1);
    QTest::qWait(1);
}

void addPictures(PCProject& project, int count) {
    std::minstd_rand random(11);
    const auto uniform = [&random](double end) {
        return std::uniform_real_distribution(0.0, end)(random);
    };
    for (int i = 0; i < kKindsOfArtwork; ++i) {
        project.imageSetManager().addOrReplaceImageSetWithPCImage(
            std::make_shared<PCImage>(artwork(i), artworkName(i)));
    }
    const PCElement::Ptr& canvas = project.canvas();
    const QSizeF size = canvas->size();
    for (int i = 0; i < count; ++i) {
        const PCElement::Ptr element = PCElement::init();
        element->setName(u"element %1"_s.arg(i));
        canvas->insertSubelement(element, canvas->children().size());
        element->setImageName(artworkName(i % kKindsOfArtwork));
        element->setPosition({uniform(size.width()), uniform(size.height())});
        if (i % 3 == 0) { element->setZRotation(uniform(2 * std::numbers::pi)); }
    }
}

}  // namespace tweenery::bench
