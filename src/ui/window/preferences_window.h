#pragma once

#include <QButtonGroup>
#include <QCheckBox>
#include <QDialog>
#include <functional>
#include <vector>

class QGridLayout;

namespace tweenery {

/// The preferences of the program. Every control takes effect at once; shown again, they tell what
/// holds by then. Made once and kept.
class PreferencesWindow : public QDialog {
    Q_OBJECT

 public:
    explicit PreferencesWindow(QWidget* parent = nullptr);

 Q_SIGNALS:
    /// A choice of PCAppPreferences changed. How the window looks is told by Appearance too.
    void preferencesDidChange();

 protected:
    void showEvent(QShowEvent* event) override;

 private:
    struct Choice {
        QCheckBox* box;
        std::function<bool()> value;
    };

    void addChoice(QGridLayout* grid, const QString& heading, const QString& text,
                   std::function<bool()> value, std::function<void(bool)> setValue);
    void addThemes(QGridLayout* grid);
    void readValues();

    std::vector<Choice> m_choices;
    QButtonGroup m_themes;
};

}  // namespace tweenery
