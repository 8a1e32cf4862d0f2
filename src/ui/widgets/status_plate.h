#pragma once

#include <QTimer>
#include <QVariantAnimation>
#include <QWidget>

namespace tweenery {

/// Says for two seconds that something went well, at the lower left of its parent. Takes no press.
class StatusPlate : public QWidget {
    Q_OBJECT

 public:
    explicit StatusPlate(QWidget* parent);

    /// In the place of what was shown before.
    void showMessage(const QString& text);

 protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

 private:
    void place();
    void fadeTo(double opacity);

    QString m_text;
    double m_opacity = 0;
    QTimer m_timer;
    QVariantAnimation m_fade;
};

}  // namespace tweenery
