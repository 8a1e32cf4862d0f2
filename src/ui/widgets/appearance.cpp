#include "ui/widgets/appearance.h"

namespace tweenery {

namespace {

SystemAppearance withChoicesOfUser(SystemAppearance system) {
    const PCAppTheme theme = PCAppPreferences::theme();
    if (theme != PCAppTheme::AsTheSystem) { system.isDark = theme == PCAppTheme::Dark; }
    system.increasesContrast |= PCAppPreferences::increasesContrast();
    system.reducesMotion |= PCAppPreferences::reducesMotion();
    return system;
}

}  // namespace

Appearance::Appearance() : m_effective(withChoicesOfUser({})) {}

Appearance& Appearance::current() {
    static Appearance appearance;
    return appearance;
}

std::chrono::milliseconds Appearance::duration(std::chrono::milliseconds asked) const {
    return reducesMotion() ? std::chrono::milliseconds(0) : asked;
}

void Appearance::setTheme(PCAppTheme theme) {
    PCAppPreferences::setTheme(theme);
    reload();
}

void Appearance::setIncreasesContrast(bool increases) {
    PCAppPreferences::setIncreasesContrast(increases);
    reload();
}

void Appearance::setReducesMotion(bool reduces) {
    PCAppPreferences::setReducesMotion(reduces);
    reload();
}

void Appearance::setSystem(const SystemAppearance& system) {
    if (system == m_system) { return; }
    m_system = system;
    reload();
}

void Appearance::reload() {
    const SystemAppearance effective = withChoicesOfUser(m_system);
    if (effective == m_effective) { return; }
    m_effective = effective;
    Q_EMIT changed();
}

}  // namespace tweenery
