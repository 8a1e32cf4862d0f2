#include "certify/preview_scene.h"

#include <QHash>
#include <algorithm>

namespace tweenery {

namespace {

double shownOpacity(double opacity) {
    return std::clamp(opacity, 0.0, 1.0);
}

}  // namespace

void PreviewScene::select(const PCAnimation::Ptr& animation) {
    m_project.animationsManager().setSelectedAnimation(animation);
}

ElementLook PreviewScene::setupLook(int number) const {
    const PCElement& shown = element(number);
    return {shown.position().x(), shown.position().y(), shown.scale().x(),
            shown.scale().y(),    shown.zRotation(),    shownOpacity(shown.opacity()),
            shown.imageName()};
}

ElementLook PreviewScene::look(int number, int32_t timeInMS) const {
    const PCElement& shown = element(number);
    const ElementValues values = shown.valuesAtTimeInMS(timeInMS);
    const QPointF place = shown.position() + values.translation;
    return {place.x(),
            place.y(),
            values.scale.x(),
            values.scale.y(),
            static_cast<double>(values.rotation),
            shownOpacity(static_cast<double>(values.opacity)),
            *values.image};
}

std::vector<int> PreviewScene::setupOrder(int parent) const {
    std::vector<int> order;
    for (const PCElement::Ptr& child : parentElement(parent).children()) {
        order.push_back(numberOf(*child));
    }
    return order;
}

std::vector<int> PreviewScene::order(int parent, int32_t timeInMS) const {
    return order(parent, timeInMS, false);
}

std::vector<int> PreviewScene::orderOfViewsAlone(int parent, int32_t timeInMS) const {
    return order(parent, timeInMS, true);
}

// Who is not named in the stored order keeps its own place.
std::vector<int> PreviewScene::order(int parent, int32_t timeInMS, bool ofViewsAlone) const {
    const QStringList stored = *parentElement(parent).valuesAtTimeInMS(timeInMS).children;
    QHash<QString, qsizetype> placeByIdentifier;
    for (qsizetype place = stored.size(); place-- > 0;) {
        placeByIdentifier[stored[place]] = place;
    }
    std::vector<std::pair<qsizetype, int>> places;
    for (const PCElement::Ptr& child : parentElement(parent).children()) {
        const auto own = static_cast<qsizetype>(places.size());
        const int number = numberOf(*child);
        const bool stands = ofViewsAlone && planned(number).isLayer();
        places.emplace_back(
            stands ? 0 : placeByIdentifier.value(child->identifier().toString(), own), number);
    }
    std::stable_sort(places.begin(), places.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<int> order;
    for (const auto& [place, number] : places) {
        order.push_back(number);
    }
    return order;
}

}  // namespace tweenery
