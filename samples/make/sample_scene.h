#pragma once

#include <QRectF>
#include <QString>
#include <vector>

#include "model/project.h"
#include "model/properties/easing.h"

namespace tweenery::samples {

/// Builds one sample project: artwork from SVG, drawn at 1x and 2x, and animations keyed by what is
/// seen. Everything is in points of the canvas and in milliseconds.
class SampleScene {
 public:
    SampleScene(const QString& name, QSizeF canvas);

    using Element = PCElement::Ptr;

    /// An element in front of those before it that shows `svg`, the inside of an SVG document whose
    /// coordinates are those of the canvas, cut to `place`. The artwork is called after the
    /// element.
    Element add(const QString& name, const QRectF& place, const QByteArray& svg);
    /// Another picture for the element, of the same size, by the name of its artwork.
    QString addPicture(const QString& name, const QRectF& place, const QByteArray& svg);
    /// Puts elements that lie side by side into a group, which turns and grows about `anchor`.
    Element group(const QString& name, const PCElement::Elements& elements, QPointF anchor);
    /// The point about which the element turns and grows; it stays where it is.
    void setAnchor(const Element& element, QPointF anchor);

    /// What is keyed from here on belongs to it.
    void animation(const QString& name);
    struct Key {
        int32_t time;
        double value;
        PCEasingMode easing = PCEasingModeEaseInOut;  // towards it
    };
    /// Translations are offsets in points, rotations degrees, scales and opacities as in setup 1.
    void key(const Element& element, PCPropertyType type, const std::vector<Key>& keys,
             PCRepeatBehavior repeat = PCRepeatBehaviorNever);
    /// Both axes alike.
    void keyScale(const Element& element, const std::vector<Key>& keys,
                  PCRepeatBehavior repeat = PCRepeatBehaviorNever);
    void keyPictures(const Element& element,
                     const std::vector<std::pair<int32_t, QString>>& pictures,
                     PCRepeatBehavior repeat = PCRepeatBehaviorNever);
    /// The children of `parent`, null being the canvas, from back to front at each time.
    void keyOrder(const Element& parent,
                  const std::vector<std::pair<int32_t, PCElement::Elements>>& orders,
                  PCRepeatBehavior repeat = PCRepeatBehaviorNever);
    /// Marks of Key All.
    void keyAll(const std::vector<int32_t>& times);

    PCProject& project() { return *m_project; }
    /// Writes the package, over one of that name. Throws InputError.
    void save(const QString& folder);

 private:
    QString m_name;
    PCProject::Ptr m_project;
};

/// A vertical gradient of that id for use in an element's SVG.
QByteArray verticalGradient(const QByteArray& id, const QByteArray& top, const QByteArray& bottom);

// The samples, each a file.
void makeTitle(const QString& icons, const QString& folder);
void makeWeatherCard(const QString& folder);
void makeLoadingDots(const QString& folder);
void makePaperBoat(const QString& folder);

}  // namespace tweenery::samples
