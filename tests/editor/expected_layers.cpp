#include "editor/expected_layers.h"

#include <gtest/gtest.h>

namespace tweenery::test {
namespace {

class ExpectedLayers {
 public:
    explicit ExpectedLayers(EditorScene& scene)
        : m_scene(scene),
          m_time(scene.project->isSetupMode() ? EditTime::setup() : scene.layers->shown()) {}

    /// Every layer of the project against its element. What differs is reported.
    void check() const { checkBelow(*m_scene.canvas); }

 private:
    EditorScene& m_scene;
    EditTime m_time;

    static void append(std::string& text, std::initializer_list<double> numbers) {
        for (const double number : numbers) {
            text += shortestText(number + 0.0) + ' ';  // no negative zero
        }
    }
    QString imageOf(const PCElement& element) const {
        return m_time.isSetup() ? element.imageName()
                                : element.imageContentsAtTimeInMS(m_time.timeInMS());
    }
    std::string stateOf(const PCElement& element) const {
        std::string text;
        const QPointF anchor = element.anchorPoint();
        const QSizeF size = element.size();
        append(text, {size.width(), size.height(), anchor.x(), anchor.y()});
        if (m_time.isSetup()) {
            append(text, {element.position().x(), element.position().y(), element.scale().x(),
                          element.scale().y(), element.zRotation(),
                          element.hidden() ? 0 : element.opacity()});
            append(text, {0});
        } else {
            const int32_t time = m_time.timeInMS();
            const QPointF position = element.positionAtTimeInMS(time);
            const QPointF scale = element.scaleAtTimeInMS(time);
            const auto opacity = static_cast<double>(element.opacityAtTimeInMS(time));
            append(text, {position.x(), position.y(), scale.x(), scale.y(),
                          static_cast<double>(element.zRotationAtTimeInMS(time)),
                          element.hidden() ? 0 : opacity});
            const auto place = element.parentElement()->childrenZPositionsAtTimeInMS(time).indexOf(
                element.identifier().toString());
            append(text, {static_cast<double>(place < 0 ? element.index() : place)});
        }
        return text;
    }
    static std::string stateOf(const PCLayer& layer) {
        std::string text;
        const LayerValues& values = layer.values();
        append(text, {values.bounds.width(), values.bounds.height(), values.anchorPoint.x(),
                      values.anchorPoint.y(), values.position.x(), values.position.y(),
                      values.transform.scale.x(), values.transform.scale.y(),
                      values.transform.rotation, values.opacity, values.zPosition});
        return text;
    }
    void checkBelow(const PCElement& parent) const {
        const PCLayer& above = *PCLayer::of(parent);
        auto place = above.sublayers().begin();
        for (const PCElement::Ptr& child : parent.children()) {
            PCLayer& layer = *PCLayer::of(*child);
            SCOPED_TRACE(child->name().toStdString());
            EXPECT_EQ(*place, &layer) << "the order of layers";
            ++place;
            EXPECT_EQ(stateOf(layer), stateOf(*child));
            EXPECT_FALSE(layer.isHidden());
            const QImage image = m_scene.project->imageSetManager().imageWithName(
                imageOf(*child), m_scene.project->backingScale());
            EXPECT_EQ(layer.contents().cacheKey(), image.cacheKey());
            EXPECT_EQ(layer.isSelected(), child->selected());
            checkBorder(layer);
            checkBelow(*child);
        }
    }
    static std::string partsOf(const PCBorderLayer& border) {
        std::string text;
        const auto add = [&](QPointF point) {
            const QPointF onCanvas = border.toSuperlayer().map(point);
            append(text, {onCanvas.x(), onCanvas.y()});
        };
        for (int64_t i = PCBorderLocationTopLeft; i <= PCBorderLocationBottomRight; ++i) {
            const Layer& handle = border.handle(static_cast<PCBorderLocation>(i));
            add(handle.position());
            append(text, {handle.transform().scale.x(), handle.contentsScale()});
        }
        add(border.anchorPointLayer().position());
        append(text, {border.outline().shape()->lineWidth});
        const QPainterPath& band = border.rotationBand().shape()->path;
        for (int i = 0; i < band.elementCount(); ++i) {
            add(band.elementAt(i));
        }
        return text;
    }
    void checkBorder(PCLayer& layer) const {
        ASSERT_EQ(layer.borderLayer() != nullptr, layer.isSelected());
        if (!layer.isSelected()) { return; }
        Layer& canvas = *PCLayer::of(*m_scene.canvas);
        EXPECT_EQ(layer.borderLayer()->superlayer(), &canvas);
        const auto fresh = PCBorderLayer::layerWithLayerToBorder(layer);
        canvas.addSublayer(*fresh);
        fresh->syncWithBorderedLayer();
        EXPECT_EQ(partsOf(*layer.borderLayer()), partsOf(*fresh));
    }
};

}  // namespace

void expectLayersToShowTheModel(EditorScene& scene) {
    ExpectedLayers(scene).check();
}

}  // namespace tweenery::test
