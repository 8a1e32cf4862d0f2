// Tells whoever started a Qt program when its first window is painted: a byte to the descriptor
// named by TWEENERY_PAINT_FD.

#include <unistd.h>

#include <QApplication>
#include <QEvent>
#include <QGenericPlugin>
#include <QTimer>
#include <QWidget>

namespace tweenery::bench {

class FirstPaint : public QObject {
 public:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint && watched->isWidgetType()) {
            qApp->removeEventFilter(this);
            // When all of the window is painted and shown.
            QTimer::singleShot(0, this, [] {
                const char done = 'p';
                const int descriptor = qEnvironmentVariableIntValue("TWEENERY_PAINT_FD");
                if (::write(descriptor, &done, 1) != 1) { ::_exit(1); }
            });
        }
        return false;
    }
};

class FirstPaintPlugin : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "first_paint.json")

 public:
    QObject* create(const QString&, const QString&) override {
        auto* probe = new FirstPaint;
        qApp->installEventFilter(probe);
        return probe;
    }
};

}  // namespace tweenery::bench

#include "first_paint.moc"
