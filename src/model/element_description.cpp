// The printed form of an element tree.

#include "base/number_text.h"
#include "model/element.h"

using namespace Qt::StringLiterals;

namespace tweenery {
namespace {

QString twoDecimals(double value) {
    return QString::fromStdString(fixedText(value, 2));
}

QString timelinesText(const PCElement& element, const QString& indent) {
    constexpr std::array kPrinted{PCPropertyTypeScaleX,       PCPropertyTypeScaleY,
                                  PCPropertyTypeZRotation,    PCPropertyTypeTranslationX,
                                  PCPropertyTypeTranslationY, PCPropertyTypeOpacity};
    QString text;
    for (const PCPropertyType type : kPrinted) {
        const auto timeline = element.timeline(type);
        if (timeline && !timeline->isEmpty()) {
            text += u"\n%1  %2"_s.arg(indent, timeline->debugDescription());
        }
    }
    if (text.isEmpty()) { return u"\n%1  * All Timelines Empty *"_s.arg(indent); }
    return u"\n%1  * Timelines *%2"_s.arg(indent, text);
}

}  // namespace

QString PCElement::debugDescriptionWithIndent(const QString& indent, bool includeTimelines) const {
    QString text;
    describe(indent, includeTimelines, text);
    return text;
}

// Appends, so that a deep tree's text is not copied at every level.
void PCElement::describe(const QString& indent, bool includeTimelines, QString& into) const {
    const auto line = [&indent](const QString& text) { return u"\n"_s + indent + u"  "_s + text; };
    into += indent + u"<PCMElement "_s + (m_locked ? u" (LOCKED) "_s : QString()) + u" "_s +
            line(u"identifier:%1 "_s.arg(m_identifier.toString())) +
            line(u"name:%1 "_s.arg(name())) +
            line(u"isGroup:%1 "_s.arg(m_group ? u"YES"_s : u"NO"_s)) +
            line(u"imageName:%1 "_s.arg(m_imageName.isNull() ? u"(null)"_s : m_imageName)) +
            line(u"boundsSize:(%1, %2) "_s.arg(twoDecimals(m_size.width()),
                                               twoDecimals(m_size.height()))) +
            line(u"position:(%1, %2) "_s.arg(twoDecimals(m_position.x()),
                                             twoDecimals(m_position.y()))) +
            line(u"anchor:(%1, %2) "_s.arg(twoDecimals(m_anchorPoint.x()),
                                           twoDecimals(m_anchorPoint.y()))) +
            line(u"scale:(x:%1, y:%2) "_s.arg(twoDecimals(m_scale.x()), twoDecimals(m_scale.y()))) +
            line(u"rotationZ:%1 "_s.arg(twoDecimals(m_zRotation))) +
            line(u"opacity:%1 "_s.arg(twoDecimals(m_opacity))) +
            (includeTimelines ? timelinesText(*this, indent) : QString()) + line(u"subElements:"_s);
    const QString childIndent = indent + u"  |     "_s;
    for (const Ptr& child : m_subelements) {
        into += u'\n';
        child->describe(childIndent, includeTimelines, into);
    }
    into += u" "_s + line(u"/"_s) + name() + u">"_s;
}

}  // namespace tweenery
