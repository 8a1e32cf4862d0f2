#pragma once

#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QWidget>
#include <functional>

namespace tweenery {

/// Long work: its name, a bar, a count and Stop, from the first second on; afterwards perhaps what
/// came of it. A card that its owner places.
class ProgressPanel : public QWidget {
    Q_OBJECT

 public:
    explicit ProgressPanel(QWidget* parent = nullptr);

    /// Shows the panel once the work has lasted a second.
    void start(const QString& name);
    /// `step` says what is being done: "Writing images". A total of 0 is not known.
    void setProgress(const QString& step, int done, int total);
    /// The work is over, with nothing to say.
    void finish();
    /// The work went well; `action` answers the button. Stays until the next start() or finish().
    void showResult(const QString& title, const QString& detail, const QString& buttonText,
                    std::function<void()> action);

 Q_SIGNALS:
    /// The user pressed Stop; the work goes on until its owner ends it.
    void stopped();

 protected:
    void paintEvent(QPaintEvent* event) override;

 private:
    void setShowsResult(bool shows);

    bool m_showsResult = false;
    QLabel m_title;
    QLabel m_detail;
    QProgressBar m_bar;
    QPushButton m_button;
    QTimer m_delay;
    std::function<void()> m_action;
};

}  // namespace tweenery
